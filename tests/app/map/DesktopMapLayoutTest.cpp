// Desktop maps: what the rules give for known desktops, and what holds for any, a stranger's included.
#include <gtest/gtest.h>

#include <cmath>

#include "app/map/DesktopMapLayout.hpp"
#include "app/map/VisibleRectangle.hpp"
#include "tests/app/map/MapSamples.hpp"

namespace quillo {
namespace {

using samples::keyOf;
using samples::MapSample;

struct Size {
    double width, height;
};

MapRequest request(MapStyle style, Size size) {
    MapRequest made{.style = style, .width = size.width, .height = size.height};
    made.measure = [](std::string_view text, MapText role) {
        return static_cast<double>(text.size()) * (role == MapText::small ? 6 : 6.5);
    };
    return made;
}

constexpr Size detail{672, 324}, card{332, 118}, small{96, 40};

/// Its tile or chip as "x y w h KIND", with "*" for the one in front; "dock N" for chips.
std::string told(const DesktopMapLayout& layout, const std::string& key) {
    for (const MapDisplay& display : layout.displays) {
        for (const MapTile& tile : display.tiles) {
            const char* const kinds[] = {"plain", "icon", "named", "titled"};
            if (tile.window.key == key)
                return display.id + " " + kinds[static_cast<int>(tile.content.kind)] +
                       (tile.front ? "*" : "") + (tile.fullscreen ? " full" : "");
        }
        if (!display.dock) continue;
        for (const MapChip& chip : display.dock->chips)
            if (chip.window.key == key) return display.id + " dock";
    }
    return "-";
}

TEST(DesktopMapLayout, ShowsEveryWindowByTheRules) {
    const WorkspaceSnapshot launch = samples::productLaunch(), music = samples::withFullScreen();
    MapRequest second = request(MapStyle::detail, detail);
    second.shownDesktops = {{"large", 1}, {"small", 99}};
    MapRequest ghosts = request(MapStyle::review, detail);
    ghosts.states = {{keyOf("Messages"), TileState::unticked}, {keyOf("Notes"), TileState::unticked}};
    MapRequest desktopOfTwo = request(MapStyle::card, card);
    desktopOfTwo.shownDesktops = {{"small", 0}};
    struct Case {
        const char* name;
        const WorkspaceSnapshot& snapshot;
        MapRequest request;
        std::string key, expected;
    };
    const Case cases[] = {
        {"title in the band", launch, request(MapStyle::detail, detail), keyOf("Browser"), "large titled"},
        {"front", launch, request(MapStyle::detail, detail), keyOf("Messages"), "small titled*"},
        {"minimized", launch, request(MapStyle::detail, detail), keyOf("Preview"), "large dock"},
        {"on another desktop", launch, request(MapStyle::detail, detail), keyOf("TextEdit"), "-"},
        {"on the desktop that was chosen", launch, second, keyOf("TextEdit"), "large titled*"},
        {"not on the one that was chosen", launch, second, keyOf("Browser"), "-"},
        {"a desktop that is none is ignored", launch, second, keyOf("Mail"), "small titled"},
        {"name below the icon", launch, request(MapStyle::card, card), keyOf("Browser"), "large named"},
        {"no name where it does not fit", launch, request(MapStyle::card, card), keyOf("Messages"),
         "small icon*"},
        {"no icons in small maps", launch, request(MapStyle::switcher, small), keyOf("Browser"),
         "large plain"},
        {"nor chips", launch, request(MapStyle::switcher, small), keyOf("Preview"), "-"},
        {"a ghost is never in front", launch, ghosts, keyOf("Messages"), "small named"},
        {"what is solid is", launch, ghosts, keyOf("Mail"), "small named*"},
        {"full screen", music, request(MapStyle::card, card), keyOf("Music"), "small named* full"},
        {"full screen, another desktop chosen", music, desktopOfTwo, keyOf("Music"), "-"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(told(layoutDesktopMap(c.snapshot, c.request), c.key), c.expected) << c.name;
    EXPECT_EQ(mapDescription(launch), "2 displays, 8 windows");
}

TEST(DesktopMapLayout, DisplaysKeepScaleAndArrangement) {
    const auto framesOf = [](const std::vector<Rect>& frames, MapStyle style, Size size) {
        WorkspaceSnapshot snapshot;
        for (const Rect& frame : frames)
            snapshot.displays.push_back(samples::display(std::to_string(snapshot.displays.size()), frame));
        std::vector<Rect> result;
        for (const MapDisplay& display : layoutDesktopMap(snapshot, request(style, size)).displays)
            result.push_back(display.frame);
        return result;
    };
    struct Case {
        const char* name;
        std::vector<Rect> frames;
        MapStyle style;
        std::vector<Rect> expected;
    };
    const Case cases[] = {
        {"one, in the middle", {{0, 0, 1920, 1080}}, MapStyle::card, {{82, 12, 167, 94}}},
        {"side by side",
         {{0, 0, 1000, 1000}, {1000, 0, 1000, 1000}},
         MapStyle::card,
         {{72, 12, 91, 94}, {169, 12, 91, 94}}},
        {"one above the other",
         {{0, 0, 1000, 500}, {0, -500, 1000, 500}},
         MapStyle::card,
         {{119, 62, 94, 44}, {119, 12, 94, 44}}},
        {"on top of each other: in a row",
         {{0, 0, 1000, 1000}, {0, 0, 1000, 1000}},
         MapStyle::card,
         {{72, 12, 91, 94}, {169, 12, 91, 94}}},
        {"a world apart: in a row",
         {{0, 0, 1000, 1000}, {900000, 0, 1000, 1000}},
         MapStyle::card,
         {{72, 12, 91, 94}, {169, 12, 91, 94}}},
        {"without a usable frame: left out",
         {{0, 0, 0, 1000}, {0, 0, -5, 5}, {1e300, 0, 9, 9}},
         MapStyle::card,
         {}},
        {"none", {}, MapStyle::detail, {}},
    };
    for (const Case& c : cases) {
        const std::vector<Rect> got = framesOf(c.frames, c.style, card);
        EXPECT_EQ(got, c.expected) << c.name;
        for (const Rect& frame : got)
            if (got != c.expected)
                ADD_FAILURE() << frame.x << " " << frame.y << " " << frame.width << " " << frame.height;
    }
    MapSample several;
    several.display("upper", {0, -500, 1000, 500}, true).desktops("upper", 2);
    several.display("lower", {0, 0, 1000, 500});
    EXPECT_EQ(layoutDesktopMap(several.made, request(MapStyle::card, card)).displays.at(0).frame,
              (Rect{119, 12, 94, 35}))
        << "room for pips between";
}

TEST(DesktopMapLayout, CrowdsAndHomelessWindowsAreCounted) {
    MapSample covered;
    covered.display("only", {0, 0, 1000, 600}, true);
    covered.window("Editor", {10, 10, 80, 80}, "front").window("Editor", {20, 20, 50, 50}, "hidden");
    covered.window("Gone", {0, 0, 20, 20}, "",
                   [](WindowSnapshot& window) { window.displayID = "unplugged"; });
    covered.window("Nowhere", {0, 0, 0, 0});
    const MapDisplay one = layoutDesktopMap(covered.made, request(MapStyle::detail, detail)).displays.at(0);
    EXPECT_EQ(one.tiles.size(), 1u) << "a window that its application's front one hides";
    ASSERT_TRUE(one.dock);
    EXPECT_EQ(one.dock->chips.size(), 2u);

    const MapDisplay crowd =
        layoutDesktopMap(samples::crowded(), request(MapStyle::detail, detail)).displays.at(0);
    EXPECT_LE(crowd.tiles.size(), 12u);
    EXPECT_GE(crowd.tiles.size(), 10u);
    EXPECT_EQ(crowd.more, "+48") << "of sixty";
    for (const MapTile& tile : crowd.tiles) {
        const bool inBand =
            tile.content.kind == MapContent::Kind::titled && tile.content.icon.y < tile.frame.y + tile.band;
        if (inBand) EXPECT_LE(tile.content.icon.maxY(), tile.frame.y + tile.band) << tile.window.title;
    }
    ASSERT_TRUE(crowd.dock);
    EXPECT_EQ(crowd.dock->chips.size(), 6u);
    EXPECT_EQ(crowd.dock->more, "+3");

    MapSample many;
    many.display("only", {0, 0, 1000, 600}, true);
    for (int i = 0; i < 10'000; ++i)
        many.window("Editor", {i % 80 + 0., i % 70 + 0., 20, 20}, std::string(100, 'x') + "\n" + "y");
    many.made.applications[0].name.append(100'000, 'z');
    const MapDisplay huge = layoutDesktopMap(many.made, request(MapStyle::detail, detail)).displays.at(0);
    EXPECT_EQ(huge.more, "+9988");
    for (const MapTile& tile : huge.tiles) {
        EXPECT_LE(tile.window.application.size(), 202U);
        EXPECT_EQ(tile.window.title.find('\n'), std::string::npos);
    }
}

TEST(DesktopMapLayout, DesktopsThatDoNotFitAreLeftToThoseAroundTheShownOne) {
    struct Case {
        std::int64_t desktops;
        std::size_t shown;
        std::string expected;
        double width = 1000;
    };
    const Case cases[] = {{1, 0, "Desktop 1"},
                          {1, 0, "", 100},
                          {3, 2, "Desktop 1,Desktop 2,Desktop 3"},
                          {12, 0, "1,2,3,4,5,6,7,8,9,10,11,12"},
                          {30, 20, "13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29"}};
    for (const Case& c : cases) {
        MapSample sample;
        sample.display("only", {0, 0, c.width, 500}, true).desktops("only", c.desktops);
        MapRequest asked = request(MapStyle::detail, detail);
        asked.shownDesktops = {{"only", c.shown}};
        std::string labels;
        for (const MapSegment& segment : layoutDesktopMap(sample.made, asked).displays.at(0).segments)
            labels += (labels.empty() ? "" : ",") + segment.label;
        EXPECT_EQ(labels, c.expected);
    }
}

TEST(DesktopMapLayout, EmptyDesktopsSaySoAndHoldNothingOfOthers) {
    MapSample sample;
    sample.display("only", {0, 0, 1000, 600}, true).desktops("only", 3);
    sample.window("Editor", {10, 10, 50, 50}).window("Lost", {0, 0, 1, 1}, "", [](WindowSnapshot& window) {
        window.displayID = "unplugged";
        window.desktop.reset();
    });
    MapRequest asked = request(MapStyle::detail, detail);
    for (const std::size_t shown : {0U, 2U}) {
        asked.shownDesktops = {{"only", shown}};
        const MapDisplay display = layoutDesktopMap(sample.made, asked).displays.at(0);
        const bool empty = shown == 2;
        EXPECT_EQ(display.tiles.empty() && !display.dock, empty);
        EXPECT_EQ(display.emptyNote.width > 0, empty);
        EXPECT_TRUE(!display.segments.at(0).empty && display.segments.at(1).empty);
    }
    asked.style = MapStyle::card;
    EXPECT_EQ(layoutDesktopMap(sample.made, asked).displays.at(0).emptyNote.width, 0)
        << "too small for words";
}

void expectWithin(const Rect& inner, const Rect& outer, const char* what) {
    if (inner.width <= 0) return;
    EXPECT_TRUE(inner.minX() >= outer.minX() && inner.maxX() <= outer.maxX() &&
                inner.minY() >= outer.minY() && inner.maxY() <= outer.maxY())
        << what << ": " << inner.x << " " << inner.y << " " << inner.width << " " << inner.height << " in "
        << outer.x << " " << outer.y << " " << outer.width << " " << outer.height;
    for (const double part : {inner.x, inner.y, inner.width, inner.height})
        EXPECT_EQ(part, std::round(part)) << what;
}

void expectSound(const MapDisplay& display, const Rect& map) {
    expectWithin(display.frame, map, "display");
    if (display.dock) expectWithin(display.dock->frame, display.frame, "dock");
    expectWithin(display.moreFrame, display.frame, "more");
    for (const Rect& pip : display.pips) expectWithin(pip, map, "pip");
    EXPECT_LE(display.tiles.size(), 12u);
    EXPECT_LT(display.shown, display.desktops.size());
    bool solid = false;
    for (std::size_t i = 0; i < display.tiles.size(); ++i) {
        const MapTile& tile = display.tiles[i];
        expectWithin(tile.frame, display.frame, "tile");
        expectWithin(tile.visible, tile.frame, "visible");
        expectWithin(tile.content.icon, tile.visible, "icon");
        expectWithin(tile.content.label, tile.visible, "label");
        expectWithin(tile.content.title, tile.visible, "title");
        expectWithin(tile.mark, tile.frame, "mark");
        for (std::size_t j = i + 1; j < display.tiles.size(); ++j)
            EXPECT_FALSE(tile.visible.intersects(display.tiles[j].frame)) << "something in front";
        if (display.dock) EXPECT_FALSE(tile.visible.intersects(display.dock->frame));
        EXPECT_FALSE(isGhost(tile.window.state) && solid) << "ghosts lie below";
        solid = solid || !isGhost(tile.window.state);
    }
}

/// Anything that a file can say.
WorkspaceSnapshot anyDesktop(samples::Random& random, MapRequest& asked) {
    const auto extreme = [&](double usual) {
        return random.oneOf<double>({usual, usual, usual, -usual, 0, 1e300, -1e9});
    };
    WorkspaceSnapshot made;
    for (int i = random.below(5); i > 0; --i) {
        const Rect frame{extreme(random.length(0, 4000)), extreme(random.length(0, 2000)),
                         extreme(random.length(1, 4000)), extreme(random.length(1, 4000))};
        made.displays.push_back(
            samples::display("d" + std::to_string(random.below(4)), frame, random.flip()));
    }
    const auto states =
        std::vector{TileState::saved,    TileState::unticked, TileState::pending, TileState::landing,
                    TileState::restored, TileState::failed,   TileState::skipped};
    for (int i = random.below(80); i > 0; --i) {
        ApplicationSnapshot& application = made.applications.emplace_back();
        application.name = random.oneOf<std::string>({"", "Editor", "A name that is longer than any tile"});
        application.bundleIdentifier = "a" + std::to_string(random.below(5));
        for (int j = random.below(6); j > 0; --j) {
            WindowSnapshot& window = application.windows.emplace_back(
                samples::window({extreme(random.length(0, 4000)), extreme(random.length(0, 2000)),
                                 extreme(random.length(0, 3000)), extreme(random.length(0, 3000))}));
            window.displayID = random.maybe<std::string>("d" + std::to_string(random.below(5)));
            if (random.flip()) window.desktop = DesktopSnapshot{"d0", random.below(3) - 1, std::nullopt};
            window.isMinimized = random.below(5) == 0;
            window.isFullscreen = random.below(30) == 0;
            window.index = random.below(4);
            asked.states[CaptureFilter::windowKey(application.bundleIdentifier, window.index)] =
                random.oneOf(states);
        }
    }
    return made;
}

TEST(DesktopMapLayout, HoldsItsRulesForWhateverAFileSays) {
    const std::pair<MapStyle, Size> sizes[] = {{MapStyle::detail, detail},  {MapStyle::review, {472, 296}},
                                               {MapStyle::card, card},      {MapStyle::restore, {348, 152}},
                                               {MapStyle::switcher, small}, {MapStyle::detail, {120, 90}}};
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        samples::Random random(seed);
        const auto& [style, size] = sizes[seed % std::size(sizes)];
        MapRequest asked = request(style, size);
        asked.textScale = random.oneOf<double>({1, 1.25, 1.5});
        const WorkspaceSnapshot snapshot = anyDesktop(random, asked);
        for (const MapDisplay& display : layoutDesktopMap(snapshot, asked).displays)
            expectSound(display, {0, 0, size.width, size.height});
        if (HasFailure()) break;
    }
}

TEST(VisibleRectangle, IsTheBestOfWhatNothingCovers) {
    const auto area = [](const Rect& rect) { return rect.width * rect.height; };
    struct Case {
        const char* name;
        std::vector<Rect> covers;
        Rect expected;
    };
    const Case cases[] = {{"nothing in front", {}, {0, 0, 100, 60}},
                          {"elsewhere", {{200, 0, 50, 50}, {100, 0, 5, 5}}, {0, 0, 100, 60}},
                          {"a corner", {{60, 30, 90, 90}}, {0, 0, 60, 60}},
                          {"the middle", {{30, 0, 40, 55}}, {0, 0, 30, 60}},
                          {"all", {{-1, -1, 60, 90}, {50, -5, 60, 90}}, {}}};
    for (const Case& c : cases)
        EXPECT_EQ(bestVisibleRectangle({0, 0, 100, 60}, c.covers, area), c.expected) << c.name;
}

}  // namespace
}  // namespace quillo
