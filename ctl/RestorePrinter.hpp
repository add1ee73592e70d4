// The lines of a restore as it goes on, and its closing total.
#pragma once
#include <string>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/restore/RestoreReport.hpp"
#include "ctl/Output.hpp"

namespace quillo::ctl {

class RestorePrinter {
  public:
    /// The columns are measured from the workspace, so that lines stand aligned from the first on.
    RestorePrinter(Output& output, const Workspace& workspace);

    void begin();
    void item(const RestoreReport::Item& item);
    void end(const RestoreReport& report);

  private:
    void printText(const RestoreReport::Item& item);
    void printJson(const RestoreReport::Item& item);
    void showProgress();

    Output& output_;
    std::string name_;
    std::size_t applicationWidth_ = 0;
    std::size_t titleWidth_ = 0;
    std::int64_t windowCount_ = 0;
    std::int64_t windowsDone_ = 0;
};

}  // namespace quillo::ctl
