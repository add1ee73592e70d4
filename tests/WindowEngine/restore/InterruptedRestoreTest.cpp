// What a cancelled restore has done is in its report.
#include <gtest/gtest.h>

#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

TEST(InterruptedRestore, TellsOfDesktopsItMadeAndDocumentsItOpened) {
    std::int64_t most = 0;
    for (int tenths = 0; tenths < 80; ++tenths) {
        SCOPED_TRACE(tenths);
        SceneApplication editor = sceneApplication("org.editor");
        for (const char* name : {"a", "b", "c"}) {
            editor.windows.push_back(sceneWindow(name, {100, 100, 600, 400}));
            editor.windows.back().document = std::string("file:///home/ada/") + name;
        }
        TestDesktop desktop(scene({editor}));
        Workspace workspace;
        workspace.snapshot = desktop.capture();
        for (std::int64_t i = 1; i < 4; ++i) workspace.snapshot.desktops->push_back({"main", i, {}});
        const std::size_t before = desktop.world().display("main")->desktops.size();
        while (!desktop.world().windowsOf("org.editor").empty())
            desktop.world().close(desktop.world().windowsOf("org.editor").front()->number);

        Job<RestoreReport> job(desktop.executor(), Restore::run(desktop.access, workspace, {}, {}));
        desktop.executor().runFor(tenths * 100ms);
        job.cancel();
        desktop.executor().runFor(2s);  // for what was asked for to come
        const RestoreReport::Totals told = job.result().totals();
        const auto made =
            static_cast<std::int64_t>(desktop.world().display("main")->desktops.size() - before);
        const auto opened = static_cast<std::int64_t>(desktop.world().windowsOf("org.editor").size());
        // Cut off in the middle of asking for one, nobody knows.
        EXPECT_LE(told.createdDesktops, made);
        EXPECT_GE(told.createdDesktops, made - 1);
        EXPECT_LE(told.opened, opened);
        EXPECT_GE(told.opened, opened - 1);
        most = std::max({most, made, opened});
    }
    EXPECT_EQ(most, 3);
}

TEST(InterruptedRestore, NoIndexIsTooLargeToBeTold) {
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    for (const auto& [index, number] :
         std::map<std::int64_t, std::int64_t>{{-largest - 1, 1}, {-1, 1}, {0, 1}, {8, 9}, {largest, largest}})
        EXPECT_EQ((DesktopSnapshot{"main", index, {}}).number(), number);
}

}  // namespace
}  // namespace quillo::samples
