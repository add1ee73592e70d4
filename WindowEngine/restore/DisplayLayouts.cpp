#include "WindowEngine/restore/DisplayLayouts.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"
#include "WindowEngine/restore/WindowMatcher.hpp"

namespace quillo::DisplayLayouts {
namespace {

using DisplayMapper::DisplayList;
using Key = std::pair<std::string, std::int64_t>;  // application and index of a window

const DisplayLayout* layoutFor(const WorkspaceSnapshot& snapshot, DisplayList displays) {
    if (!snapshot.layouts || DisplayTwins::sameSet(snapshot.displays, displays)) return nullptr;
    const auto found = std::ranges::find_if(*snapshot.layouts, [&](const DisplayLayout& layout) {
        return DisplayTwins::sameSet(layout.displays, displays);
    });
    return found == snapshot.layouts->end() ? nullptr : &*found;
}

PlacedWindow placeOf(const std::string& application, const WindowSnapshot& window) {
    return {.application = application,
            .index = window.index,
            .frame = window.frame,
            .normalizedFrame = window.normalizedFrame,
            .displayID = window.displayID,
            .desktop = window.desktop,
            .isMinimized = window.isMinimized,
            .isFullscreen = window.isFullscreen};
}

void put(WindowSnapshot& window, const PlacedWindow& place) {
    window.frame = place.frame;
    window.normalizedFrame = place.normalizedFrame;
    window.displayID = place.displayID;
    window.desktop = place.desktop;
    window.isMinimized = place.isMinimized;
    if (window.isFullscreen != place.isFullscreen) window.fullscreenConfirmed.reset();
    window.isFullscreen = place.isFullscreen;
}

/// A window that stands on other displays, as it would come to stand on these.
void map(WindowSnapshot& window, DisplayList from, DisplayList onto) {
    const auto placement = DisplayMapper::place(window, from, onto);
    const DisplaySnapshot* target = DisplayMapper::targetDisplay(window.displayID, from, onto);
    if (!placement || !target) return;
    window.frame = placement->frame;
    window.normalizedFrame = Displays::normalize(placement->frame, target->frame);
    window.displayID = target->id;
    if (window.desktop) window.desktop = DesktopSnapshot{target->id, window.desktop->index, std::nullopt};
}

void apply(WorkspaceSnapshot& snapshot, const DisplayLayout& layout) {
    std::map<Key, const PlacedWindow*> places;
    for (const PlacedWindow& place : layout.windows) places[{place.application, place.index}] = &place;
    for (ApplicationSnapshot& application : snapshot.applications) {
        for (WindowSnapshot& window : application.windows) {
            const auto known = places.find({application.bundleIdentifier, window.index});
            if (known != places.end())
                put(window, *known->second);
            else
                map(window, snapshot.displays, layout.displays);
        }
    }
    snapshot.displays = layout.displays;
    snapshot.desktops = layout.desktops;
}

DisplayLayout layoutOf(const WorkspaceSnapshot& snapshot) {
    DisplayLayout layout{snapshot.displays, snapshot.desktops, {}};
    for (const ApplicationSnapshot& application : snapshot.applications)
        for (const WindowSnapshot& window : application.windows)
            layout.windows.push_back(placeOf(application.bundleIdentifier, window));
    return layout;
}

LiveWindowInfo asLive(const WindowSnapshot& window) {
    return {.title = window.title,
            .subrole = window.subrole,
            .documentURL = window.documentURL,
            .frame = window.frame,
            .isMinimized = window.isMinimized,
            .isFullscreen = window.isFullscreen,
            .index = window.index};
}

/// Which window of `later` is which one of `earlier`; both point into their snapshots.
using Recognised = std::vector<std::pair<Key, const WindowSnapshot*>>;
Recognised recognise(const WorkspaceSnapshot& earlier, const WorkspaceSnapshot& later) {
    Recognised all;
    for (const ApplicationSnapshot& before : earlier.applications) {
        const auto after = std::ranges::find(later.applications, before.bundleIdentifier,
                                             &ApplicationSnapshot::bundleIdentifier);
        if (after == later.applications.end()) continue;
        std::vector<LiveWindowInfo> live;
        for (const WindowSnapshot& window : after->windows) live.push_back(asLive(window));
        for (const WindowMatcher::Match& match : WindowMatcher::match(before.windows, live)) {
            const WindowSnapshot& old = before.windows[static_cast<std::size_t>(match.savedIndex)];
            all.emplace_back(Key{before.bundleIdentifier, old.index},
                             &after->windows[static_cast<std::size_t>(match.liveIndex)]);
        }
    }
    return all;
}

void setLayouts(WorkspaceSnapshot& snapshot, std::vector<DisplayLayout> layouts) {
    std::erase_if(layouts, [](const DisplayLayout& layout) {
        return layout.windows.empty() || layout.displays.empty();
    });
    if (layouts.size() > mostKept) layouts.resize(mostKept);
    snapshot.layouts = layouts.empty() ? std::nullopt : std::optional(std::move(layouts));
}

}  // namespace

bool has(const WorkspaceSnapshot& snapshot, DisplayList displays) {
    return DisplayTwins::sameSet(snapshot.displays, displays) || layoutFor(snapshot, displays);
}

WorkspaceSnapshot arrangedFor(WorkspaceSnapshot snapshot, DisplayList current) {
    Restore::boundDisplays(snapshot);  // a stranger's windows are compared with each
    if (const DisplayLayout* layout = layoutFor(snapshot, current)) apply(snapshot, DisplayLayout(*layout));
    return snapshot;
}

WorkspaceSnapshot fitted(WorkspaceSnapshot snapshot, DisplayList current,
                         const DisplayTwins::Pairs& answers) {
    snapshot = arrangedFor(std::move(snapshot), current);
    DisplayTwins::rename(snapshot, current, DisplayTwins::match(snapshot.displays, current, answers).pairs);
    return snapshot;
}

DisplayList displaysFor(const WorkspaceSnapshot& snapshot, DisplayList current) {
    const DisplayLayout* layout = layoutFor(snapshot, current);
    return layout ? layout->displays : snapshot.displays;
}

WorkspaceSnapshot carriedOver(const WorkspaceSnapshot& before, WorkspaceSnapshot saved) {
    std::vector<DisplayLayout> layouts{layoutOf(before)};
    for (const DisplayLayout& layout : before.layouts.value_or(std::vector<DisplayLayout>()))
        layouts.push_back(layout);
    std::erase_if(layouts, [&](const DisplayLayout& layout) {
        return DisplayTwins::sameSet(layout.displays, saved.displays);
    });
    std::map<Key, std::int64_t> numbers;  // in the new capture
    for (const auto& [key, window] : recognise(before, saved)) numbers[key] = window->index;
    for (DisplayLayout& layout : layouts) {
        std::erase_if(layout.windows, [&](PlacedWindow& place) {
            const auto number = numbers.find({place.application, place.index});
            if (number == numbers.end()) return true;
            place.index = number->second;
            return false;
        });
    }
    setLayouts(saved, std::move(layouts));
    return saved;
}

WorkspaceSnapshot arranged(WorkspaceSnapshot snapshot, const WorkspaceSnapshot& now,
                           const DisplayTwins::Pairs& answers) {
    const Recognised recognised = recognise(snapshot, now);
    if (recognised.empty()) return snapshot;
    const std::map<Key, const WindowSnapshot*> stands(recognised.begin(), recognised.end());
    WorkspaceSnapshot there = fitted(snapshot, now.displays, answers);
    for (ApplicationSnapshot& application : there.applications) {
        for (WindowSnapshot& window : application.windows) {
            const auto known = stands.find({application.bundleIdentifier, window.index});
            if (known != stands.end())
                put(window, placeOf(application.bundleIdentifier, *known->second));
            else
                map(window, there.displays, now.displays);
        }
    }
    there.displays = now.displays;
    there.desktops = now.desktops;
    if (DisplayTwins::sameSet(snapshot.displays, now.displays)) return there;
    std::vector<DisplayLayout> layouts{layoutOf(there)};
    for (DisplayLayout& other : snapshot.layouts.value_or(std::vector<DisplayLayout>()))
        if (!DisplayTwins::sameSet(other.displays, now.displays)) layouts.push_back(std::move(other));
    setLayouts(snapshot, std::move(layouts));
    return snapshot;
}

void remove(WorkspaceSnapshot& snapshot, const DisplayLayout& layout) {
    if (!snapshot.layouts) return;
    std::erase(*snapshot.layouts, layout);
    if (snapshot.layouts->empty()) snapshot.layouts.reset();
}

void keepRunning(WorkspaceSnapshot& snapshot, const std::function<bool(const std::string&)>& runs) {
    std::erase_if(snapshot.applications, [&](const ApplicationSnapshot& application) {
        return !runs(application.bundleIdentifier);
    });
}

}  // namespace quillo::DisplayLayouts
