// The lines of a restore as it goes on, and its closing total.
#pragma once
#include <string>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/restore/RestoreReport.hpp"
#include "ctl/Output.hpp"

namespace quillo::ctl {

/// What is said of a run as a whole.
struct RunWords {
    std::string going;                  // "Resuming Work…"
    std::string back, partly, stopped;  // "Work is back" and so on

    static RunWords ofRestore(const Workspace& workspace);
};

class RestorePrinter {
  public:
    /// The columns are measured from the workspace, so that lines stand aligned from the first on.
    RestorePrinter(Output& output, const Workspace& workspace, RunWords words);
    RestorePrinter(Output& output, const Workspace& workspace)
        : RestorePrinter(output, workspace, RunWords::ofRestore(workspace)) {}

    void begin();
    void item(const RestoreReport::Item& item);
    /// So many windows are missing and waited for.
    void waiting(std::int64_t windows, double seconds);
    /// They are so no more, though some are missing.
    void waitingEnded();
    void end(const RestoreReport& report);

  private:
    void remark(const std::string& text);
    void printText(const RestoreReport::Item& item);
    void printJson(const RestoreReport::Item& item);
    void showProgress();

    Output& output_;
    RunWords words_;
    std::size_t applicationWidth_ = 0;
    std::size_t titleWidth_ = 0;
    std::int64_t windowCount_ = 0;
    std::int64_t windowsDone_ = 0;
};

}  // namespace quillo::ctl
