#include "WindowEngine/records/NativeTabs.hpp"

#include <functional>
#include <optional>
#include <unordered_map>
#include <utility>

namespace quillo::NativeTabs {
namespace {

void mix(std::size_t& seed, std::size_t value) {
    seed ^= value + 0x9e3779b97f4a7c15U + (seed << 6) + (seed >> 2);
}

template <class T>
void mixValue(std::size_t& seed, const T& value) {
    mix(seed, std::hash<T>{}(value));
}

struct FrameHash {
    std::size_t operator()(const Rect& frame) const {
        std::size_t seed = 0;
        // std::hash gives 0 and -0, which are equal, the same value.
        for (const double part : {frame.x, frame.y, frame.width, frame.height}) mixValue(seed, part);
        return seed;
    }
};

/// Everything two windows must share to be tabs of one.
struct Stack {
    const WindowSnapshot* window;

    bool operator==(const Stack& other) const {
        const WindowSnapshot &a = *window, &b = *other.window;
        return a.frame == b.frame && a.displayID == b.displayID && a.isMinimized == b.isMinimized &&
               a.isFullscreen == b.isFullscreen && a.subrole == b.subrole && a.desktop == b.desktop;
    }
};

struct StackHash {
    std::size_t operator()(const Stack& stack) const {
        const WindowSnapshot& window = *stack.window;
        std::size_t seed = FrameHash{}(window.frame);
        mixValue(seed, window.displayID);
        mix(seed, window.isMinimized ? 1U : 0U);
        mix(seed, window.isFullscreen ? 1U : 0U);
        mixValue(seed, window.subrole);
        mixValue(seed, window.desktop);
        return seed;
    }
};

struct Agreement {
    const DesktopSnapshot* desktop = nullptr;
    bool disagreed = false;
};

/// A tab that is not in front often has no desktop of its own: it takes that of the others in its place,
/// where they agree on one.
void inheritDesktops(std::vector<WindowSnapshot>& windows) {
    std::unordered_map<Rect, Agreement, FrameHash> places;
    for (const WindowSnapshot& window : windows) {
        if (!window.desktop) continue;
        Agreement& agreement = places[window.frame];
        if (agreement.desktop && *agreement.desktop != *window.desktop) agreement.disagreed = true;
        agreement.desktop = &*window.desktop;
    }
    for (WindowSnapshot& window : windows) {
        if (window.desktop) continue;
        const auto place = places.find(window.frame);
        if (place != places.end() && !place->second.disagreed) window.desktop = *place->second.desktop;
    }
}

TabSnapshot tabOf(const WindowSnapshot& window) {
    return {window.title, window.documentURL};
}

void fold(WindowSnapshot window, WindowSnapshot& into) {
    if (!into.tabs) into.tabs = {tabOf(into)};
    if (window.tabs) {
        for (TabSnapshot& tab : *window.tabs) into.tabs->push_back(std::move(tab));
    } else {
        into.tabs->push_back(tabOf(window));
    }
}

}  // namespace

const std::set<std::string, std::less<>>& applications() {
    static const std::set<std::string, std::less<>> identifiers{"com.mitchellh.ghostty", "com.apple.Terminal",
                                                                "com.apple.finder"};
    return identifiers;
}

std::vector<WindowSnapshot> collapse(std::vector<WindowSnapshot> windows, std::string_view bundleIdentifier) {
    if (!applications().contains(bundleIdentifier)) return windows;
    inheritDesktops(windows);

    std::vector<WindowSnapshot> result;
    result.reserve(windows.size());  // keys point into it
    std::unordered_map<Stack, WindowSnapshot*, StackHash> stacks;
    for (WindowSnapshot& window : windows) {
        if (const auto stack = stacks.find(Stack{&window}); stack != stacks.end()) {
            fold(std::move(window), *stack->second);
        } else {
            WindowSnapshot& kept = result.emplace_back(std::move(window));
            stacks.emplace(Stack{&kept}, &kept);
        }
    }
    return result;
}

ApplicationSnapshot collapse(ApplicationSnapshot application) {
    application.windows = collapse(std::move(application.windows), application.bundleIdentifier);
    return application;
}

}  // namespace quillo::NativeTabs
