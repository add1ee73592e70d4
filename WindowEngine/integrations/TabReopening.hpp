// One restore of a browser's tabs under way: its scripts are run, and what came of them is counted. A script
// that fails, or takes too long, ends what is opened in its window and nothing else.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "WindowEngine/integrations/AppleScript.hpp"
#include "WindowEngine/integrations/ContextAdapter.hpp"

namespace quillo {

struct TabReopening {
    DesktopAccess& desktop;
    AdapterRestoreResult& result;
    std::string_view failure;  // what is said of a script that failed

    void fail(std::string_view text) { result.failures.emplace_back(text); }

    /// Absent when the script failed, which is said then.
    Task<std::optional<AppleScript::Rows>> run(Script script);
    /// Runs a script that makes a window with one tab and prints what it is known by: that, empty where it
    /// was not printed; absent when the script failed.
    Task<std::optional<std::string>> makeWindow(Script script);
    /// Runs a script that opens so many tabs; whether it went well.
    Task<bool> openTabs(Script script, std::size_t count);
};

}  // namespace quillo
