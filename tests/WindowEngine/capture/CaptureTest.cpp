#include <gtest/gtest.h>

#include "WindowEngine/services/ForwardingApplications.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

constexpr Rect frame{140, 90, 700, 450};

std::vector<std::string> names(const WorkspaceSnapshot& snapshot) {
    std::vector<std::string> result;
    for (const ApplicationSnapshot& application : snapshot.applications) result.push_back(application.name);
    return result;
}

TEST(Capture, KeepsTheApplicationsThatMayBeLookedAt) {
    std::vector<SceneApplication> applications;
    for (const auto& [identifier, name] :
         std::vector<std::pair<const char*, const char*>>{{"org.z", "zebra"},
                                                          {"org.2", "Notes"},
                                                          {"org.1", "notes"},
                                                          {"org.e", "Éclair"},
                                                          {"com.apple.Passwords", "Passwords"},
                                                          {"app.quillo.Quillo", "Quillo"},
                                                          {"org.excluded", "Excluded"},
                                                          {"org.agent", "Agent"},
                                                          {"org.off", "Off"}}) {
        applications.push_back(sceneApplication(identifier));
        applications.back().name = name;
    }
    applications[7].policy = ActivationPolicy::accessory;
    applications[8].running = false;
    TestDesktop desktop(scene(applications));

    const WorkspaceSnapshot snapshot = desktop.capture({.excludedBundleIdentifiers = {"org.excluded"}});
    EXPECT_EQ(names(snapshot), (std::vector<std::string>{"Éclair", "Notes", "notes", "zebra"}));
    EXPECT_EQ(snapshot.applications[1].bundleIdentifier, "org.2");
    EXPECT_EQ(snapshot.applications[1].applicationURL,
              desktop.plain.applications.running("org.2")->bundleURL);
    EXPECT_EQ(desktop.simulated->logLines(),
              std::vector<std::string>{"capture info: captured 4 apps, 0 windows"});
}

TEST(Capture, NeverLooksAtWhatThePlatformKnowsToKeepSecrets) {
    struct Secretive : ForwardingApplications {
        using ForwardingApplications::ForwardingApplications;
        std::set<std::string> neverCaptured() override { return {"org.safe.keeper"}; }
    };
    TestDesktop desktop(scene({sceneApplication("org.Safe.Keeper", {sceneWindow("secret", frame)}),
                               sceneApplication("org.safe.keepers")}));
    Secretive applications(desktop.plain.applications);
    DesktopAccess access = desktop.with(applications);
    EXPECT_EQ(names(desktop.run(Capture::snapshot(access, {}))),
              std::vector<std::string>{"org.safe.keepers"});
}

TEST(Capture, SaysWhatOfATerminalIsNotKnown) {
    struct OneTerminal : ForwardingApplications {
        using ForwardingApplications::ForwardingApplications;
        std::optional<std::int64_t> shells(std::string_view identifier) override {
            return identifier == "org.terminal" ? std::optional<std::int64_t>(3) : std::nullopt;
        }
    };
    TestDesktop desktop(
        scene({sceneApplication("org.editor", {sceneWindow("1", frame)}),
               sceneApplication("org.terminal", {sceneWindow("1", frame), sceneWindow("2", frame)})}));
    desktop.world().window("org.terminal", "1")->state.document = "file:///home/ada/";
    OneTerminal applications(desktop.plain.applications);
    DesktopAccess access = desktop.with(applications);
    EXPECT_EQ(desktop.run(Capture::snapshot(access, {})).notes,
              (std::vector<std::string>{
                  "org.terminal: the folder of 1 window is not known; it comes back where new ones begin.",
                  "org.terminal: of its tabs and panes only the one in front is saved."}));
}

TEST(Capture, RecordsWhereWindowsStand) {
    SceneApplication application = sceneApplication("org.a");
    const auto add = [&](std::string title, Rect at) -> SceneWindow& {
        return application.windows.emplace_back(sceneWindow(std::move(title), at));
    };
    add("plain", frame);
    add("side", {1400, 200, 500, 400}).minimized = true;
    add("nowhere", {-5000, 0, 140, 90});
    add("full", frame).fullscreen = true;
    SceneWindow& hidden = add("on another desktop", {280, 90, 700, 450});
    hidden.desktop = 1;
    add("nowhere on another desktop", {-5000, 0, 140, 90}).desktop = 1;
    SceneWindow& unseen = add("unseen in full screen", frame);
    unseen.fullscreen = true;
    unseen.listed = false;
    TestDesktop desktop(scene({application}));
    const auto before = desktop.executor().wallNow();

    const WorkspaceSnapshot snapshot = desktop.capture();
    EXPECT_EQ(snapshot.capturedAt, before);
    ASSERT_EQ(snapshot.displays.size(), 2u);
    ASSERT_EQ(snapshot.desktops->size(), 3u);
    EXPECT_EQ((*snapshot.desktops)[1].displayID, "main");
    EXPECT_EQ((*snapshot.desktops)[1].index, 1);
    EXPECT_EQ((*snapshot.desktops)[2].index, 0);
    ASSERT_EQ(snapshot.applications.size(), 1u);
    const auto& windows = snapshot.applications[0].windows;
    ASSERT_EQ(windows.size(), 7u);

    struct Expected {
        std::optional<std::string> title, display;
        Rect normalized;
        std::optional<std::int64_t> desktop;
        bool fullscreen;
    };
    const Rect whole{0, 0, 1, 1};
    const Expected expected[] = {
        {"plain", "main", {0.1, 0.1, 0.5, 0.5}, 0, false},
        {"side", "side", {0, 0.25, 0.5, 0.5}, 0, false},
        {"nowhere", {}, {-5000. / 1400, 0, 0.1, 0.1}, 0, false},
        {"full", "main", whole, {}, true},
        {{}, "main", {0.2, 0.1, 0.5, 0.5}, 1, false},
        {{}, {}, whole, 1, false},
        {{}, "main", whole, {}, true},
    };
    for (std::size_t i = 0; i < windows.size(); ++i) {
        SCOPED_TRACE(i);
        const WindowSnapshot& window = windows[i];
        EXPECT_EQ(window.index, static_cast<std::int64_t>(i)) << "hidden windows go on counting";
        EXPECT_EQ(window.title, expected[i].title);
        EXPECT_EQ(window.subrole, ax::standardWindow);
        EXPECT_EQ(window.displayID, expected[i].display);
        EXPECT_EQ(window.normalizedFrame, expected[i].normalized);
        EXPECT_EQ(window.isFullscreen, expected[i].fullscreen);
        EXPECT_EQ(window.fullscreenConfirmed, true);
        ASSERT_EQ(window.desktop.has_value(), expected[i].desktop.has_value());
        if (window.desktop) EXPECT_EQ(window.desktop->index, expected[i].desktop);
    }
    EXPECT_TRUE(windows[1].isMinimized);
    EXPECT_EQ(desktop.simulated->logLines(),
              std::vector<std::string>{"capture info: captured 1 apps, 7 windows"});
}

TEST(Capture, AFullScreenWindowHasNoDesktopWhereverItStands) {
    TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", frame)})}));
    desktop.meddler.afterRead = [](std::span<const AttributeRequest> requests, Meddler::Answers& answers) {
        const auto name = std::ranges::find(requests[0].names, ax::fullScreen);
        if (name != requests[0].names.end())
            answers[0][static_cast<std::size_t>(name - requests[0].names.begin())] = true;
    };
    const WindowSnapshot window = desktop.capture().applications[0].windows.at(0);
    EXPECT_TRUE(window.isFullscreen);
    EXPECT_EQ(window.desktop, std::nullopt);
}

TEST(Capture, ThatAPersonAskedForAsksAgainForWhatWasNotKnownInTime) {
    for (const bool patiently : {true, false}) {
        TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", frame)})}));
        desktop.meddler.askedPatiently = [&] {
            desktop.world().window("org.a", "1")->state.document = "file:///home/ada/a.txt";
        };
        const auto captured = desktop.capture({.asksPatiently = patiently});
        EXPECT_EQ(captured.applications[0].windows.at(0).documentURL.has_value(), patiently);
    }
}

TEST(Capture, TokensBringHiddenWindowsBackWithTheirTitles) {
    SceneApplication application = sceneApplication("org.a", {sceneWindow("hidden", frame)});
    application.windows[0].listed = false;
    TestDesktop desktop(scene({application}));
    EXPECT_EQ(desktop.capture().applications[0].windows.at(0).title, std::nullopt);
    const auto windows =
        desktop.capture({.excludedBundleIdentifiers = {}, .recoverHidden = true}).applications[0].windows;
    ASSERT_EQ(windows.size(), 1u) << "and not a second time as a hidden one";
    EXPECT_EQ(windows[0].title, "hidden");
}

TEST(Capture, ReadsTheWholeDesktopInTwoBatches) {
    std::vector<SceneApplication> applications;
    for (int i = 0; i < 20; ++i)
        applications.push_back(
            sceneApplication("org." + std::to_string(i), {sceneWindow("1", frame), sceneWindow("2", frame)}));
    TestDesktop desktop(scene(applications));
    const WorkspaceSnapshot snapshot = desktop.capture();
    EXPECT_EQ(snapshot.windowCount(), 40);
    EXPECT_EQ(desktop.meddler.reads, 2);
}

TEST(Capture, AnApplicationThatHangsCostsItsTimeoutOnceAndOnlyItsOwnTitles) {
    TestDesktop desktop(
        scene({sceneApplication("org.fine", {sceneWindow("fine", frame)}),
               sceneApplication("org.hung", {sceneWindow("1", frame), sceneWindow("2", frame)})}));
    desktop.world().add(fault(FaultKind::applicationHangs, "org.hung", 0, 1));
    const WorkspaceSnapshot snapshot = desktop.capture();
    EXPECT_NEAR(desktop.seconds(), 1, 0.001);
    EXPECT_EQ(snapshot.applications[0].windows.at(0).title, "fine");
    ASSERT_EQ(snapshot.applications[1].windows.size(), 2u) << "the window server knows them";
    EXPECT_EQ(snapshot.applications[1].windows[0].title, std::nullopt);
    EXPECT_EQ(snapshot.applications[1].windows[0].frame, frame);
    // It answers again: the next capture asks it, whatever the last one met.
    EXPECT_EQ(desktop.capture().applications[1].windows.at(0).title, "1");
}

TEST(Capture, ABrowserThatHangsWhileItIsVerifiedCostsItsTimeoutOnce) {
    TestDesktop desktop(
        scene({sceneApplication("com.apple.Safari", std::vector(9, sceneWindow("1", frame)))}));
    desktop.meddler.afterRead = [&](auto, auto&) {
        if (desktop.meddler.reads == 3) desktop.world().add(fault(FaultKind::applicationHangs));
    };
    EXPECT_TRUE(desktop.capture().applications[0].windows.empty());
    EXPECT_NEAR(desktop.seconds(), 0.5, 0.001);
}

TEST(Capture, WithoutPermissionApplicationsHaveNoWindows) {
    TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", frame)})}));
    desktop.world().setTrusted(false);
    const WorkspaceSnapshot snapshot = desktop.capture();
    ASSERT_EQ(snapshot.applications.size(), 1u);
    EXPECT_TRUE(snapshot.applications[0].windows.empty());
    EXPECT_EQ(snapshot.displays.size(), 2u);
}

TEST(DesktopSpaces, AWindowsDesktopIsTheOneThatHoldsIt) {
    const std::vector<NativeDesktop> desktops{
        {1, "main", 0, "u1"}, {2, "main", 1, "u2"}, {1, "side", 0, "u1"}, {3, "side", 1, {}}};
    struct Case {
        std::vector<SpaceID> spaces;
        std::optional<std::string> preferred;
        std::optional<DesktopSnapshot> found;
    };
    const Case cases[] = {
        {{}, "main", {}},
        {{9}, "main", {}},
        {{2}, "side", DesktopSnapshot{"main", 1, "u2"}},
        {{3}, {}, DesktopSnapshot{"side", 1, {}}},
        {{1}, "side", DesktopSnapshot{"side", 0, "u1"}},  // one list shared by both displays
        {{1}, {}, {}},
        {{1, 2}, "main", {}},  // on every desktop
        {{1, 2}, "side", DesktopSnapshot{"side", 0, "u1"}},
        {{1, 2}, "elsewhere", {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(DesktopSpaces::desktopOf({c.spaces, true, false}, desktops, c.preferred), c.found)
            << c.preferred.value_or("none");
}

}  // namespace
}  // namespace quillo::samples
