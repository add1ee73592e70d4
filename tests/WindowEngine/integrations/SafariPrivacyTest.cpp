#include <gtest/gtest.h>

#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo {
namespace {

samples::SceneApplication browser() {
    std::vector<samples::SceneWindow> windows;
    for (const char* title :
         {"private", "normal", "deep", "too deep", "without toolbar", "on another desktop"}) {
        const double at = 20.0 * static_cast<double>(windows.size() + 2);
        windows.push_back(samples::sceneWindow(title, {at, at, 300 + at, 200 + at}));
    }
    windows[0].privateBrowsing = true;
    windows[2].addressFieldDepth = 7;
    windows[3].addressFieldDepth = 8;
    windows[4].toolbar = false;
    windows[5].desktop = 1;
    return samples::sceneApplication("com.apple.Safari", windows);
}

samples::Scene desk() {
    const samples::SceneWindow window = samples::sceneWindow("private", {9, 30, 99, 99});
    return samples::scene({browser(), samples::sceneApplication("org.editor", {window})});
}

using Titles = std::vector<std::string>;

Titles titles(const WorkspaceSnapshot& snapshot) {
    Titles result;
    for (const ApplicationSnapshot& application : snapshot.applications)
        for (const WindowSnapshot& window : application.windows)
            result.push_back(application.bundleIdentifier + " " +
                             window.title.value_or("from the window server"));
    return result;
}

TEST(Safari, OnlyWindowsVerifiedAsNormalAreCaptured) {
    samples::TestDesktop desktop(desk());
    const WorkspaceSnapshot snapshot = desktop.capture();
    EXPECT_EQ(titles(snapshot),
              (Titles{"com.apple.Safari normal", "com.apple.Safari deep", "org.editor private"}));
    EXPECT_EQ(snapshot.notes,
              (Titles{"Safari: skipped windows whose browsing privacy could not be verified."}));

    samples::Scene german = desk();
    german.applications[0].language = "de";
    samples::TestDesktop inGerman(german);
    EXPECT_EQ(titles(inGerman.capture()), Titles{"org.editor private"});

    // An address field that is not in a toolbar may be anybody's.
    desktop.meddler.afterRead = [](auto requests, auto& answers) {
        for (std::size_t i = 0; i < requests.size(); ++i) {
            if (requests[i].names.front() == ax::role) answers[i].front() = std::string("AXGroup");
        }
    };
    EXPECT_EQ(titles(desktop.capture()), Titles{"org.editor private"});
}

TEST(Safari, PrivateWindowsAreNeitherMovedNorReported) {
    samples::TestDesktop desktop(desk());
    const Rect before = desktop.world().window("com.apple.Safari", "private")->state.frame;
    WorkspaceSnapshot snapshot;
    const std::vector saved(4, samples::savedWindow(desktop, {500, 500, 300, 200}, "private"));
    snapshot.applications = {{"com.apple.Safari", "Safari", {}, saved, {}}};
    const RestoreReport report = desktop.restore(snapshot);
    EXPECT_EQ(report.items.size(), 4u);
    EXPECT_EQ(report.totals().skipped, 1) << "three normal windows, one on another desktop, for four saved";
    EXPECT_EQ(desktop.world().window("com.apple.Safari", "private")->state.frame, before);
}

}  // namespace
}  // namespace quillo
