// The window server's core over the fakes: what is missing, what may be answered, and what must become of it.
#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/restore/Restore.hpp"
#include "WindowEngine/services/ForwardingApplications.hpp"
#include "platform/macos/MacAccessibility.hpp"
#include "platform/macos/MacScreens.hpp"
#include "platform/macos/MacWindowServer.hpp"
#include "tests/platform/macos/MacTest.hpp"
#include "tests/platform/macos/fakes/FakeAccessibility.hpp"
#include "tests/platform/macos/fakes/FakeDisplays.hpp"
#include "tests/platform/macos/fakes/FakeSkyLight.hpp"
#include "tests/platform/macos/fakes/FakeWindowList.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using fakes::FakeDisplays;
using fakes::FakeMac;
using fakes::FakeSkyLight;
using fakes::FakeWindowList;
using fakes::Value;
using Names = std::vector<const char*>;

constexpr std::string_view scene = R"({
  "displays": [{"id": "LEFT", "frame": [0, 0, 1440, 900], "desktops": 2},
               {"id": "RIGHT", "frame": [1440, -200, 1280, 1024]}],
  "applications": [
    {"identifier": "org.example.editor", "windows": [
      {"title": "Plain", "frame": [40, 60, 400, 300]},
      {"title": "Full", "frame": [500, 80, 420, 320], "fullscreen": true},
      {"title": "Dialog", "frame": [1600, 100, 300, 200], "subrole": "AXDialog"}]}
  ]})";

/// A second process of an application is known under the pid of the first.
class OnePidForAll final : public ForwardingApplications {
  public:
    using ForwardingApplications::ForwardingApplications;
    std::vector<RunningApplication> running() override {
        auto all = ForwardingApplications::running();
        for (auto& application : all) application.pid = presented.value_or(application.pid);
        return all;
    }
    std::optional<RunningApplication> running(ProcessID pid) override {
        ++asked;
        auto found = ForwardingApplications::running(pid);
        if (found && presented) found->pid = *presented;
        return found;
    }
    std::optional<ProcessID> presented;
    int asked = 0;
};

class WindowServerTest : public MacTest {
  protected:
    /// A Mac without these functions.
    void start(const Names& missing = {}, MacWindowServer::MoveBridge bridge = nullptr) {
        server_.reset();
        accessibility_.reset();
        mac_.reset();
        desktop_ = SimulatedDesktop::create(scene, "scene").value();
        mac_.emplace(*desktop_);
        mac_->part<fakes::FakeAccessibility>();
        skyLight_ = &mac_->part<FakeSkyLight>();
        for (const char* name : missing) {
            mac_->withdraw(skyLight::library, name);
            mac_->withdraw(hiServices::library, name);
        }
        accessibility_.emplace(&FakeMac::symbol);
        const Platform simulated = desktop_->platform();
        applications_.emplace(simulated.applications);
        server_.emplace(
            MacWindowServer::Neighbours{simulated.executor, *accessibility_, *applications_, screens_},
            &FakeMac::symbol, bridge);
    }
    WindowNumber number(std::string_view title) {
        return desktop_->world().window("org.example.editor", title)->number;
    }
    WindowFacts facts(std::string_view title) {
        const WindowNumber window = number(title);
        return server_->facts({&window, 1}).front();
    }
    bool overviewShows() {
        desktop_->executor().runFor(2s);
        return desktop_->world().overviewShown();
    }
    SpaceID secondDesktop() { return desktop_->world().display("LEFT")->desktops[1]; }
    /// Whether a window comes to the other desktop; the answer says the same where it cannot.
    bool moves() {
        desktop_->world().requestSpace(number("Plain"), desktop_->world().display("LEFT")->desktops[0]);
        const bool asked = server_->moveWindow(number("Plain"), secondDesktop()).has_value();
        const auto spaces =
            desktop_->platform().windowServer.facts(std::array{number("Plain")}).front().spaces;
        EXPECT_TRUE(asked || spaces != std::vector{secondDesktop()});
        return asked && spaces == std::vector{secondDesktop()};
    }

    DesktopAccess access() {
        const Platform simulated = desktop_->platform();
        return {{simulated.executor, *accessibility_, *server_, *applications_, screens_, simulated.scripts,
                 simulated.browserFiles, simulated.log},
                handles_};
    }
    template <class T>
    T run(Task<T> task) {
        Job<T> job(desktop_->executor(), std::move(task));
        desktop_->executor().runUntil([&] { return job.done(); }, 60s);
        return job.result();
    }

    WindowHandleCache handles_;
    std::unique_ptr<SimulatedDesktop> desktop_;
    std::optional<FakeMac> mac_;
    FakeSkyLight* skyLight_ = nullptr;
    std::optional<MacAccessibility> accessibility_;
    std::optional<OnePidForAll> applications_;
    MacScreens screens_{[this] { return mac_->part<FakeDisplays>().screens(); }};
    std::optional<MacWindowServer> server_;
};
using WindowServerDeathTest = WindowServerTest;

/// What is left of the window server.
struct Able {
    bool spaces = true, creation = true;  // as it says of itself
    bool displays = true, membership = true, standard = true, fullScreen = true, animation = true;
    bool moves = true, overview = true;
};

struct Missing {
    Names names;
    Able able;
};

TEST_F(WindowServerTest, AMissingFunctionCostsWhatNeedsItAndSaysSo) {
    const Able unreadable{.spaces = false, .creation = false, .moves = false};
    const auto without = [](Able able, auto... members) {
        ((able.*members = false), ...);
        return able;
    };
    const Able noStandard = without({}, &Able::standard);
    const Missing cases[] = {
        {{}, {}},
        {{skyLight::mainConnection},
         without(unreadable, &Able::displays, &Able::membership, &Able::standard, &Able::fullScreen,
                 &Able::animation)},
        {{skyLight::copyManagedDisplaySpaces}, without(unreadable, &Able::displays)},
        {{skyLight::copySpacesForWindows}, without(unreadable, &Able::membership, &Able::fullScreen)},
        {{skyLight::managedDisplayIsAnimating}, without({}, &Able::animation)},
        {{skyLight::spaceGetType}, {}},
        {{skyLight::spaceGetType, skyLight::copyManagedDisplaySpaces},
         without(unreadable, &Able::displays, &Able::fullScreen)},
        {{skyLight::moveWindowsToManagedSpace}, {}},
        {{skyLight::spaceSetCompatID}, {}},
        {{skyLight::moveWindowsToManagedSpace, skyLight::spaceSetCompatID}, unreadable},
        {{skyLight::moveWindowsToManagedSpace, skyLight::setWindowListWorkspace}, unreadable},
        {{skyLight::windowQueryWindows}, noStandard},
        {{skyLight::windowQueryResultCopyWindows}, noStandard},
        {{skyLight::windowIteratorAdvance}, noStandard},
        {{skyLight::windowIteratorGetTags}, noStandard},
        {{skyLight::windowIteratorGetAttributes}, noStandard},
        {{skyLight::coreDockSendNotification}, without({}, &Able::creation, &Able::overview)},
        {{hiServices::getWindow}, noStandard},
    };
    for (const auto& [names, able] : cases) {
        SCOPED_TRACE(testing::PrintToString(names));
        start(names);
        EXPECT_EQ(bool(server_->spaces()), able.spaces) << server_->spaces().reason();
        EXPECT_EQ(bool(server_->desktopCreation()), able.creation);
        EXPECT_EQ(server_->displaySpaces().size(), able.displays ? 2U : 0U);
        EXPECT_EQ(facts("Plain").spaces.size(), able.membership ? 1U : 0U);
        EXPECT_EQ(facts("Plain").isStandard, able.standard);
        EXPECT_FALSE(facts("Dialog").isStandard || facts("Plain").isFullscreen);
        EXPECT_EQ(facts("Full").isFullscreen, able.fullScreen);
        EXPECT_EQ(server_->windowList().size(), 3U);
        EXPECT_EQ(moves(), able.moves);
        EXPECT_EQ(server_->openOverview(), able.overview);
        EXPECT_EQ(overviewShows(), able.overview);
        server_->closeOverview();
        EXPECT_FALSE(overviewShows());
        desktop_->world().requestFullscreen(number("Plain"), true);
        EXPECT_EQ(server_->isAnimating(FakeDisplays::uuidOf("LEFT")), able.animation);
        EXPECT_FALSE(server_->isAnimating(FakeDisplays::uuidOf("RIGHT")));
    }
}

TEST_F(WindowServerTest, WhatIsAnsweredWronglyIsLeftOut) {
    start();
    const auto text = [] { return fakes::textValue("no number"); };
    const auto number = [](std::int64_t value = 17) { return fakes::numberValue(value); };
    const auto list = [](Value value) { return fakes::arrayValue({std::move(value)}); };
    const auto right = server_->displaySpaces();
    auto unnamed = right;
    for (auto& display : unnamed) {
        for (Space& space : display.spaces) space.uuid.reset();
    }
    const std::vector<DisplaySpaces> none;
    struct Case {
        std::string key;
        std::vector<Value> values;
        const std::vector<DisplaySpaces>* displays;
    };
    const Case cases[] = {
        {skyLight::copyManagedDisplaySpaces, {{}, text(), list(text()), list({})}, &none},
        {"display", {{}, text()}, &none},
        {"Display Identifier", {{}, number(), text()}, &none},
        {"Spaces", {{}, text(), list(number())}, &none},
        {"space", {{}, text(), fakes::dictionaryValue({})}, &none},
        {"id64", {{}, text(), number(0), number(-1), fakes::realValue(1.5)}, &right},
        {"ManagedSpaceID", {{}, text()}, &right},
        {"type", {{}, text()}, &right},
        {"uuid", {{}, number(), fakes::textValue("")}, &unnamed},
    };
    const auto same = [](const DisplaySpaces& one, const DisplaySpaces& other) {
        return one.displayID == other.displayID &&
               std::ranges::equal(one.spaces, other.spaces, [](const Space& a, const Space& b) {
                   return a.id == b.id && a.kind == b.kind && a.uuid == b.uuid;
               });
    };
    for (const auto& [key, values, displays] : cases) {
        for (const Value& value : values) {
            skyLight_->instead = {{key, value}};
            EXPECT_TRUE(std::ranges::equal(server_->displaySpaces(), *displays, same)) << key;
            EXPECT_EQ(facts("Full").isFullscreen, true) << key;
            if (displays == &right) EXPECT_TRUE(moves()) << key;
        }
    }
    for (const Value& value : {Value{}, text(), list(text()), list(number(-1))}) {
        skyLight_->instead = {{skyLight::copySpacesForWindows, value}};
        EXPECT_TRUE(facts("Full").spaces.empty() && !facts("Full").isFullscreen);
    }
    for (const char* key : {skyLight::windowQueryWindows, skyLight::windowQueryResultCopyWindows}) {
        skyLight_->instead = {{key, {}}};
        EXPECT_FALSE(facts("Plain").isStandard) << key;
    }
}

TEST_F(WindowServerTest, AWindowWithoutAllItsNumbersIsNotListed) {
    start();
    FakeWindowList& list = mac_->part<FakeWindowList>();
    const char* keys[] = {"kCGWindowNumber",
                          "kCGWindowOwnerPID",
                          "kCGWindowLayer",
                          "kCGWindowBounds",
                          "X",
                          "Height",
                          "window",
                          "list"};
    for (const char* key : keys) {
        for (const Value& value : {Value{}, fakes::textValue("no number"), fakes::arrayValue({})}) {
            list.instead = {{key, value}};
            EXPECT_TRUE(server_->windowList().empty()) << key;
        }
    }
    list.instead = {{"kCGWindowNumber", fakes::numberValue(-1)}};
    EXPECT_TRUE(server_->windowList().empty());
    list.instead = {{"kCGWindowLayer", fakes::numberValue(-5)}};
    EXPECT_EQ(server_->windowList().front().layer, -5);
    EXPECT_EQ(applications_->asked, 0) << "the list of applications tells who owns a window";
    applications_->presented = 4;
    EXPECT_EQ(server_->windowList().front().ownerPid, 4);
    list.instead = {{"kCGWindowOwnerPID", fakes::numberValue(99999)}};  // no application: its own
    EXPECT_EQ(server_->windowList().front().ownerPid, 99999);
}

TEST_F(WindowServerDeathTest, IsAskedOnTheMainThreadOnly) {
    start();
    EXPECT_DEATH(std::thread([&] { server_->windowList(); }).join(), "another thread than the main thread");
}

TEST_F(WindowServerTest, DisplaysThatShareTheirSpacesEachShowThem) {
    start();
    skyLight_->sharedSpaces = true;
    const auto displays = server_->displaySpaces();
    ASSERT_EQ(displays.size(), 2U);
    EXPECT_EQ(displays[0].displayID, FakeDisplays::uuidOf("LEFT"));
    EXPECT_EQ(displays[1].displayID, FakeDisplays::uuidOf("RIGHT"));
    EXPECT_EQ(displays[0].spaces.size(), 3U);  // with that of the full-screen window
    EXPECT_TRUE(std::ranges::equal(displays[0].spaces, displays[1].spaces, {}, &Space::id, &Space::id));
    desktop_->world().requestFullscreen(number("Plain"), true);
    EXPECT_TRUE(server_->isAnimating(FakeDisplays::uuidOf("LEFT")));
}

TEST_F(WindowServerTest, AMoveIsAskedForInEachWayUntilItHolds) {
    const auto bridgeWithout = +[](std::uint32_t, std::uint64_t) { return false; };
    const auto bridgeInVain = +[](std::uint32_t, std::uint64_t) { return true; };
    const Names noMoves{skyLight::moveWindowsToManagedSpace, skyLight::setWindowListWorkspace};
    struct Case {
        MacWindowServer::MoveBridge bridge;
        Names missing;
        bool managedIgnored, workspaceIgnored, moved, accepted;
    };
    const Case cases[] = {
        {&FakeSkyLight::moveThroughBridge, noMoves, true, true, true, true},
        {bridgeWithout, noMoves, true, true, false, false},
        {bridgeWithout, {}, false, true, true, true},
        {bridgeInVain, {}, false, true, true, true},
        {bridgeInVain, {}, true, false, true, true},
        {nullptr, {}, true, false, true, true},
        {bridgeInVain, {}, true, true, false, true},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(&one - cases);
        start(one.missing, one.bridge);
        skyLight_->managedMovesIgnored = one.managedIgnored;
        skyLight_->workspaceMovesIgnored = one.workspaceIgnored;
        EXPECT_EQ(moves(), one.moved);
        EXPECT_EQ(server_->moveWindow(number("Plain"), secondDesktop()).has_value(), one.accepted);
    }
    EXPECT_FALSE(server_->moveWindow(number("Plain"), facts("Full").spaces.front())) << "it is no desktop";
}

TEST_F(WindowServerTest, TheOverviewIsNeverOpenedByClosingIt) {
    start();
    server_->closeOverview();
    EXPECT_EQ(skyLight_->toggles, 0) << "it was not opened";

    ASSERT_TRUE(server_->openOverview());
    ASSERT_TRUE(server_->openOverview()) << "on its way already";
    EXPECT_EQ(skyLight_->toggles, 1);
    server_->closeOverview();
    EXPECT_FALSE(overviewShows()) << "closed before it showed";

    ASSERT_TRUE(server_->openOverview());
    EXPECT_TRUE(overviewShows());
    desktop_->world().closeOverview();  // by the person
    const int before = skyLight_->toggles;
    server_->closeOverview();
    EXPECT_EQ(skyLight_->toggles, before);

    desktop_->world().openOverview();  // by the person
    EXPECT_TRUE(overviewShows());
    EXPECT_TRUE(server_->openOverview());
    server_->closeOverview();
    EXPECT_EQ(skyLight_->toggles, before) << "it is the person's";
}

TEST_F(WindowServerTest, WithoutNumbersOfElementsNoWindowIsCapturedTwice) {
    start({hiServices::getWindow});
    DesktopAccess desktop = access();
    EXPECT_EQ(run(Capture::snapshot(desktop, {})).windowCount(), 3);
}

TEST_F(WindowServerTest, WithoutDesktopsWindowsAreStillPlaced) {
    start();
    DesktopAccess before = access();
    Workspace saved;
    saved.snapshot = run(Capture::snapshot(before, {}));
    ASSERT_EQ(saved.snapshot.desktops->size(), 3U);
    saved.snapshot.desktops->push_back({FakeDisplays::uuidOf("RIGHT"), 1, {}});

    const auto unread = "macOS did not expose the current desktop layout; no desktops were created";
    for (const char* missing : {skyLight::mainConnection, skyLight::copyManagedDisplaySpaces,
                                skyLight::copySpacesForWindows, skyLight::coreDockSendNotification}) {
        SCOPED_TRACE(missing);
        start({missing});
        simulated::Window& plain = *desktop_->world().window("org.example.editor", "Plain");
        const Rect place = plain.state.frame;
        desktop_->world().move(plain, {700, 500, 300, 200});
        DesktopAccess after = access();
        const RestoreReport report = run(Restore::run(after, saved, {}, {}));
        EXPECT_EQ(plain.state.frame, place);
        EXPECT_EQ(report.totals().failed, 1);
        const auto failed = std::ranges::find_if(report.items, [](const RestoreReport::Item& item) {
            return std::holds_alternative<RestoreReport::failed>(item.status);
        });
        const auto& reason = std::get<RestoreReport::failed>(failed->status).reason;
        if (missing == skyLight::coreDockSendNotification)
            EXPECT_NE(reason.find("Mission Control"), std::string::npos) << reason;
        else
            EXPECT_EQ(reason, unread);
    }
}

}  // namespace
}  // namespace quillo
