#include "app/map/DesktopMapWindows.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <unordered_map>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/support/Text.hpp"
#include "app/map/VisibleRectangle.hpp"

namespace quillo {
namespace {

constexpr std::size_t mostDesktops = 32;
constexpr std::size_t mostTiles = 12;
constexpr std::size_t mostCandidates = 200;  // bounds the search for hidden ones
constexpr std::size_t mostCharacters = 200;  // of names and titles, which strangers give

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

/// Which display a window belongs to.
class Homes {
  public:
    explicit Homes(const std::vector<PlacedDisplay>& displays) : displays_(displays) {
        for (std::size_t i = 0; i < displays.size(); ++i) byId_.try_emplace(displays[i].display->id, i);
    }

    std::size_t of(const WindowSnapshot& window) const {
        if (!window.isMinimized && !window.isFullscreen &&
            !(window.frame.width > 0 && window.frame.height > 0))
            return nowhere;
        if (!window.displayID) return byFrame(window.frame);
        const auto found = byId_.find(*window.displayID);
        return found != byId_.end() ? found->second : nowhere;
    }
    std::size_t primary() const {
        const auto found = std::ranges::find_if(
            displays_, [](const PlacedDisplay& placed) { return placed.display->isPrimary; });
        return found != displays_.end() ? static_cast<std::size_t>(found - displays_.begin()) : 0;
    }

  private:
    std::size_t byFrame(const Rect& frame) const {
        std::size_t best = nowhere;
        double most = 0;
        for (std::size_t i = 0; i < displays_.size(); ++i) {
            const double shared = displays_[i].display->frame.intersectionArea(frame);
            if (shared > most) {
                most = shared;
                best = i;
            }
        }
        return best;
    }

    const std::vector<PlacedDisplay>& displays_;
    std::unordered_map<std::string, std::size_t> byId_;
};

/// The windows of one display before they are dealt out to its desktops.
struct Stock {
    std::map<std::int64_t, std::vector<SavedWindow>> byDesktop;  // by index
    std::vector<SavedWindow> everywhere;                         // of which no desktop is known
    std::vector<SavedWindow> fullscreen;

    void add(const SavedWindow& saved) {
        if (saved.window->isFullscreen && !saved.window->isMinimized && !saved.window->desktop) {
            fullscreen.push_back(saved);
        } else if (!saved.window->desktop) {
            everywhere.push_back(saved);
        } else {
            byDesktop[saved.window->desktop->index].push_back(saved);
        }
    }
};

void addDesktops(const WorkspaceSnapshot& snapshot, const std::vector<PlacedDisplay>& displays,
                 std::vector<Stock>& stocks) {
    if (!snapshot.desktops) return;
    std::unordered_map<std::string, std::size_t> byId;
    for (std::size_t i = 0; i < displays.size(); ++i) byId.try_emplace(displays[i].display->id, i);
    for (const DesktopSnapshot& desktop : *snapshot.desktops) {
        const auto found = byId.find(desktop.displayID);
        if (found != byId.end()) stocks[found->second].byDesktop.try_emplace(desktop.index);
    }
}

std::vector<DesktopChoice> choicesOf(Stock& stock) {
    std::vector<DesktopChoice> choices;
    // A display of which only a full-screen window is known shows that one, and no empty desktop beside it.
    if (stock.byDesktop.empty() && (stock.fullscreen.empty() || !stock.everywhere.empty()))
        stock.byDesktop.try_emplace(0);
    for (auto& [index, windows] : stock.byDesktop) {
        if (choices.size() == mostDesktops) break;
        const DesktopSnapshot desktop{.displayID = {}, .index = index, .uuid = {}};
        const bool empty = windows.empty() && stock.everywhere.empty();
        choices.push_back({{"Desktop " + std::to_string(desktop.number()), empty}, std::move(windows)});
    }
    for (const SavedWindow& saved : stock.fullscreen) {
        if (choices.size() == mostDesktops) break;
        const std::string name = text::clipped(saved.application->name, mostCharacters);
        choices.push_back({{name.empty() ? "Full screen" : name, false}, {saved}, true});
    }
    return choices;
}

std::size_t fullest(const std::vector<DesktopChoice>& choices, std::size_t everywhere) {
    const auto windows = [&](const DesktopChoice& choice) {
        return choice.windows.size() + (choice.fullscreen ? 0 : everywhere);
    };
    return static_cast<std::size_t>(std::ranges::max_element(choices, {}, windows) - choices.begin());
}

TileState stateOf(const ApplicationSnapshot& application, const WindowSnapshot& window,
                  const MapRequest& request) {
    if (request.states.empty()) return TileState::saved;
    const auto found =
        request.states.find(CaptureFilter::windowKey(application.bundleIdentifier, window.index));
    return found != request.states.end() ? found->second : TileState::saved;
}

/// The frame within its display, at least large enough to be seen and never outside.
Rect tileFrame(const Rect& frame, const PlacedDisplay& display) {
    const Rect& whole = display.display->frame;
    const double inset = display.frame.height >= 140 ? 2 : 1;
    const Rect space = grown(display.frame, -inset);
    const auto along = [](double at, double from, double length, double start, double pixels) {
        return std::round(start + std::clamp((at - from) / length, 0.0, 1.0) * pixels);
    };
    const Rect& d = display.frame;
    double left = along(frame.minX(), whole.x, whole.width, d.x, d.width);
    double right = along(frame.maxX(), whole.x, whole.width, d.x, d.width);
    double top = along(frame.minY(), whole.y, whole.height, d.y, d.height);
    double bottom = along(frame.maxY(), whole.y, whole.height, d.y, d.height);
    const auto fit = [](double& from, double& to, double least, double start, double end) {
        from = std::max(from, start);
        to = std::max(std::min(to, end), from + std::min(least, end - start));
        const double beyond = std::max(0.0, to - end);
        from -= beyond;
        to -= beyond;
    };
    fit(left, right, 14, space.minX(), space.maxX());
    fit(top, bottom, 10, space.minY(), space.maxY());
    return {left, top, right - left, bottom - top};
}

struct Candidate {
    TileSource placed;
    std::size_t rank;  // among its application's windows, the front one first
    double depth;      // area of the largest one before it, itself included
};

double areaOf(const Rect& rect) {
    return rect.width * rect.height;
}

/// In each application the later windows stand behind the earlier ones.
std::vector<Candidate> candidatesOf(const std::vector<SavedWindow>& windows, const PlacedDisplay& display) {
    std::vector<SavedWindow> sorted;
    std::ranges::copy_if(windows, std::back_inserter(sorted),
                         [](const SavedWindow& saved) { return !saved.window->isMinimized; });
    std::ranges::sort(sorted, [](const SavedWindow& a, const SavedWindow& b) {
        return std::tuple(a.place, a.window->index, a.window) <
               std::tuple(b.place, b.window->index, b.window);
    });
    std::vector<Candidate> candidates;
    for (const SavedWindow& saved : sorted) {
        const Rect frame = tileFrame(saved.window->frame, display);
        const bool first =
            candidates.empty() || candidates.back().placed.saved.application != saved.application;
        const double before = first ? 0 : candidates.back().depth;
        candidates.push_back(
            {{saved, frame}, first ? 0 : candidates.back().rank + 1, std::max(before, areaOf(frame))});
    }
    return candidates;
}

bool inFront(const Candidate& a, const Candidate& b) {
    const bool ghostA = isGhost(a.placed.saved.state), ghostB = isGhost(b.placed.saved.state);
    if (ghostA != ghostB) return ghostB;
    if (a.depth != b.depth) return a.depth < b.depth;
    if (a.rank != b.rank) return a.rank < b.rank;
    return a.placed.saved.place > b.placed.saved.place;
}

/// Front to back; those that a single one before them hides are left out.
std::vector<Candidate> seen(std::vector<Candidate> candidates) {
    std::ranges::sort(candidates, inFront);
    std::vector<Candidate> kept;
    for (const Candidate& candidate : candidates) {
        const Rect& frame = candidate.placed.frame;
        const bool hidden = std::ranges::any_of(kept, [&](const Candidate& front) {
            return front.placed.frame.intersectionArea(frame) == areaOf(frame);
        });
        if (hidden) continue;
        kept.push_back(candidate);
        if (kept.size() == mostCandidates) break;
    }
    return kept;
}

}  // namespace

std::string SavedWindow::key() const {
    return CaptureFilter::windowKey(application->bundleIdentifier, window->index);
}

MapWindow SavedWindow::described() const {
    return {key(), application->bundleIdentifier, text::clipped(application->name, mostCharacters),
            text::clipped(window->title.value_or(""), mostCharacters), state};
}

std::vector<DisplayWindows> windowsOfDisplays(const WorkspaceSnapshot& snapshot,
                                              const std::vector<PlacedDisplay>& displays,
                                              const MapRequest& request) {
    std::vector<DisplayWindows> result(displays.size());
    if (displays.empty()) return result;
    const Homes homes(displays);
    std::vector<Stock> stocks(displays.size());
    addDesktops(snapshot, displays, stocks);
    for (std::size_t place = 0; place < snapshot.applications.size(); ++place) {
        const ApplicationSnapshot& application = snapshot.applications[place];
        for (const WindowSnapshot& window : application.windows) {
            const SavedWindow saved{&application, &window, place, stateOf(application, window, request)};
            const std::size_t home = homes.of(window);
            if (home == nowhere) {
                result[homes.primary()].homeless.push_back(saved);
            } else {
                stocks[home].add(saved);
            }
        }
    }
    for (std::size_t i = 0; i < displays.size(); ++i) {
        result[i].choices = choicesOf(stocks[i]);
        const auto asked = request.shownDesktops.find(displays[i].display->id);
        const bool valid = asked != request.shownDesktops.end() && asked->second < result[i].choices.size();
        const std::size_t full = fullest(result[i].choices, stocks[i].everywhere.size());
        result[i].shown = valid ? asked->second : full;
        if (!result[i].homeless.empty()) result[i].choices[full].desktop.empty = false;
        if (result[i].shown != full) result[i].homeless.clear();
        // On every desktop, of which one is shown.
        DesktopChoice& shown = result[i].choices[result[i].shown];
        const std::vector<SavedWindow>& everywhere = stocks[i].everywhere;
        if (!shown.fullscreen)
            shown.windows.insert(shown.windows.end(), everywhere.begin(), everywhere.end());
    }
    return result;
}

TileChoice chooseTiles(const std::vector<SavedWindow>& windows, const PlacedDisplay& display) {
    TileChoice choice;
    std::vector<Candidate> candidates = candidatesOf(windows, display);
    const std::size_t all = candidates.size();
    std::vector<Candidate> kept = seen(std::move(candidates));
    if (kept.size() > mostTiles) {
        std::ranges::sort(kept, [](const Candidate& a, const Candidate& b) {
            if (a.rank != b.rank) return a.rank < b.rank;
            const double areaA = areaOf(a.placed.frame), areaB = areaOf(b.placed.frame);
            return areaA != areaB ? areaA > areaB : a.placed.saved.place < b.placed.saved.place;
        });
        choice.more = all - mostTiles;  // the hidden ones too, so that the windows add up
        kept.erase(kept.begin() + mostTiles, kept.end());
        std::ranges::sort(kept, inFront);
    }
    for (auto one = kept.rbegin(); one != kept.rend(); ++one) choice.tiles.push_back(one->placed);
    return choice;
}

}  // namespace quillo
