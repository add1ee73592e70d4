// One restore while it happens and after it: what the panel shows.
#pragma once
#include <QObject>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/restore/RestoreReport.hpp"
#include "WindowEngine/support/Job.hpp"

namespace quillo {

/// One line of the panel. Joined, "Browser: reopened 3 items", "Editor — Notes · Desktop 2: restored".
struct RestoreRow {
    std::string application;
    std::string subject;  // the window's title; else the application
    std::string desktop;  // "Desktop 2", of a window that does not stand where one would look for it
    std::string outcome;

    std::string text() const;
    bool operator==(const RestoreRow&) const = default;
};

class RestoreRun final : public QObject {
    Q_OBJECT

  public:
    /// What is there as it begins.
    struct Start {
        /// Which the person looks at, from 0, where all displays show the same; absent where that is not
        /// known.
        std::optional<std::int64_t> desktop;
        std::int64_t otherItems = 0;  // that will come beside those of windows, of launches and the like
    };
    RestoreRun(Workspace workspace, Start start);
    explicit RestoreRun(Workspace workspace) : RestoreRun(std::move(workspace), Start{}) {}

    const Workspace& workspace() const { return workspace_; }
    /// In the order the engine delivered them.
    const std::vector<RestoreReport::Item>& items() const { return items_; }
    /// Present from the moment the run is over.
    const std::optional<RestoreReport>& report() const { return report_; }
    /// Over, with everything back.
    bool clean() const { return report_ && report_->clean(); }

    /// "Resuming Work…", then "Work is back" where it is clean, else "Work is mostly back".
    std::string title() const;
    /// While it runs, how many applications it opens; then "2 of 3 windows back · 1 app opened · 1 problem".
    std::string subtitle() const;
    RestoreRow row(const RestoreReport::Item& item) const;
    /// How many items there will be, as far as can be known beforehand.
    std::int64_t expectedItems() const { return workspace_.snapshot.windowCount() + start_.otherItems; }

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
    Start start_;
    std::optional<std::int64_t> usualDesktop_;  // goes without saying, from 0
    std::set<std::string> opening_;             // applications that it has launched
    std::optional<RestoreReport> report_;
    std::optional<Job<>> task_;  // last: it works on all of the above
};

}  // namespace quillo
