#include "app/RestoreRun.hpp"

#include <algorithm>
#include <utility>

#include "WindowEngine/RestoreWords.hpp"

namespace quillo {
namespace {

std::string counted(std::int64_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string totalText(const RestoreReport& report) {
    const RestoreReport::Totals totals = report.totals();
    std::string text = std::to_string(totals.restored) + " restored";
    const auto add = [&text](std::int64_t count, const std::string& part) {
        if (count > 0) text += " · " + part;
    };
    add(totals.createdDesktops, counted(totals.createdDesktops, "desktop") + " created");
    add(totals.launched, std::to_string(totals.launched) + " launched");
    add(totals.opened, std::to_string(totals.opened) + " reopened");
    add(totals.skipped, std::to_string(totals.skipped) + " skipped");
    add(totals.failed, std::to_string(totals.failed) + " failed");
    return text;
}

/// Null where the item is about none, or the workspace has no such window.
const WindowSnapshot* savedWindow(const RestoreReport::Item& item, const Workspace& workspace) {
    const auto& applications = workspace.snapshot.applications;
    const auto application =
        std::ranges::find(applications, item.bundleIdentifier, &ApplicationSnapshot::bundleIdentifier);
    if (application == applications.end() || !item.savedIndex) return nullptr;
    const auto place = static_cast<std::size_t>(*item.savedIndex);
    return place < application->windows.size() ? &application->windows[place] : nullptr;
}

}  // namespace

bool RestoreRun::clean() const {
    if (!report_ || report_->cancelled) return false;
    const RestoreReport::Totals totals = report_->totals();
    return totals.failed == 0 && totals.skipped == 0;
}

std::string RestoreRun::title() const {
    if (!report_) return "Resuming " + workspace_.name + "…";
    return workspace_.name + (clean() ? " is back" : " is mostly back");
}

std::string RestoreRun::subtitle() const {
    if (report_) return totalText(*report_);
    if (applications_.empty()) return "Looking at what's open…";
    return "Opening " + counted(static_cast<std::int64_t>(applications_.size()), "app") + "…";
}

void RestoreRun::begin(Executor& executor, Task<> task, std::function<void()> ended) {
    task_.emplace(executor, std::move(task));
    task_->onDone([ended = std::move(ended)] { ended(); });
}

void RestoreRun::add(const RestoreReport::Item& item) {
    items_.push_back(item);
    const bool known = std::ranges::any_of(
        workspace_.snapshot.applications,
        [&](const ApplicationSnapshot& one) { return one.bundleIdentifier == item.bundleIdentifier; });
    if (known) applications_.insert(item.bundleIdentifier);
    Q_EMIT itemAdded();
}

void RestoreRun::finish(RestoreReport report) {
    report_ = std::move(report);
    Q_EMIT finished();
}

void RestoreRun::cancel() {
    if (task_) task_->cancel();
}

RestoreRow restoreRow(const RestoreReport::Item& item, const Workspace& workspace) {
    RestoreRow row{.subject = item.app, .outcome = restoreWords(item.status)};
    if (!item.savedIndex) return row;
    row.subject += " — " + (item.title && !item.title->empty() ? *item.title : "Untitled");
    const WindowSnapshot* window = savedWindow(item, workspace);
    if (window && window->desktop) row.subject += " · Desktop " + std::to_string(window->desktop->number());
    return row;
}

}  // namespace quillo
