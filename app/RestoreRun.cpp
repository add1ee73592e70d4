#include "app/RestoreRun.hpp"

#include <algorithm>
#include <map>
#include <utility>

#include "WindowEngine/restore/RestoreWords.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

constexpr std::size_t nameCharacters = 200;  // of a stranger's names and titles

/// Where most windows stand; of several the first, and absent where no desktops are known.
std::optional<std::int64_t> mostCommonDesktop(const WorkspaceSnapshot& snapshot) {
    std::map<std::int64_t, std::size_t> windows;
    for (const ApplicationSnapshot& application : snapshot.applications) {
        for (const WindowSnapshot& window : application.windows) {
            if (window.desktop) ++windows[window.desktop->index];
        }
    }
    const auto most = std::ranges::max_element(windows, {}, [](const auto& one) { return one.second; });
    return most == windows.end() ? std::nullopt : std::optional(most->first);
}

std::string counted(std::int64_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

/// By what was saved and not by lines: of one window several tell.
std::string summary(const RestoreReport& report, std::int64_t windows) {
    const RestoreTotals totals = report.totals();
    std::string text = windows == 0
                           ? "No windows were saved"
                           : std::to_string(totals.restored) + " of " + counted(windows, "window") + " back";
    const auto add = [&text](std::int64_t count, const std::string& noun, const std::string& done) {
        if (count > 0) text += " · " + counted(count, noun) + done;
    };
    add(totals.createdDesktops, "desktop", " created");
    add(totals.launched, "app", " opened");
    add(totals.opened, "item", " reopened");
    add(totals.skipped + totals.failed, "problem", "");
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

RestoreRun::RestoreRun(Workspace workspace, Start start, Kind kind)
    : workspace_(std::move(workspace)),
      kind_(kind),
      start_(start),
      usualDesktop_(start.desktop ? start.desktop : mostCommonDesktop(workspace_.snapshot)) {}

std::string RestoreRun::title() const {
    if (kind_ == Kind::undo) {
        if (!report_) return "Putting everything back…";
        return clean() ? "Everything is back as it was" : "Most is back as it was";
    }
    const std::string name = text::clipped(workspace_.name, nameCharacters);
    if (!report_) return "Resuming " + name + "…";
    return name + (clean() ? " is back" : " is mostly back");
}

std::string RestoreRun::subtitle() const {
    if (report_) return summary(*report_, workspace_.snapshot.windowCount());
    if (opening_.empty()) return "Looking at what's open…";
    return "Opening " + std::to_string(opening_.size()) + (opening_.size() == 1 ? " app…" : " apps…");
}

void RestoreRun::begin(Executor& executor, Task<> task, std::function<void()> ended) {
    task_.emplace(executor, std::move(task));
    task_->onDone([ended = std::move(ended)] { ended(); });
}

void RestoreRun::add(const RestoreReport::Item& item) {
    items_.push_back(item);
    if (outcomeOf(item.status).total == &RestoreTotals::launched) opening_.insert(item.bundleIdentifier);
    Q_EMIT itemAdded();
}

void RestoreRun::amend(const RestoreReport::Item& item) {
    RestoreReport all{.items = std::move(items_)};
    all.amend(item);
    items_ = std::move(all.items);
    if (report_)
        report_->amend(item);
    else
        late_.push_back(item);
    Q_EMIT amended();
}

void RestoreRun::finish(RestoreReport report) {
    report_ = std::move(report);
    for (RestoreReport::Item& item : late_) report_->amend(std::move(item));
    late_.clear();
    Q_EMIT finished();
}

void RestoreRun::cancel() {
    if (task_) task_->cancel();
}

RestoreRow RestoreRun::row(const RestoreReport::Item& item) const {
    RestoreRow row{.application = text::clipped(item.app, nameCharacters),
                   .subject = text::clipped(item.title.value_or(std::string()), nameCharacters),
                   .desktop = {},
                   .outcome = restoreWords(item)};
    if (row.subject.empty()) row.subject = row.application;
    const WindowSnapshot* window = savedWindow(item, workspace_);
    if (window && window->desktop && window->desktop->index != usualDesktop_)
        row.desktop = "Desktop " + std::to_string(window->desktop->number());
    return row;
}

std::string RestoreRow::text() const {
    std::string text = application;
    if (subject != application) text += " — " + subject;
    if (!desktop.empty()) text += " · " + desktop;
    return text + ": " + outcome;
}

}  // namespace quillo
