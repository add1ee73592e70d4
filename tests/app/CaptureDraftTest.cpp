// The review, and the record of a restore.
#include <gtest/gtest.h>

#include "app/CaptureDraft.hpp"
#include "app/RestoreReasons.hpp"
#include "app/RestoreRun.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using samples::example;

TEST(CaptureDraft, BeginsWithTheWorkspaceItUpdatesOrAFreshLook) {
    const Workspace work = example();
    const CaptureDraft update(work.snapshot, work, true);
    EXPECT_EQ(std::tie(update.name(), update.icon(), update.color()),
              std::tie(work.name, work.icon, work.color));
    EXPECT_TRUE(update.testRestoreAfterSave());
    std::set<std::string> colors;
    for (int i = 0; i < 300; ++i) {
        const CaptureDraft fresh(work.snapshot, {}, false);
        EXPECT_EQ(fresh.name() + fresh.icon(), "square.stack.3d.up");
        colors.insert(fresh.color());
    }
    EXPECT_EQ(colors, std::set<std::string>(Workspace::colors.begin(), Workspace::colors.end()));
}

TEST(CaptureDraft, TicksAreIndependentAndLeaveTheSnapshotAlone) {
    Workspace work = example();
    work.snapshot.applications.at(0).windows.emplace_back().index = 77;
    const auto& application = work.snapshot.applications.at(0);
    const std::string id = application.bundleIdentifier;
    CaptureDraft draft(work.snapshot, {}, false);
    int told = 0;
    QObject::connect(&draft, &CaptureDraft::exclusionsChanged, &draft, [&] { ++told; });
    EXPECT_EQ(draft.filteredSnapshot(), work.snapshot);
    draft.includeWindow(id, application.windows.at(0).index, false);
    const WorkspaceSnapshot without = draft.filteredSnapshot();
    EXPECT_EQ(without.windowCount(), work.snapshot.windowCount() - 1);
    draft.includeApp(id, false);
    draft.includeApp(id, false);
    EXPECT_FALSE(draft.includesApp(id) || draft.includesWindow(id, application.windows.at(0).index));
    EXPECT_EQ(draft.filteredSnapshot().applications.size(), work.snapshot.applications.size() - 1);
    draft.includeApp(id, true);
    EXPECT_EQ(draft.filteredSnapshot(), without);
    EXPECT_EQ(told, 3);
    EXPECT_TRUE(draft.includesContextURL(id, 0, 0));
    draft.includeContextURL(id, 0, 0, false);
    EXPECT_FALSE(draft.includesContextURL(id, 0, 0));
    EXPECT_EQ(draft.filteredSnapshot(), draft.filteredSnapshot());
    for (const auto& one : work.snapshot.applications) draft.includeApp(one.bundleIdentifier, false);
    EXPECT_TRUE(draft.filteredSnapshot().applications.empty());
    EXPECT_EQ(draft.snapshot(), work.snapshot);
}

TEST(CaptureDraft, AnApplicationGoesWithItsLastWindowAndComesBackWithThem) {
    const Workspace work = samples::example();
    const std::string id = work.snapshot.applications.at(0).bundleIdentifier;
    CaptureDraft draft(work.snapshot, {}, false);
    const auto all = [&](bool included) {
        for (const auto& window : work.snapshot.applications[0].windows)
            draft.includeWindow(id, window.index, included);
    };
    all(false);
    EXPECT_EQ(draft.excludedApps(), std::set<std::string>{id});
    draft.includeApp(id, true);
    EXPECT_EQ(draft.filteredSnapshot(), work.snapshot);
    all(false);
    all(true);
    EXPECT_EQ(draft.filteredSnapshot(), work.snapshot);
}

TEST(CaptureDraft, WindowsAreLabelled) {
    WindowSnapshot window;
    EXPECT_EQ(reviewLabel(window) + placementLabel(window), "Untitled");
    window.isFullscreen = true;
    window.tabs.emplace();
    window.desktop = DesktopSnapshot{"main", 1, {}};
    EXPECT_EQ(reviewLabel(window), "Full screen · 0 tabs");
    EXPECT_EQ(placementLabel(window), "Desktop 2");
    window.title = "Notes";
    window.tabs->resize(2);
    EXPECT_EQ(reviewLabel(window), "Notes · 2 tabs");
}

RestoreReport::Item item(const std::string& app, const RestoreReport::Status& status,
                         std::optional<std::int64_t> window = {}) {
    return {
        .app = app, .bundleIdentifier = "org." + app, .title = {}, .status = status, .savedIndex = window};
}

TEST(RestoreRun, SaysHowFarItIsAndHowItEnded) {
    Workspace work = samples::named(Uuid::random(), "Work");
    work.snapshot.applications = {{"org.a", "a", {}, {WindowSnapshot{}}, {}}, {"org.b", "b", {}, {}, {}}};
    RestoreRun run(work);
    EXPECT_EQ(run.title() + " " + run.subtitle(), "Resuming Work… Looking at what's open…");
    run.add(item("other", RestoreReport::note{"x"}));  // of no application of the workspace
    EXPECT_EQ(run.subtitle(), "Looking at what's open…");
    run.add(item("b", RestoreReport::restored{}));
    EXPECT_EQ(run.subtitle(), "Looking at what's open…") << "it was open";
    run.add(item("a", RestoreReport::launched{}));
    run.add(item("a", RestoreReport::restored{}, 0));
    EXPECT_EQ(run.subtitle(), "Opening 1 app…");
    run.add(item("c", RestoreReport::launched{}));
    EXPECT_EQ(run.subtitle(), "Opening 2 apps…");

    using R = RestoreReport;
    const struct {
        std::vector<R::Status> statuses;
        bool cancelled;
        std::string title, subtitle;
    } cases[] = {
        {{}, false, "Work is back", "0 of 1 window back"},
        {{R::adjusted{}, R::note{"x"}}, false, "Work is back", "1 of 1 window back"},
        {{R::restored{}}, true, "Work is mostly back", "1 of 1 window back"},
        {{R::createdDesktops{1}, R::launched{}, R::opened{3}},
         false,
         "Work is back",
         "0 of 1 window back · 1 desktop created · 1 app opened · 3 items reopened"},
        {{R::createdDesktops{1}, R::createdDesktops{1}, R::skipped{"x"}},
         false,
         "Work is mostly back",
         "0 of 1 window back · 2 desktops created · 1 problem"},
        {{R::failed{"x"}, R::failed{"y"}}, false, "Work is mostly back", "0 of 1 window back · 2 problems"},
    };
    for (const auto& c : cases) {
        RestoreReport report{.items = {}, .duration = 1, .cancelled = c.cancelled};
        for (const auto& status : c.statuses) report.items.push_back(item("a", status));
        run.finish(report);
        EXPECT_EQ(run.title(), c.title);
        EXPECT_EQ(run.subtitle(), c.subtitle);
        EXPECT_EQ(run.clean(), c.title == "Work is back");
    }
}

TEST(RestoreRun, RowsNameTheWindowAndADesktopThatIsNotTheUsualOne) {
    Workspace work = samples::named(Uuid::random(), "Work");
    const auto on = [](std::int64_t desktop) {
        WindowSnapshot window;
        window.desktop = DesktopSnapshot{"main", desktop, {}};
        return window;
    };
    work.snapshot.applications = {{"org.a", "a", {}, {WindowSnapshot{}, on(2), on(1), on(1)}, {}}};
    using R = RestoreReport;
    const auto titled = [](std::optional<std::int64_t> window) {
        RestoreReport::Item one = item("a", R::restored{}, window);
        one.title = "Notes";
        return one;
    };
    const RestoreRun run(work), second(work, {.desktop = 2, .otherItems = 1});
    EXPECT_EQ(run.expectedItems(), 4);
    EXPECT_EQ(second.expectedItems(), 5);
    EXPECT_EQ(run.row(titled(1)), (RestoreRow{"a", "Notes", "Desktop 3", "restored"}));
    EXPECT_EQ(run.row(titled(2)), (RestoreRow{"a", "Notes", "", "restored"})) << "where most are";
    EXPECT_EQ(second.row(titled(1)).desktop, "") << "which is in front";
    EXPECT_EQ(second.row(titled(2)).desktop, "Desktop 2");
    const std::pair<RestoreReport::Item, std::string> texts[] = {
        {item("a", R::opened{1}), "a: reopened 1 item"},
        {item("a", R::createdDesktops{2}), "a: created 2 desktops"},
        {item("a", R::failed{"why"}, 0), "a: failed: why"},
        {titled(1), "a — Notes · Desktop 3: restored"},
        {titled(9), "a — Notes: restored"},
        {titled({}), "a — Notes: restored"},
    };
    for (const auto& [one, text] : texts) EXPECT_EQ(run.row(one).text(), text);
}

TEST(RestoreReasons, AreWordsOfPeopleWhereThereAreAny) {
    using R = RestoreReport;
    const std::pair<R::Status, std::string> cases[] = {
        {R::skipped{"no matching accessible window"}, "No window of XTerm was left to place"},
        {R::skipped{"not installed"}, "XTerm is not installed"},
        {R::failed{"couldn't launch: a reason of the system"}, "XTerm couldn't be opened"},
        {R::failed{"position restored, but Desktop 2 assignment failed"},
         "It is in its place, but not on its desktop"},
        {R::failed{"something new"}, "something new"},
        {R::restored{}, ""},
    };
    for (const auto& [status, words] : cases) EXPECT_EQ(reasonInWords(item("XTerm", status)), words);
}

}  // namespace
}  // namespace quillo
