// Random desktops: captured, disturbed, restored, with and without faults. A failure prints its seed, and the
// same seed replays it (QUILLO_SEED=n); QUILLO_SEEDS=n asks for more of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "WindowEngine/library/SessionHistory.hpp"
#include "tests/journeys/RandomJourney.hpp"

namespace quillo {
namespace {

using Report = RestoreReport;

bool is(const Report::Item& item, std::string_view reason) {
    return outcomeOf(item.status).trouble() && detailOf(item.status).text.starts_with(reason);
}

bool samePlace(const Rect& a, const Rect& b) {
    return std::max(std::abs(a.x - b.x), std::abs(a.y - b.y)) <= 2;
}
bool sameSize(const Rect& a, const Rect& b) {
    return std::max(std::abs(a.width - b.width), std::abs(a.height - b.height)) <= 2;
}

/// Each saved window of an application that reached placement ends in exactly one item.
void expectOneItemForEachWindow(const Report& report, const Workspace& saved) {
    std::map<std::pair<std::string, std::int64_t>, int> counts;
    std::map<std::string, bool> ended;
    for (const Report::Item& item : report.items) {
        if (item.savedIndex) ++counts[{item.bundleIdentifier, *item.savedIndex}];
        if (is(item, "not installed") || is(item, "couldn't launch")) ended[item.bundleIdentifier] = true;
        if (is(item, "Accessibility permission")) return;
        EXPECT_FALSE(is(item, "Restore stopped unexpectedly"));
    }
    for (const ApplicationSnapshot& application : saved.snapshot.applications) {
        for (std::int64_t i = 0; i < static_cast<std::int64_t>(application.windows.size()); ++i)
            EXPECT_EQ((counts[{application.bundleIdentifier, i}]),
                      ended[application.bundleIdentifier] ? 0 : 1)
                << application.bundleIdentifier << " window " << i;
    }
}

struct Reported {
    const Report::Item& item;
    const WindowSnapshot& saved;
    const simulated::Window& live;
};

/// The titled windows that the report says are back; none for which another window stood in.
std::vector<Reported> reportedBack(Journey& journey, const Report& report) {
    std::vector<Reported> all;
    for (const ApplicationSnapshot& application : journey.saved().snapshot.applications) {
        for (const Report::Item& item : report.items) {
            const Verdict verdict = outcomeOf(item.status).verdict;
            const bool back = verdict == Verdict::back || verdict == Verdict::differs;
            if (!back || item.bundleIdentifier != application.bundleIdentifier || !item.savedIndex ||
                !item.title)
                continue;
            if (const auto* live = journey.world().window(application.bundleIdentifier, *item.title))
                all.push_back({item, application.windows[static_cast<std::size_t>(*item.savedIndex)], *live});
        }
    }
    return all;
}

/// A window reported as back is in its saved place and state.
void expectWindowsWhereReported(Journey& journey, const Report& report, bool sameDisplays) {
    for (const auto& [item, saved, live] : reportedBack(journey, report)) {
        EXPECT_EQ(live.state.minimized, saved.isMinimized) << *item.title;
        EXPECT_EQ(live.state.fullscreen, saved.isFullscreen) << *item.title;
        if (!sameDisplays || saved.isFullscreen) continue;
        EXPECT_TRUE(samePlace(live.state.frame, saved.frame)) << *item.title;
        EXPECT_TRUE(std::holds_alternative<Report::adjusted>(item.status) ||
                    sameSize(live.state.frame, saved.frame))
            << *item.title;
    }
}

/// Windows reported as back stand on the desktop they were saved on while it exists, otherwise on another
/// that is theirs alone.
void expectDesktopsWhereReported(Journey& journey, const Report& report) {
    std::map<std::string, SpaceID> spaces;
    std::map<SpaceID, std::string> saved;
    for (const auto& [item, window, live] : reportedBack(journey, report)) {
        const auto& desktop = window.desktop;
        if (!desktop) continue;
        const auto& present = journey.display(desktop->displayID)->desktops;
        EXPECT_EQ(std::ranges::count(present, live.space), 1) << *item.title;
        if (std::ranges::count(present, std::stoull(desktop->uuid->substr(6))) > 0)
            EXPECT_EQ("space-" + std::to_string(live.space), desktop->uuid) << *item.title;
        EXPECT_EQ(spaces.try_emplace(desktop->id(), live.space).first->second, live.space) << *item.title;
        EXPECT_EQ(saved.try_emplace(live.space, desktop->id()).first->second, desktop->id()) << *item.title;
    }
}

/// The item that a plan announced, and the window as the plan meant it to become.
void expectAsPlanned(Journey& journey, const PlannedApplication& plan, const DesktopPlan& desktops,
                     const Report::Item& item) {
    const WindowPlan& planned = plan.windows[static_cast<std::size_t>(*item.savedIndex)];
    if (!planned.liveIndex) {
        EXPECT_TRUE(is(item, planned.skipReason));
        return;
    }
    const auto number = plan.live[static_cast<std::size_t>(*planned.liveIndex)].windowID;
    const simulated::Window* live = journey.world().window(number.value());
    ASSERT_TRUE(live);
    EXPECT_EQ(live->state.minimized, planned.minimized);
    EXPECT_EQ(live->state.fullscreen, planned.enterFullscreen);
    if (planned.enterFullscreen) return;
    if (planned.desktop) {
        const auto meant = std::ranges::find(desktops.desktops, *planned.desktop, &NativeDesktop::id);
        ASSERT_NE(meant, desktops.desktops.end());
        const auto& present = journey.display(meant->displayID)->desktops;
        EXPECT_EQ(live->space, present.at(static_cast<std::size_t>(meant->index)));
    }
    const Rect &now = live->state.frame, &meant = planned.placement.value().frame;
    EXPECT_TRUE(samePlace(now, meant));
    EXPECT_EQ(std::holds_alternative<Report::adjusted>(item.status),
              planned.placement->adjusted || !sameSize(now, meant));
}

TEST(RandomJourneys, ADisturbedDesktopComesBackAndStaysBack) {
    eachSeed(usualSeeds, [](std::uint64_t seed) {
        RandomJourney journey(seed);
        journey.save();
        const bool displays = seed % 3 == 0;
        journey.disturb(displays);
        const Report first = journey.restore();
        expectOneItemForEachWindow(first, journey.saved());
        expectWindowsWhereReported(journey, first, !displays);
        if (!displays) expectDesktopsWhereReported(journey, first);
        for (const Report::Item& item : first.items)
            EXPECT_FALSE(std::holds_alternative<Report::failed>(item.status))
                << item.bundleIdentifier << " " << item.title.value_or("") << ": "
                << std::get<Report::failed>(item.status).reason;

        journey.settle();  // an application of which nothing was saved may still open windows
        const std::string before = journey.state();
        const Report second = journey.restore();
        expectOneItemForEachWindow(second, journey.saved());
        EXPECT_EQ(journey.state(), before) << "a second restore changed something";
        EXPECT_EQ(second.totals().launched + second.totals().opened + second.totals().failed, 0);
    });
}

/// What a capture says of a session, less what no restore can bring back: the identity of a desktop.
std::string signature(WorkspaceSnapshot snapshot) {
    for (DesktopSnapshot& desktop : *snapshot.desktops) desktop.uuid.reset();
    for (ApplicationSnapshot& application : snapshot.applications) {
        for (WindowSnapshot& window : application.windows) {
            if (window.desktop) window.desktop->uuid.reset();
        }
    }
    return SessionHistory::signature(snapshot).value();
}

TEST(RandomJourneys, WhatCanComeBackMakesTheSameSession) {
    eachSeed(usualSeeds, [](std::uint64_t seed) {
        RandomJourney journey(seed);
        journey.save();
        journey.disturbRecoverably();
        const Report report = journey.restore();
        EXPECT_EQ(report.totals().failed + report.totals().skipped, 0);
        EXPECT_EQ(signature(journey.capture()), signature(journey.saved().snapshot));
    });
}

TEST(RandomJourneys, APlanSaysWhatTheRestoreThenDoes) {
    eachSeed(usualSeeds, [](std::uint64_t seed) {
        RandomJourney journey(seed);
        journey.save();
        journey.disturb(seed % 2 == 0);
        const RestorePreview preview = journey.preview();
        std::map<std::string, PlannedApplication> plans;
        for (const PlannedApplication& plan : preview.applications)
            plans[plan.saved->bundleIdentifier] = plan;
        const Consequences announced = journey.consequences(preview);
        const Report report = journey.restore();
        EXPECT_EQ(report.totals().createdDesktops, announced.desktops);
        EXPECT_EQ(report.totals().launched, std::ranges::count(preview.applications, Presence::installed,
                                                               &PlannedApplication::presence));
        EXPECT_EQ(std::ssize(announced.launchedLater),
                  std::ranges::count(preview.applications, Presence::running, &PlannedApplication::presence));
        EXPECT_EQ(announced.launched.size() + announced.launchedLater.size(), preview.applications.size());
        std::set<std::string> opened;
        for (const Report::Item& item : report.items) {
            if (std::holds_alternative<Report::opened>(item.status)) opened.insert(item.bundleIdentifier);
        }
        for (const Report::Item& item : report.items) {
            const PlannedApplication& plan = plans[item.bundleIdentifier];
            // Of windows that are asked for, or opened with a document or a tab, the plan knows nothing.
            if (plan.live.empty() || !item.savedIndex || opened.contains(item.bundleIdentifier)) continue;
            SCOPED_TRACE(item.bundleIdentifier + " " + item.title.value_or(""));
            expectAsPlanned(journey, plan, preview.desktops, item);
        }
    });
}

TEST(RandomJourneys, WhateverGoesWrongEveryWindowHasItsLine) {
    eachSeed(usualSeeds, [](std::uint64_t seed) {
        RandomJourney journey(seed);
        journey.save();
        journey.disturb(false);
        journey.layFaults();
        const Report report = journey.restore();
        EXPECT_FALSE(report.cancelled);
        expectOneItemForEachWindow(report, journey.saved());
    });
}

}  // namespace
}  // namespace quillo
