#include "app/ResumePreview.hpp"

#include <algorithm>
#include <map>
#include <utility>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/restore/DisplayMapper.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"

namespace quillo {
namespace {

const NativeDesktop* desktopOf(const RestorePreview& preview, const WindowPlan& plan) {
    if (!plan.desktop) return nullptr;
    const auto found = std::ranges::find_if(preview.desktops.desktops, [&](const NativeDesktop& one) {
        return one.id == *plan.desktop && (!plan.displayID || one.displayID == *plan.displayID);
    });
    return found == preview.desktops.desktops.end() ? nullptr : &*found;
}

/// Where the window will be, as far as the plan says.
void followPlan(WindowSnapshot& window, const RestorePreview& preview, const WindowPlan& plan) {
    if (plan.placement) window.frame = plan.placement->frame;
    window.displayID = plan.displayID;
    window.desktop.reset();  // it stays on the one where it is by then
    if (const NativeDesktop* desktop = desktopOf(preview, plan))
        window.desktop = DesktopSpaces::snapshot(*desktop);
}

/// Where it would be put, of a window that no plan is made for.
void placeAlone(WindowSnapshot& window, const RestorePreview& preview,
                const std::vector<DisplaySnapshot>& savedDisplays) {
    if (const auto placement = DisplayMapper::place(window, savedDisplays, preview.displays))
        window.frame = placement->frame;
    const DisplaySnapshot* display =
        DisplayMapper::targetDisplay(window.displayID, savedDisplays, preview.displays);
    const auto saved = std::exchange(window.desktop, std::nullopt);
    window.displayID.reset();
    if (!display) return;
    window.displayID = display->id;
    for (const NativeDesktop& one : preview.desktops.desktops)
        if (saved && one.displayID == display->id && one.index == saved->index)
            window.desktop = DesktopSpaces::snapshot(one);
}

}  // namespace

ResumePreview::ResumePreview(Workspace workspace, CleanSlateMode cleanSlate, const NameOf& nameOf,
                             LeftOut::Exclusions excluded)
    : workspace_(std::move(workspace)),
      listed_(Restore::scopeOf(workspace_.snapshot, false).snapshot),
      cleanSlate_(cleanSlate) {
    listed_.leftOut.reset();
    for (ApplicationSnapshot& application : listed_.applications) application.name = nameOf(application);
    makeTicks(std::move(excluded));
}

void ResumePreview::makeTicks(LeftOut::Exclusions excluded) {
    WorkspaceSnapshot all = listed_;
    others_.clear();
    for (const ApplicationSnapshot& other : otherApplications_) {
        others_.insert(other.bundleIdentifier);
        all.applications.push_back(other);
    }
    std::erase_if(excluded.apps, [&](const std::string& identifier) {  // one that has ended meanwhile
        return std::ranges::find(all.applications, identifier, &ApplicationSnapshot::bundleIdentifier) ==
               all.applications.end();
    });
    auto ticks = std::make_shared<CaptureDraft>(std::move(all), std::nullopt, false);
    ticks->setExcluded(std::move(excluded));
    connect(ticks.get(), &CaptureDraft::exclusionsChanged, this, &ResumePreview::ticksChanged);
    const std::shared_ptr<CaptureDraft> before = std::exchange(ticks_, std::move(ticks));
    if (before) Q_EMIT ticksReplaced();
}

void ResumePreview::setCleanSlate(CleanSlateMode mode) {
    if (std::exchange(cleanSlate_, mode) != mode) Q_EMIT ticksChanged();
}

RunSelection ResumePreview::selection() const {
    RunSelection selection{.excluded = ticks_->excluded(), .spared = ticks_->excludedApps()};
    for (const std::string& other : others_) selection.excluded.apps.erase(other);
    return selection;
}

std::int64_t ResumePreview::touchedOthers() const {
    return std::ranges::count_if(others_,
                                 [&](const std::string& other) { return ticks_->includesApp(other); });
}

void ResumePreview::setPlan(RestorePreview plan, const std::vector<RunningApplication>& others,
                            std::string notInstalled) {
    plan_ = std::move(plan);
    notInstalled_ = std::move(notInstalled);
    std::vector<ApplicationSnapshot> now;
    for (const RunningApplication& other : others)
        now.push_back({*other.bundleIdentifier,
                       other.localizedName.value_or(*other.bundleIdentifier),
                       std::nullopt,
                       {},
                       std::nullopt});
    if (std::exchange(otherApplications_, std::move(now)) != otherApplications_)
        makeTicks(ticks_->excluded());
    Q_EMIT planned();
}

WorkspaceSnapshot ResumePreview::afterwards() const {
    WorkspaceSnapshot after = listed_;
    if (!plan_) return after;
    std::map<std::string, const WindowPlan*> plans;  // by key; of two windows with one key the first
    for (const PlannedApplication& application : plan_->applications)
        for (const WindowPlan& plan : application.windows)
            plans.try_emplace(
                CaptureFilter::windowKey(
                    application.saved->bundleIdentifier,
                    application.saved->windows[static_cast<std::size_t>(plan.savedIndex)].index),
                &plan);
    for (ApplicationSnapshot& application : after.applications) {
        for (WindowSnapshot& window : application.windows) {
            const auto plan =
                plans.find(CaptureFilter::windowKey(application.bundleIdentifier, window.index));
            if (plan != plans.end() && plan->second->placement)
                followPlan(window, *plan_, *plan->second);
            else
                placeAlone(window, *plan_, workspace_.snapshot.displays);
        }
    }
    after.displays = plan_->displays;
    after.desktops.reset();
    if (!plan_->desktops.desktops.empty()) {
        after.desktops.emplace();
        for (const NativeDesktop& desktop : plan_->desktops.desktops)
            after.desktops->push_back(DesktopSpaces::snapshot(desktop));
    }
    return after;
}

}  // namespace quillo
