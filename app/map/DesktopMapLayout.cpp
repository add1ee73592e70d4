#include "app/map/DesktopMapLayout.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "app/map/DesktopMapTiles.hpp"
#include "app/map/VisibleRectangle.hpp"

namespace quillo {
namespace {

constexpr std::array styleNames{std::pair{std::string_view("detail"), MapStyle::detail},
                                std::pair{std::string_view("review"), MapStyle::review},
                                std::pair{std::string_view("card"), MapStyle::card},
                                std::pair{std::string_view("restore"), MapStyle::restore},
                                std::pair{std::string_view("switcher"), MapStyle::switcher},
                                std::pair{std::string_view("strip"), MapStyle::strip}};
constexpr std::array stateNames{std::pair{std::string_view("saved"), TileState::saved},
                                std::pair{std::string_view("unticked"), TileState::unticked},
                                std::pair{std::string_view("pending"), TileState::pending},
                                std::pair{std::string_view("landing"), TileState::landing},
                                std::pair{std::string_view("restored"), TileState::restored},
                                std::pair{std::string_view("failed"), TileState::failed},
                                std::pair{std::string_view("skipped"), TileState::skipped}};

template <class Names>
auto called(std::string_view name, const Names& names) {
    using Value = decltype(names[0].second);
    const auto found = std::ranges::find(names, name, [](const auto& one) { return one.first; });
    return found != names.end() ? std::optional<std::remove_cvref_t<Value>>(found->second) : std::nullopt;
}

double widthOf(std::string_view text, MapText role, const MapRequest& request) {
    return request.measure ? std::ceil(request.measure(text, role)) : 1e9;
}

/// How the windows that do not fit are told: "+3".
std::string plus(std::size_t count) {
    return "+" + std::to_string(count);
}

std::vector<SavedWindow> docked(const DisplayWindows& windows) {
    std::vector<SavedWindow> result;
    for (const SavedWindow& saved : windows.choices[windows.shown].windows) {
        if (saved.window->isMinimized) result.push_back(saved);
    }
    result.insert(result.end(), windows.homeless.begin(), windows.homeless.end());
    return result;
}

/// Icons in a row; as many as the display is wide enough for, at most six.
struct DockPlan {
    double chip, moreWidth = 0, width = 0;
    std::size_t count = 0;
    std::string more;
};

DockPlan planDock(std::size_t windows, double space, double chip, const MapRequest& request) {
    constexpr double gap = 3, padding = 4;
    DockPlan plan{.chip = chip, .more = {}};
    for (plan.count = std::min<std::size_t>(windows, 6);; --plan.count) {
        plan.more = plan.count < windows ? plus(windows - plan.count) : "";
        plan.moreWidth = plan.more.empty() ? 0 : widthOf(plan.more, MapText::small, request) + 2;
        plan.width = 2 * padding + static_cast<double>(plan.count) * (chip + gap) - gap;
        if (plan.moreWidth > 0) plan.width += plan.moreWidth + gap;
        if (plan.width <= space || plan.count == 0) return plan;
    }
}

std::optional<MapDock> makeDock(const std::vector<SavedWindow>& windows, const Rect& display,
                                const MapRequest& request) {
    if (windows.empty() || display.height < 56 || !showsIcons(request)) return std::nullopt;
    const bool large = display.height >= 140;
    const DockPlan plan = planDock(windows.size(), display.width - 6, large ? 20 : 11, request);
    if (plan.count == 0) return std::nullopt;
    MapDock dock;
    const double height = plan.chip + (large ? 6 : 4);
    dock.frame = {std::round(display.x + (display.width - plan.width) / 2),
                  display.maxY() - height - (large ? 5 : 2), plan.width, height};
    dock.radius = std::round(height * 0.34);
    double x = dock.frame.x + 4;
    for (std::size_t i = 0; i < plan.count; ++i, x += plan.chip + 3) {
        const Rect icon{x, dock.frame.y + (height - plan.chip) / 2, plan.chip, plan.chip};
        dock.chips.push_back({windows[i].described(), icon});
    }
    dock.more = plan.more;
    if (!dock.more.empty()) dock.moreFrame = {x, dock.frame.y, plan.moreWidth, height};
    return dock;
}

void addMore(MapDisplay& display, std::size_t more, const MapRequest& request) {
    if (more == 0 || display.frame.height < 70 || !showsIcons(request)) return;
    const double margin = display.frame.height < 140 ? 3 : 6;
    const std::string text = plus(more);
    const double width = widthOf(text, MapText::small, request) + 12;
    if (width + 2 * margin > display.frame.width) return;
    display.more = text;
    display.moreFrame = {display.frame.maxX() - margin - width, display.frame.y + display.menuBar + margin,
                         width, std::round(4 + 12 * request.textScale)};
}

const SavedWindow* fullscreenOf(const DesktopChoice& choice) {
    const auto found = std::ranges::find_if(choice.windows, [](const SavedWindow& saved) {
        return saved.window->isFullscreen && !saved.window->isMinimized;
    });
    return found != choice.windows.end() ? &*found : nullptr;
}

/// Where there is room for it, so that nothing looks as if it were still to come.
void addEmptyNote(MapDisplay& display, const MapRequest& request) {
    const double width = widthOf(emptyNote, MapText::label, request) + 2, height = 14 * request.textScale;
    if (!mapMeasures(request.style).large || width > display.frame.width - 16) return;
    display.emptyNote = {std::round(display.frame.midX() - width / 2),
                         std::round(display.frame.midY() - height / 2), width, std::ceil(height)};
}

void addWindows(MapDisplay& display, const PlacedDisplay& placed, const DisplayWindows& windows,
                const MapRequest& request) {
    const DesktopChoice& choice = windows.choices[windows.shown];
    if (choice.desktop.empty) return addEmptyNote(display, request);
    if (const SavedWindow* fullscreen = fullscreenOf(choice)) {
        display.menuBar = 0;
        display.tiles = {makeFullscreenTile(*fullscreen, placed, display.radius, request)};
        return;
    }
    const TileChoice chosen = chooseTiles(choice.windows, placed);
    display.dock = makeDock(docked(windows), display.frame, request);
    addMore(display, chosen.more, request);
    std::vector<Rect> covers;
    if (display.dock) covers.push_back(display.dock->frame);
    if (!display.more.empty()) covers.push_back(display.moreFrame);
    display.tiles = makeTiles(chosen.tiles, covers, placed, request);
}

void addPips(MapDisplay& display, const MapRequest& request) {
    constexpr double size = 4, gap = 3;
    const auto count = static_cast<double>(display.desktops.size());
    const double width = count * (size + gap) - gap, y = display.frame.maxY() + 4;
    if (count < 2 || request.width < 200 || !showsIcons(request) || width > display.frame.width ||
        y + size > request.height)
        return;
    double x = std::round(display.frame.x + (display.frame.width - width) / 2);
    for (std::size_t i = 0; i < display.desktops.size(); ++i, x += size + gap) {
        display.pips.push_back({x, y, size, size});
    }
}

double segmentsWidth(const std::vector<MapSegment>& segments, const MapRequest& request) {
    double width = 4;
    for (const MapSegment& segment : segments) width += widthOf(segment.label, MapText::label, request) + 16;
    return width;
}

/// The whole names; where they are too wide, numbers; where those are too many, the ones around the shown
/// one.
std::vector<MapSegment> segmentsFor(const MapDisplay& display, const MapRequest& request) {
    const double space = display.frame.width;
    std::vector<MapSegment> segments;
    for (std::size_t i = 0; i < display.desktops.size(); ++i)
        segments.push_back({display.desktops[i].label, i, display.desktops[i].empty});
    if (segments.size() == 1 && widthOf(segments[0].label, MapText::label, request) > space) return {};
    if (segments.size() < 2 || segmentsWidth(segments, request) <= space) return segments;
    for (MapSegment& segment : segments) {
        if (segment.label.starts_with("Desktop ")) segment.label.erase(0, 8);
    }
    if (segmentsWidth(segments, request) <= space) return segments;
    for (MapSegment& segment : segments) segment.label = std::to_string(segment.position + 1);
    while (segments.size() > 1 && segmentsWidth(segments, request) > space) {
        const std::size_t before = display.shown - segments.front().position;
        const std::size_t after = segments.back().position - display.shown;
        segments.erase(before > after ? segments.begin() : segments.end() - 1);
    }
    return segments;
}

MapDisplay makeDisplay(const PlacedDisplay& placed, const DisplayWindows& windows,
                       const MapRequest& request) {
    MapDisplay display;
    display.id = placed.display->id;
    display.frame = placed.frame;
    display.radius = displayRadius(placed.frame.height);
    if (placed.display->isPrimary && placed.frame.height >= 60)
        display.menuBar = std::max(3.0, std::round(placed.frame.height * 0.022));
    for (const DesktopChoice& choice : windows.choices) display.desktops.push_back(choice.desktop);
    display.shown = windows.shown;
    addWindows(display, placed, windows, request);
    if (mapMeasures(request.style).large) {
        display.segments = segmentsFor(display, request);
        display.caption = {display.frame.x, display.frame.maxY() + 7, display.frame.width,
                           captionHeight(request) - 7};
    } else {
        addPips(display, request);
    }
    return display;
}

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::optional<MapStyle> mapStyle(std::string_view name) {
    return called(name, styleNames);
}

std::optional<TileState> tileState(std::string_view name) {
    return called(name, stateNames);
}

bool isGhost(TileState state) {
    return state == TileState::unticked || state == TileState::pending;
}

bool isMarked(TileState state) {
    return state == TileState::failed || state == TileState::skipped;
}

DesktopMapLayout layoutDesktopMap(const WorkspaceSnapshot& snapshot, const MapRequest& request) {
    DesktopMapLayout layout{.displays = {}, .icons = showsIcons(request)};
    std::vector<PlacedDisplay> displays = usableDisplays(snapshot.displays);
    const std::vector<DisplayWindows> windows = windowsOfDisplays(snapshot, displays, request);
    for (std::size_t i = 0; i < displays.size(); ++i) displays[i].several = windows[i].choices.size() > 1;
    placeDisplays(displays, request);
    for (std::size_t i = 0; i < displays.size(); ++i) {
        layout.displays.push_back(makeDisplay(displays[i], windows[i], request));
    }
    return layout;
}

std::string mapDescription(const WorkspaceSnapshot& snapshot) {
    std::size_t windows = 0;
    for (const ApplicationSnapshot& application : snapshot.applications)
        windows += application.windows.size();
    return counted(snapshot.displays.size(), "display", "displays") + ", " +
           counted(windows, "window", "windows");
}

}  // namespace quillo
