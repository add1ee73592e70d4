// What is open in a browser, by its session files and by the windows on the screen, as a capture and a
// restore need it.
#pragma once
#include <set>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/services/BrowserFiles.hpp"

namespace quillo::OpenBrowserTabs {

struct Look {
    /// Every ordinary window with a web address, whatever is known of it on the screen: private ones are in
    /// no file. `sourceWindowID` where it is sure which window on the screen that is.
    std::vector<ContextWindow> windows;
    std::set<WindowNumber> surelyOrdinary;  // on the screen
    std::vector<WindowNumber> shown;        // all main windows, in the order in which they were made
    std::size_t told = 0;                   // windows that the files tell of
    bool hasEmpty = false;                  // one of them has no address at all yet
    /// Nothing is left that the next writing of the file might settle.
    bool settled = true;
};

/// Where any open profile cannot be read, nobody knows what is open, and the error says why without a path.
Result<Look> judge(std::span<const BrowserProcess> processes, BrowserFamily family);

}  // namespace quillo::OpenBrowserTabs
