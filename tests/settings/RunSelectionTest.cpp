#include <gtest/gtest.h>

#include "WindowEngine/restore/RestorePreview.hpp"
#include "settings/RunSelection.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

constexpr Rect home{100, 100, 600, 400}, away{500, 300, 300, 200};

Rect frameOf(TestDesktop& desktop, const char* application, const char* title) {
    const simulated::Window* window = desktop.world().window(application, title);
    return window ? window->state.frame : Rect{};
}

TEST(RunSelection, WhatIsLeftOutIsLeftAloneAndNothingTakesItsPlace) {
    TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", home), sceneWindow("2", home)}),
                               sceneApplication("org.b", {sceneWindow("3", home)}),
                               sceneApplication("org.c", {sceneWindow("4", home)})}));
    WorkspaceSnapshot saved = desktop.capture();
    std::erase_if(saved.applications, [](const auto& one) { return one.bundleIdentifier == "org.c"; });
    // The second window of A is gone: without its being left alone, the first would be taken for it.
    desktop.world().close(desktop.world().window("org.a", "2")->number);
    for (const auto& [application, title] : {std::pair{"org.a", "1"}, {"org.b", "3"}})
        desktop.world().move(*desktop.world().window(application, title), away);

    RunSelection selection{
        .excluded = {.apps = {}, .windows = {"org.a#window#0", "org.b#window#0"}, .contextURLs = {}},
        .spared = {"org.c"}};
    Restore::Options options{.cleanSlate = CleanSlateMode::quit};
    WorkspaceSnapshot part = saved;
    selection.apply(part, options);
    ASSERT_EQ(part.applications.size(), 1U) << "an application goes with the last of its windows";
    EXPECT_EQ(part.windowCount(), 1);
    EXPECT_EQ(options.kept, (std::set<std::string>{"org.a", "org.b", "org.c"}));

    const RestorePreview plan = desktop.run(Restore::preview(desktop.access, part, options));
    EXPECT_FALSE(plan.applications.front().windows.front().liveIndex) << "not another one's window";
    desktop.restore(part, options);
    EXPECT_EQ(frameOf(desktop, "org.a", "1"), away);
    EXPECT_EQ(frameOf(desktop, "org.b", "3"), away);
    EXPECT_TRUE(desktop.world().application("org.b")->running);
    EXPECT_TRUE(desktop.world().application("org.c")->running);

    // With nothing left out the first is brought back, and the others are asked to quit.
    options = {.cleanSlate = CleanSlateMode::quit};
    RunSelection{}.apply(saved, options);
    desktop.restore(saved, options);
    EXPECT_EQ(frameOf(desktop, "org.a", "1"), home);
    EXPECT_FALSE(desktop.world().application("org.c")->running);
}

}  // namespace
}  // namespace quillo::samples
