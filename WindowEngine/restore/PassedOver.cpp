#include "WindowEngine/restore/PassedOver.hpp"

#include <utility>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/DisplayLayouts.hpp"
#include "WindowEngine/restore/RestorePlan.hpp"

namespace quillo::Restore {

WorkspaceSnapshot fitted(WorkspaceSnapshot snapshot, PassedOver& passedOver,
                         DisplayMapper::DisplayList current, const DisplayTwins::Pairs& answers) {
    WorkspaceSnapshot left;
    left.displays = std::move(passedOver.displays);
    left.layouts = snapshot.layouts;
    for (auto& [identifier, windows] : passedOver.windows)
        left.applications.push_back({identifier, {}, {}, std::move(windows), {}});
    left = DisplayLayouts::fitted(std::move(left), current, answers);
    for (ApplicationSnapshot& application : left.applications)
        passedOver.windows[application.bundleIdentifier] = std::move(application.windows);
    passedOver.displays = std::move(left.displays);
    return DisplayLayouts::fitted(std::move(snapshot), current, answers);
}

void removeStandIns(const PassedOver& passedOver, const ApplicationSnapshot& application, Screens& screens,
                    std::vector<LiveWindow>& live) {
    const auto left = passedOver.windows.find(application.bundleIdentifier);
    if (left == passedOver.windows.end()) return;
    std::vector<WindowSnapshot> all = application.windows;
    all.insert(all.end(), left->second.begin(), left->second.end());
    std::vector<LiveWindowInfo> infos;
    for (const LiveWindow& window : live) infos.push_back(window.info);
    std::vector<bool> taken(live.size());
    const auto placed = asPlaced(all, passedOver.displays, Displays::current(screens));
    for (const WindowMatcher::Match& match : WindowMatcher::match(placed, infos)) {
        if (static_cast<std::size_t>(match.savedIndex) >= application.windows.size())
            taken[static_cast<std::size_t>(match.liveIndex)] = true;
    }
    std::vector<LiveWindow> rest;
    for (std::size_t i = 0; i < live.size(); ++i)
        if (!taken[i]) rest.push_back(std::move(live[i]));
    live = std::move(rest);
}

}  // namespace quillo::Restore
