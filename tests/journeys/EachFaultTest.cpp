// The same journey over one desk with each kind of fault: what the report says of it, twice the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "platform/simulated/SceneFields.hpp"
#include "tests/journeys/Journey.hpp"

namespace quillo {
namespace {

using simulated::FaultKind;

std::string statusText(const RestoreReport::Status& status) {
    const std::string_view text = detailOf(status).text;
    return std::string(outcomeOf(status).word) + (text.empty() ? "" : " ") + std::string(text);
}

simulated::Scene desk() {
    std::ifstream file(QUILLO_SOURCE_DIR "/tests/scenes/desk.json");
    const std::string json{std::istreambuf_iterator<char>(file), {}};
    return simulated::readScene(json, "desk.json").value();
}

/// Every window elsewhere and in another state, one application ended, one without windows, a desktop gone.
void disturb(Journey& journey) {
    simulated::World& world = journey.world();
    const auto number = [&](const char* title) { return world.window("org.example.editor", title)->number; };
    world.move(*world.window(number("Letter")), {900, 200, 300, 200});
    world.move(*world.window(number("Drawing")), {10, 30, 500, 300});
    EXPECT_EQ(world.requestMinimized(number("Notes"), false), simulated::code::success);
    EXPECT_EQ(world.requestFullscreen(number("Slides"), false), simulated::code::success);
    EXPECT_EQ(world.requestMinimized(number("Letter"), true), simulated::code::success);
    world.move(*world.window("com.apple.Terminal", "logs"), {700, 30, 400, 300});
    world.end(*world.application("org.example.mail"));
    world.close(world.window("org.example.reader", "Untitled")->number);
    world.removeDesktop("LAPTOP", 1);
    journey.settle();
}

std::vector<std::string> story(std::optional<simulated::Fault> fault) {
    Journey journey(desk(), 7);
    journey.save();
    disturb(journey);
    if (fault) journey.lay(*std::move(fault));
    std::vector<std::string> lines;
    for (const RestoreReport::Item& item : journey.restore().items)
        lines.push_back(item.app + "/" + item.title.value_or("") + ": " + statusText(item.status));
    std::ranges::sort(lines);
    return lines;
}

const std::vector<std::string> wellDone{
    "Editor/Drawing: restored", "Editor/Letter: restored",   "Editor/Notes: restored",
    "Editor/Slides: restored",  "Mail/: launched",           "Mail/Inbox: restored",
    "Quillo/: created",         "Reader/Untitled: restored", "Terminal/build: restored",
};

struct Case {
    FaultKind kind;
    std::string line;  // one that the fault brings; empty: it must not show in the report
    double seconds = 1;
    bool onWrite = false;
    std::string value{};
};

const std::string refused = " failed window refused position or minimized state",
                  unfinished = "Editor/Slides: failed full-screen transition did not complete",
                  noWindows =
                      " skipped no accessible windows appeared; windows in other Spaces may be unavailable",
                  noDesktop = "Quillo/: failed Could not create Desktop 2: ",
                  unassigned = "Reader/Untitled: failed position restored, but Desktop 2 assignment failed";

const Case cases[] = {
    {FaultKind::launchRefused, "Mail/: failed couldn't launch: " + std::string(layerWords.launchRefused)},
    {FaultKind::slowLaunch, "", 8},
    {FaultKind::lateWindows, "Mail/Inbox:" + noWindows, 60},
    {FaultKind::requestWindowRefused,
     "Reader/: failed couldn't reopen a window: " + std::string(layerWords.windowRefused)},
    {FaultKind::moveRefused, "Editor/Drawing:" + refused},
    {FaultKind::moveIgnored, "Editor/Drawing:" + refused},
    {FaultKind::positionClamped, ""},
    {FaultKind::sizeClamped, "Editor/Drawing: adjusted"},
    {FaultKind::minimizeRefused, "Editor/Notes:" + refused},
    {FaultKind::unminimizeRefused, "Editor/Letter: failed couldn't unminimize the window before moving it"},
    {FaultKind::minimizeIgnored, "Editor/Notes:" + refused},
    {FaultKind::fullscreenRefused, unfinished},
    {FaultKind::fullscreenIgnored, unfinished},
    {FaultKind::fullscreenSlow, "", 2},
    {FaultKind::fullscreenFlickers, ""},
    {FaultKind::windowVanishes, "Editor/Drawing:" + refused, 1, true},
    {FaultKind::overviewRefused, noDesktop + std::string(layerWords.overviewRefused)},
    {FaultKind::addDesktopMissing, noDesktop + "Mission Control did not expose its Add Desktop button"},
    {FaultKind::addDesktopRefused, noDesktop + "Mission Control refused Add Desktop (Accessibility error "
                                               "-25200)"},
    {FaultKind::addDesktopIgnored, noDesktop + "Mission Control accepted Add Desktop but no desktop "
                                               "appeared; its desktop limit may have been reached"},
    {FaultKind::desktopMoveRefused, unassigned},
    {FaultKind::desktopMoveIgnored, unassigned},
    {FaultKind::applicationHangs, "Editor/Letter:" + noWindows, 0},
    {FaultKind::applicationCrashes, "Editor/Drawing:" + refused, 1, true},
    {FaultKind::displayUnplugged, "Editor/Drawing: adjusted", 0, false, "MONITOR"},
    {FaultKind::permissionRevoked, "Quillo/: failed Accessibility permission not granted"},
};

TEST(EachFault, ShowsInTheReportOrIsOvercome) {
    EXPECT_EQ(story({}), wellDone);
    for (const Case& one : cases) {
        SCOPED_TRACE(nameOf(one.kind));
        const simulated::Fault fault{one.kind, {}, {}, one.value, 0, one.seconds, one.onWrite};
        const auto lines = story(fault);
        if (one.line.empty())
            EXPECT_EQ(lines, wellDone);
        else
            EXPECT_EQ(std::ranges::count(lines, one.line), 1) << testing::PrintToString(lines);
        EXPECT_EQ(story(fault), lines) << "another run tells another story";
    }
}

}  // namespace
}  // namespace quillo
