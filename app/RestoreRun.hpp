// One restore while it happens and after it: what the panel shows.
#pragma once
#include <QObject>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/restore/RestoreReport.hpp"
#include "WindowEngine/support/Job.hpp"

namespace quillo {

class RestoreRun final : public QObject {
    Q_OBJECT

  public:
    explicit RestoreRun(Workspace workspace);

    const Workspace& workspace() const { return workspace_; }
    /// In the order the engine delivered them.
    const std::vector<RestoreReport::Item>& items() const { return items_; }
    /// Present from the moment the run is over.
    const std::optional<RestoreReport>& report() const { return report_; }
    /// Over, with everything back.
    bool clean() const { return report_ && report_->clean(); }

    /// "Resuming Work…", then "Work is back" where it is clean, else "Work is mostly back".
    std::string title() const;
    /// While it runs, how many applications it has come to; then the totals.
    std::string subtitle() const;

    // For AppModel.
    void begin(Executor& executor, Task<> task, std::function<void()> ended);
    void add(const RestoreReport::Item& item);
    void finish(RestoreReport report);
    /// Requests a stop of a run that still goes on.
    void cancel();

  Q_SIGNALS:
    void itemAdded();
    void finished();

  private:
    Workspace workspace_;
    std::vector<RestoreReport::Item> items_;
    std::set<std::string> awaited_;  // applications of the workspace without an item so far
    std::int64_t begun_ = 0;         // those with one
    std::optional<RestoreReport> report_;
    std::optional<Job<>> task_;  // last: it works on all of the above
};

/// One row of the panel: "Editor — Notes · Desktop 2" and "restored"; joined, "Browser: reopened 3 items".
struct RestoreRow {
    std::string subject;  // the application, with the window's title and desktop where it is about one
    std::string outcome;

    std::string text() const { return subject + ": " + outcome; }
    bool operator==(const RestoreRow&) const = default;
};
RestoreRow restoreRow(const RestoreReport::Item& item, const Workspace& workspace);

}  // namespace quillo
