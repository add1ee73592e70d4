// Random desktops in a report: the same decisions come out of the made-up one, and nothing of the real one is
// called by its name in it.
#include <gtest/gtest.h>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/restore/PlanComparison.hpp"
#include "platform/simulated/ReportScene.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"
#include "tests/journeys/RandomDesktop.hpp"

namespace quillo {
namespace {

const Restore::Options options{.enabledAdapters = {"finder", "chromium", "safari"}};

/// A desktop of its own with the engine on it.
struct Desk {
    explicit Desk(const simulated::Scene& scene)
        : desktop(SimulatedDesktop::create(simulated::writeScene(scene), "scene").value()) {
        desktop->executor().runFor(std::chrono::seconds(2));
    }
    template <class T>
    T run(Task<T> task) {
        Job<T> job(desktop->executor(), std::move(task));
        EXPECT_TRUE(desktop->executor().runUntil([&] { return job.done(); }, std::chrono::minutes(10)));
        return job.result();
    }
    RestorePreview preview(const WorkspaceSnapshot& snapshot) {
        return run(Restore::preview(access, snapshot, options));
    }

    std::unique_ptr<SimulatedDesktop> desktop;
    WindowHandleCache handles;
    DesktopAccess access{desktop->platform(), handles};
};

void reportAndReplay(std::uint64_t seed) {
    RandomDesktop random(seed);
    simulated::Scene scene = random.scene();
    scene.likeX11 = seed % 3 == 0;
    Desk desk(scene);
    const Workspace saved = Workspace::create(
        Uuid{}, "Secret plans", "", "teal",
        desk.run(Capture::snapshot(desk.access,
                                   {.enabledAdapters = options.enabledAdapters, .recoverHidden = true})),
        Instant{});
    random.disturb(desk.desktop->world(), true);
    desk.desktop->executor().runFor(std::chrono::seconds(2));
    desk.handles = {};  // as another start of the program has it
    const RestorePreview decided = desk.preview(saved.snapshot);
    Pseudonyms names(seed);
    const simulated::ReportScene report =
        desk.run(simulated::reportScene(desk.access, saved, decided, options, names));

    Desk replay(report.scene);
    EXPECT_EQ(Restore::planDifferences(decided, replay.preview(report.workspace.snapshot)),
              std::vector<std::string>{})
        << simulated::writeScene(report.scene);
    const std::string told =
        WorkspaceCoding::encode(report.workspace).value() + simulated::writeScene(report.scene);
    for (const char* original :
         {"Secret plans", "/home/ada", "Folder", "Site", "site1", "DISPLAY", "Window ", "?q="})
        EXPECT_EQ(told.find(original), std::string::npos) << original;
}

TEST(Report, ReplaysTheDecisionsOfRandomDesktopsWithoutTheirNames) {
    eachSeed(60, &reportAndReplay);
}

TEST(Report, SaysWhereDecisionsDiffer) {
    Desk desk(RandomDesktop(1).scene());
    const WorkspaceSnapshot saved = desk.run(Capture::snapshot(desk.access, {.recoverHidden = true}));
    const RestorePreview before = desk.preview(saved);
    EXPECT_EQ(Restore::planDifferences(before, desk.preview(saved)), std::vector<std::string>{});
    for (simulated::Application& application : desk.desktop->world().applications())
        desk.desktop->world().end(application);
    EXPECT_NE(Restore::planDifferences(before, desk.preview(saved)), std::vector<std::string>{});
}

}  // namespace
}  // namespace quillo
