#include "app/RestoreRun.hpp"

#include <algorithm>
#include <utility>

#include "WindowEngine/restore/RestoreWords.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

constexpr std::size_t mostCharacters = 200;  // of a stranger's names and titles

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

RestoreRun::RestoreRun(Workspace workspace) : workspace_(std::move(workspace)) {
    for (const ApplicationSnapshot& application : workspace_.snapshot.applications)
        awaited_.insert(application.bundleIdentifier);
}

std::string RestoreRun::title() const {
    const std::string name = text::clipped(workspace_.name, mostCharacters);
    if (!report_) return "Resuming " + name + "…";
    return name + (clean() ? " is back" : " is mostly back");
}

std::string RestoreRun::subtitle() const {
    if (report_) return restoreSummary(*report_, false);
    if (begun_ == 0) return "Looking at what's open…";
    return "Opening " + std::to_string(begun_) + (begun_ == 1 ? " app…" : " apps…");
}

void RestoreRun::begin(Executor& executor, Task<> task, std::function<void()> ended) {
    task_.emplace(executor, std::move(task));
    task_->onDone([ended = std::move(ended)] { ended(); });
}

void RestoreRun::add(const RestoreReport::Item& item) {
    items_.push_back(item);
    begun_ += static_cast<std::int64_t>(awaited_.erase(item.bundleIdentifier));
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
    RestoreRow row{.subject = text::clipped(item.app, mostCharacters), .outcome = restoreWords(item.status)};
    if (!item.savedIndex) return row;
    const bool titled = item.title && !item.title->empty();
    row.subject += " — " + (titled ? text::clipped(*item.title, mostCharacters) : "Untitled");
    const WindowSnapshot* window = savedWindow(item, workspace);
    if (window && window->desktop) row.subject += " · Desktop " + std::to_string(window->desktop->number());
    return row;
}

}  // namespace quillo
