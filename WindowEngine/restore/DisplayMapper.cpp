#include "WindowEngine/restore/DisplayMapper.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

#include "WindowEngine/desktop/Displays.hpp"

namespace quillo::DisplayMapper {
namespace {

const DisplaySnapshot* withID(std::string_view id, DisplayList displays) {
    const auto found = std::ranges::find(displays, id, &DisplaySnapshot::id);
    return found == displays.end() ? nullptr : &*found;
}

const DisplaySnapshot* markedPrimary(DisplayList displays) {
    const auto found = std::ranges::find(displays, true, &DisplaySnapshot::isPrimary);
    return found == displays.end() ? nullptr : &*found;
}

const DisplaySnapshot& primary(DisplayList displays) {  // `displays` is not empty
    const DisplaySnapshot* marked = markedPrimary(displays);
    return marked ? *marked : displays.front();
}

Placement relative(const Rect& normalized, const DisplaySnapshot& target) {
    return {clamp(Displays::denormalize(normalized, target.frame), target.visibleFrame), true};
}

Placement onSameDisplay(const WindowSnapshot& window, const DisplaySnapshot& saved,
                        const DisplaySnapshot& target, Edges edges) {
    if (target.frame != saved.frame) return relative(window.normalizedFrame, target);
    if (edges == Edges::kept) return {window.frame, false};
    const Rect frame = clamp(window.frame, target.visibleFrame);
    return {frame, frame != window.frame};
}

Placement onPrimary(const WindowSnapshot& window, const DisplaySnapshot* saved,
                    const DisplaySnapshot& target) {
    // Workspaces from before normalised frames were kept carry the zero rectangle.
    const Rect normalized = window.normalizedFrame == Rect{}
                                ? Displays::normalize(window.frame, saved ? saved->frame : target.frame)
                                : window.normalizedFrame;
    return relative(normalized, target);
}

}  // namespace

Point offset(const DisplaySnapshot& display, const DisplaySnapshot& primaryDisplay) {
    const Rect& p = primaryDisplay.frame;
    return {(display.frame.midX() - p.midX()) / std::max(p.width, 1.0),
            (display.frame.midY() - p.midY()) / std::max(p.height, 1.0)};
}

double squaredDistance(Point a, Point b) {
    return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y);
}

Rect clamp(const Rect& rect, const Rect& bounds) {
    const double width = std::min(rect.width, bounds.width);
    const double height = std::min(rect.height, bounds.height);
    const double x = std::min(std::max(bounds.minX(), rect.minX()), bounds.maxX() - width);
    const double y = std::min(std::max(bounds.minY(), rect.minY()), bounds.maxY() - height);
    return {x, y, width, height};
}

const DisplaySnapshot* bestTopologyMatch(const DisplaySnapshot& display, DisplayList saved,
                                         DisplayList current) {
    std::vector<const DisplaySnapshot*> candidates;
    for (const DisplaySnapshot& candidate : current) {
        if (candidate.frame.size() == display.frame.size() && candidate.scale == display.scale)
            candidates.push_back(&candidate);
    }
    if (candidates.empty()) return nullptr;
    const DisplaySnapshot* savedPrimary = markedPrimary(saved);
    const DisplaySnapshot* currentPrimary = markedPrimary(current);
    if (candidates.size() == 1 || !savedPrimary || !currentPrimary) return candidates.front();

    const Point wanted = offset(display, *savedPrimary);
    return *std::ranges::min_element(candidates, {}, [&](const DisplaySnapshot* candidate) {
        return squaredDistance(offset(*candidate, *currentPrimary), wanted);
    });
}

const DisplaySnapshot* targetDisplay(const std::optional<std::string>& id, DisplayList saved,
                                     DisplayList current) {
    if (current.empty()) return nullptr;
    // A current display that happens to carry an id which the saved list does not describe is not consulted.
    const DisplaySnapshot* savedDisplay = id ? withID(*id, saved) : nullptr;
    if (!savedDisplay) return &primary(current);
    if (const DisplaySnapshot* same = withID(*id, current)) return same;
    if (const DisplaySnapshot* match = bestTopologyMatch(*savedDisplay, saved, current)) return match;
    return &primary(current);
}

std::optional<Placement> place(const WindowSnapshot& window, DisplayList saved, DisplayList current,
                               Edges edges) {
    if (current.empty()) return std::nullopt;
    const DisplaySnapshot* savedDisplay = window.displayID ? withID(*window.displayID, saved) : nullptr;
    if (savedDisplay) {
        if (const DisplaySnapshot* same = withID(savedDisplay->id, current))
            return onSameDisplay(window, *savedDisplay, *same, edges);
        if (const DisplaySnapshot* match = bestTopologyMatch(*savedDisplay, saved, current))
            return relative(window.normalizedFrame, *match);
    }
    return onPrimary(window, savedDisplay, primary(current));
}

}  // namespace quillo::DisplayMapper
