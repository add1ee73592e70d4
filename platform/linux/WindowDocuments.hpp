// The documents of windows, as far as anything tells. Looking for them asks the disk and, for file managers,
// the application itself, either of which may hang: so it is done on a thread of its own, and waited for only
// briefly.
#pragma once
#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/support/Rect.hpp"
#include "platform/linux/DocumentEvidence.hpp"

namespace quillo {

struct DocumentQuestion {
    std::uint32_t window = 0;
    ProcessID pid = 0;
    std::string title;
    Rect frame;
    bool opensFolders = false;  // its application does
    bool isTerminal = false;    // then all windows of its process are asked about together
};

struct WindowDocument {
    DocumentEvidence::DocumentOnDisk document;
    bool fromArguments = false;  // holds only for the first window of the process
};

class WindowDocuments {
  public:
    using Answers = std::map<std::uint32_t, WindowDocument>;

    WindowDocuments();
    WindowDocuments(const WindowDocuments&) = delete;
    WindowDocuments& operator=(const WindowDocuments&) = delete;
    ~WindowDocuments();

    /// Windows whose document is not known are missing. Blocks for at most a quarter of a second; where
    /// nothing is answered in time, what was last known of a window with the same title stands. `bus` is the
    /// address of the accessibility bus, empty where there is none.
    Answers ask(const std::vector<DocumentQuestion>& questions, std::string bus);

    /// Puts the last question again, and gives applications a second to answer, also those that are left
    /// alone since they did not; what they say is known to the next ask(). False where nothing was left open.
    bool lookAgain();
    /// Whether a question is still being answered.
    bool isLooking() const;

  private:
    struct Shared;
    std::shared_ptr<Shared> shared_;  // also the thread's: one that hangs on a disk is left behind
    std::thread thread_;              // from the first question on
};

}  // namespace quillo
