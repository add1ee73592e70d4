// What the simulated applications do when they are handed documents, sent scripts, or asked to quit.
#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDesktop.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using namespace ScriptRequest;
using simulated::Fault;
using simulated::FaultKind;
using Texts = std::vector<std::string>;

constexpr std::string_view desk = R"({
  "displays": [{"id": "ONE", "frame": [0, 0, 1400, 900], "desktops": 2}],
  "missingFolders": ["/gone"],
  "applications": [
    {"identifier": "editor", "running": false,
     "windows": [{"title": "own", "document": "file:///a%20b"}, {"title": "late", "document": "file:///c", "opensAfter": 2}]},
    {"identifier": "notes", "windows": [{"title": "plain"}, {"title": "draft", "unsaved": true, "frame": [0, 0, 400, 300]}]},
    {"identifier": "com.apple.finder", "windows": [
      {"title": "a", "tabs": ["/a"]}, {"title": "search", "minimized": true},
      {"title": "gone", "tabs": ["file:///gone/"]}, {"title": "Copy", "subrole": "AXDialog"}]},
    {"identifier": "com.google.Chrome", "running": false, "windows": [{"title": "quit"}], "reopens": [
      {"title": "Front", "tabs": ["https://f.org", "chrome://newtab/"]},
      {"title": "Secret", "tabs": ["https://s.org"], "private": true},
      {"title": "Back", "tabs": ["https://b.org"], "desktop": 1}]},
    {"identifier": "com.apple.Safari", "windows": [{"title": "S", "tabs": ["", "https://s.org"]}]},
    {"identifier": "com.brave.Browser", "installed": false, "running": false}
  ]})";

class SimulatedApplicationsTest : public testing::Test {
  protected:
    std::unique_ptr<SimulatedDesktop> desktop = SimulatedDesktop::create(desk, "desk").value();
    simulated::World& world = desktop->world();
    Applications& applications = desktop->platform().applications;

    template <class T>
    T run(Task<T> task) {
        Job<T> job(desktop->executor(), std::move(task));
        EXPECT_TRUE(desktop->executor().runUntil([&] { return job.done(); }, 1h));
        return job.result();
    }
    void lay(FaultKind kind, std::string application, std::string title = {}, double seconds = 0) {
        world.add({kind, std::move(application), std::move(title), {}, 0, seconds, false});
    }
    Texts titles(std::string_view application, Duration later = {}) {
        desktop->executor().runFor(later);
        Texts result;
        for (const simulated::Window* window : desktop->world().windowsOf(application))
            result.push_back(window->state.title.value_or(""));
        return result;
    }
    static Url file(std::string_view path) { return Url::file(path); }
    /// What a script prints; its message on an error, the error's text where it was never answered.
    std::string script(Script script, Duration limit = 20s) {
        const auto outcome = run(desktop->platform().scripts.execute(std::move(script), limit));
        if (!outcome) return outcome.error().kind == ErrorKind::timedOut ? "timed out" : "failed";
        EXPECT_EQ(outcome->exitStatus != 0, !outcome->standardError.empty());
        return outcome->standardOutput + outcome->standardError;
    }
    static Script opening(std::string path) { return {"com.apple.finder", OpenFolder{std::move(path)}}; }
    static Script listing(std::set<WindowNumber> allowed) {
        return {"com.apple.Safari", ListSafariTabs{std::move(allowed)}};
    }
    std::string folders() { return script({"com.apple.finder", ListFolders{}}); }
    std::string tabs() { return script({"com.google.Chrome", ListTabs{.identified = false}}); }
};

TEST_F(SimulatedApplicationsTest, ADocumentOpensOneWindowAMomentLater) {
    EXPECT_TRUE(run(applications.launch(*applications.location("editor"), {file("/c"), file("/a b")})));
    EXPECT_EQ(titles("editor"), Texts{"own"}) << "documents take a moment";
    EXPECT_EQ(titles("editor", 1s), (Texts{"c", "own"})) << "what a window shows is not opened again";
    EXPECT_EQ(titles("editor", 5s), (Texts{"c", "own"})) << "nor by a window that is restored later";
    EXPECT_TRUE(run(applications.open("editor", {file("/x/y%z"), file("/x/y%z"), file("/a b")})));
    EXPECT_EQ(titles("editor", 1s), (Texts{"y%z", "c", "own"}));
    EXPECT_EQ(world.window("editor", "y%z")->state.document, file("/x/y%z").string());
    EXPECT_FALSE(run(applications.open("com.google.Chrome", {file("/a")}))) << "it does not run";
    EXPECT_TRUE(run(applications.open("com.apple.finder", {file("/a"), file("/d")})));
    EXPECT_EQ(titles("com.apple.finder", 1s).front(), "d");
}

TEST_F(SimulatedApplicationsTest, ScriptsSeeEveryWindowFrontToBackAndLaunchTheirApplication) {
    EXPECT_EQ(folders(), "/a/\n\n\n");
    EXPECT_EQ(script(opening("/new \"\\ -- (*")), "/new \"\\ -- (*\n");
    EXPECT_EQ(folders(), "/new \"\\ -- (*/\n/a/\n\n\n");
    EXPECT_EQ(titles("com.apple.finder").front(), "new \"\\ -- (*");
    EXPECT_EQ(tabs(), "https://f.org\tchrome://newtab/\n__QUILLO_PRIVATE_WINDOW__\nhttps://b.org\n");
    EXPECT_TRUE(applications.running("com.google.Chrome"));
    const std::string made = script({"com.google.Chrome", NewWindow{*Url::parse("https://b.org")}});
    EXPECT_EQ(titles("com.google.Chrome"), (Texts{"Back", "Front", "Secret", "Back"}));
    EXPECT_EQ(tabs(),
              "https://b.org\nhttps://f.org\tchrome://newtab/\n__QUILLO_PRIVATE_WINDOW__\nhttps://b.org\n");
    const WindowNumber number = world.windowsOf("com.apple.Safari").at(0)->number;
    EXPECT_NE(made, std::to_string(number) + "\n") << "the browser counts its own windows";
    EXPECT_EQ(script(listing({1, number})), std::to_string(number) + "\tmissing value\thttps://s.org\n");
    EXPECT_EQ(script(listing({1})), "\n");
}

TEST_F(SimulatedApplicationsTest, WhatCannotBeDoneEndsWithAnError) {
    const std::pair<Script, std::string> cases[] = {
        {{"com.apple.Safari", OpenSafariTabs{1, {file("/a")}, false}}, "(-1719)"},
        {opening("/gone"), "(-43)"},
        {opening("relative"), "(-43)"},
        {{"com.brave.Browser", ListTabs{.identified = false}}, "(-1728)"},
    };
    for (const auto& [asked, error] : cases) EXPECT_TRUE(script(asked).contains(error)) << error;
    EXPECT_EQ(titles("com.apple.finder").size(), 4u) << "nothing was opened";
}

TEST_F(SimulatedApplicationsTest, AutomationCanBeSlowHangOrLaunchNothing) {
    EXPECT_EQ(script(opening("/a"), 49ms), "timed out");
    lay(FaultKind::automationSlow, "com.apple.finder", {}, 2);
    EXPECT_EQ(script(opening("/a"), 1s), "timed out");
    EXPECT_EQ(titles("com.apple.finder", 9s).size(), 4u) << "what was given up opens nothing later";
    EXPECT_EQ(script(opening("/a"), 3s), "/a\n");
    lay(FaultKind::applicationHangs, "com.apple.finder");
    EXPECT_EQ(script(opening("/a"), 20s), "timed out");
    lay(FaultKind::launchRefused, "com.google.Chrome");
    EXPECT_TRUE(tabs().contains("(-10810)"));
}

}  // namespace
}  // namespace quillo
