// Sequences of saving, restoring, changing and undoing on random desktops: after an undo, every window that
// still lives is where and how it was before the restore. And windows that open late: none that a person
// moved is moved by their placing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>

#include "tests/journeys/RandomJourney.hpp"

namespace quillo {
namespace {

struct Place {
    Rect frame;
    bool minimized = false, fullscreen = false;
    SpaceID space = 0;
    std::string application, title;
};

bool isSeen(simulated::World& world, const simulated::Window& window) {
    // A dialog on another desktop nobody can reach, and a private window nobody touches.
    const bool hiddenDialog = window.state.subrole != "AXStandardWindow" && !world.listed(window);
    return !hiddenDialog && !window.state.privateBrowsing;
}

std::map<WindowNumber, Place> placesOf(simulated::World& world) {
    std::map<WindowNumber, Place> places;
    for (const simulated::Window& window : world.windows()) {
        if (!isSeen(world, window)) continue;
        const simulated::SceneWindow& state = window.state;
        places[window.number] = {state.frame,  state.minimized,    state.fullscreen,
                                 window.space, window.application, state.title.value_or("")};
    }
    return places;
}

/// A size that no person could give the window is not given back: it keeps to whole cells.
bool near(const simulated::Window& window, const Rect& b) {
    const Rect& a = window.state.frame;
    const Size cell = window.state.cell;
    return std::max(std::abs(a.x - b.x), std::abs(a.y - b.y)) <= 2 &&
           std::abs(a.width - b.width) <= std::max(2.0, cell.width) &&
           std::abs(a.height - b.height) <= std::max(2.0, cell.height);
}

void expectBack(Journey& journey, const std::map<WindowNumber, Place>& before) {
    simulated::World& world = journey.world();
    const auto exists = [&](SpaceID space) {
        return std::ranges::any_of(world.displays(), [&](const simulated::Display& display) {
            return std::ranges::count(display.desktops, space) > 0;
        });
    };
    for (const auto& [number, place] : before) {
        const simulated::Window* window = world.window(number);
        if (!window) continue;
        SCOPED_TRACE(place.application + ": " + place.title);
        EXPECT_EQ(window->state.minimized, place.minimized);
        EXPECT_EQ(window->state.fullscreen, place.fullscreen);
        EXPECT_TRUE(near(*window, place.frame)) << window->state.frame.x << "," << window->state.frame.y
                                                << " instead of " << place.frame.x << "," << place.frame.y;
        if (!place.fullscreen && exists(place.space)) {
            EXPECT_EQ(window->space, place.space);
        }
    }
}

TEST(UndoJourneys, WhateverLivesIsWhereAndHowItWas) {
    eachSeed(4, [](std::uint64_t seed) {
        RandomJourney journey(seed);
        journey.save();
        std::mt19937_64 steps(seed);
        for (int round = 0; round < 3; ++round) {
            journey.disturb(false);
            if (steps() % 3 == 0) journey.save();
            journey.disturb(false);
            const auto before = placesOf(journey.world());
            journey.restoreUndoably(allCleanSlateModes[steps() % allCleanSlateModes.size()]);
            journey.settle();
            if (steps() % 2 == 0) journey.disturb(false);
            if (steps() % 2 == 0) journey.undockAndDock();
            const RestoreReport report = journey.undo();
            EXPECT_EQ(report.totals().failed, 0);
            expectBack(journey, before);
            journey.undo();  // nothing is left to be done
            expectBack(journey, before);
        }
    });
}

TEST(UndoJourneys, NothingThatAPersonMovedIsMovedByLatePlacing) {
    using namespace std::chrono_literals;
    eachSeed(4, [](std::uint64_t seed) {
        RandomJourney journey(seed);
        journey.save();
        journey.disturb(false);
        std::mt19937_64 steps(seed);
        Restore::LateWindows late(journey.access(), {});
        Job<void> placing(journey.executor(), late.place());
        journey.restoreExpecting(late);
        late.runEnded(5min);
        simulated::World& world = journey.world();
        std::map<WindowNumber, Rect> moved;
        for (int i = 0; i < 12; ++i) {
            simulated::Application& application = world.applications()[steps() % world.applications().size()];
            if (!application.running || application.scene.windows.empty()) continue;
            simulated::SceneWindow window =
                application.scene.windows[steps() % application.scene.windows.size()];
            window.minimized = window.fullscreen = false;
            window.tabGroup.clear();
            window.desktop = 0;
            window.frame.x += 30;
            if (steps() % 3 == 0) window.title = "Else";
            const WindowNumber number = world.openWindow(application, window).number;
            // Where nothing is told of it, it is seen a second later.
            journey.executor().runFor(1400ms + std::chrono::milliseconds(steps() % 2000));
            simulated::Window* const live = journey.world().window(number);
            if (!live || live->state.fullscreen || live->transition || steps() % 2 == 0) continue;
            moved[number] = live->state.frame;
            moved[number].x += 200;
            world.move(*live, moved[number]);
            if (steps() % 2 == 0) live->state.title = application.scene.windows.front().title;
            journey.executor().runFor(std::chrono::milliseconds(steps() % 3000));
        }
        journey.executor().runFor(6min);
        EXPECT_TRUE(placing.done());
        for (const auto& [number, frame] : moved) {
            EXPECT_EQ(journey.world().window(number)->state.frame, frame);
        }
    });
}

}  // namespace
}  // namespace quillo
