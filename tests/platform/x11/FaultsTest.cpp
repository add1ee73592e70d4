// A missing server or window manager, and either dying, are answers and never the end of the program.
#include "tests/platform/x11/X11Test.hpp"

namespace quillo::x11test {
namespace {

TEST(X11FaultsTest, NoServerSaysWhatToDo) {
    LoopExecutor executor;
    const auto created = X11Desktop::create(executor, {.display = ":987"});
    ASSERT_FALSE(created);
    EXPECT_EQ(created.error().kind, ErrorKind::unavailable);
    EXPECT_NE(created.error().text.find(":987"), std::string::npos);
    unsetenv("DISPLAY");
    EXPECT_NE(X11Desktop::create(executor, {}).error().text.find("DISPLAY is not set"), std::string::npos);
}

TEST(X11FaultsTest, WindowManagerAndServerMayDie) {
    PrivateDesktop own("openbox");
    LoopExecutor executor;
    SilentLog log;
    Result<std::unique_ptr<X11Desktop>> created = fail(ErrorKind::unavailable, "");
    ASSERT_TRUE(waitFor(
        [&] { return (created = X11Desktop::create(executor, {.display = own.display()})).has_value(); }));
    const auto platform = (*created)->platform(log);
    EXPECT_TRUE(platform.accessibility.trusted());
    EXPECT_FALSE(platform.scripts.scripting());

    own.windowManager().kill();
    EXPECT_TRUE(waitFor([&] { return !platform.accessibility.trusted(); }));
    EXPECT_NE(platform.accessibility.access().reason().find("window manager"), std::string::npos);
    const auto second = X11Desktop::create(executor, {.display = own.display()});
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error().text, platform.accessibility.access().reason());

    own.server().kill();
    EXPECT_TRUE(waitFor(
        [&] { return platform.accessibility.access().reason().find("X server") != std::string::npos; }));
    EXPECT_TRUE(platform.screens.screens().empty());
    EXPECT_TRUE(platform.applications.running().empty());
    EXPECT_TRUE(platform.windowServer.windowList().empty());
    EXPECT_TRUE(platform.windowServer.displaySpaces().empty());
    EXPECT_EQ(platform.windowServer.createDesktop("").error().kind, ErrorKind::unavailable);
    const auto name = ax::windows;
    const AttributeRequest request{platform.accessibility.application(1), {&name, 1}};
    EXPECT_EQ(platform.accessibility.read({&request, 1}).front().front().error().reason,
              AttributeMiss::Reason::refused);
    EXPECT_FALSE(platform.accessibility.write(request.element, ax::minimized, true));
}

}  // namespace
}  // namespace quillo::x11test
