#include "tests/platform/contract/ContractSuite.hpp"

#include <algorithm>
#include <cmath>
#include <set>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/DesktopCreation.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

bool near(const Rect& a, const Rect& b) {
    return std::abs(a.x - b.x) <= 2 && std::abs(a.y - b.y) <= 2 && std::abs(a.width - b.width) <= 2 &&
           std::abs(a.height - b.height) <= 2;
}

bool inside(const Rect& inner, const Rect& outer) {
    return inner.minX() >= outer.minX() && inner.minY() >= outer.minY() && inner.maxX() <= outer.maxX() &&
           inner.maxY() <= outer.maxY();
}

constexpr std::array windowAttributes{ax::subrole, ax::position,  ax::size,
                                      ax::title,   ax::minimized, ax::fullScreen};
constexpr WindowNumber unknownNumber = 0xfffffff0;
constexpr SpaceID unknownSpace = 0xfffffff0;
constexpr ProcessID unknownPid = 0x7ffffff0;

}  // namespace

void PlatformContract::SetUp() {
    desktop_ = GetParam()();
    ASSERT_NE(desktop_, nullptr);
    waitUntil([&] { return applications().running(desktop_->editor()) && editorWindows().size() == 3; },
              "three windows");
}

void PlatformContract::waitUntil(const std::function<bool()>& condition, std::string_view what) {
    const auto poll = [](const std::function<bool()>& holds) -> Task<bool> {
        const Context context = co_await quillo::context();
        const TimePoint deadline = context.now() + 10s;
        while (!holds()) {
            if (context.now() > deadline) co_return false;
            co_await sleepFor(20ms);
        }
        co_return true;
    };
    ASSERT_TRUE(run(poll(condition))) << "waited in vain for " << what;
}

RunningApplication PlatformContract::editor() {
    const auto running = applications().running(desktop_->editor());
    if (!running) throw std::runtime_error("the editor does not run");
    return *running;
}

std::vector<Element> PlatformContract::editorWindows() {
    const Attribute list = read(editorElement(), ax::windows);
    const auto* elements = list ? std::get_if<std::vector<Element>>(&*list) : nullptr;
    return elements ? *elements : std::vector<Element>{};
}

Element PlatformContract::window(std::string_view title) {
    for (const Element& element : editorWindows()) {
        if (read(element, ax::title) == Attribute(std::string(title))) return element;
    }
    throw std::runtime_error("no window titled " + std::string(title));
}

Attribute PlatformContract::read(const Element& element, std::string_view name) {
    const AttributeRequest request{element, {&name, 1}};
    return ax().read({&request, 1}).at(0).at(0);
}

bool PlatformContract::flag(const Element& element, std::string_view name) {
    const Attribute value = read(element, name);
    return value && std::get<bool>(*value);
}

Rect PlatformContract::frame(const Element& element) {
    const Attribute position = read(element, ax::position), size = read(element, ax::size);
    if (!position || !size) return {};
    const Point origin = std::get<Point>(*position);
    const Size extent = std::get<Size>(*size);
    return {origin.x, origin.y, extent.width, extent.height};
}

WindowFacts PlatformContract::facts(const Element& window) {
    const WindowNumber number = ax().windowNumber(window).value();
    return server().facts({&number, 1}).at(0);
}

std::vector<Element> PlatformContract::addDesktopButtons() {
    const auto dock = applications().serviceProcess("com.apple.dock");
    if (!dock) return {};
    std::vector<Element> found, open{ax().application(*dock)};
    while (!open.empty()) {
        const Element element = open.front();
        open.erase(open.begin());
        if (read(element, ax::identifier) == Attribute(std::string("mc.spaces.add")))
            found.push_back(element);
        const Attribute children = read(element, ax::children);
        if (!children) continue;
        for (const Element& child : std::get<std::vector<Element>>(*children)) open.push_back(child);
    }
    return found;
}

std::size_t PlatformContract::launcherWindowCount() {
    const auto running = applications().running(desktop_->launcher());
    if (!running) return 0;
    const Attribute list = read(ax().application(running->pid), ax::windows);
    return list ? std::get<std::vector<Element>>(*list).size() : 0;
}

TEST_P(PlatformContract, IsTrustedWithoutAReasonAgainstIt) {
    EXPECT_TRUE(ax().trusted());
    EXPECT_TRUE(ax().access()) << ax().access().reason();
}

TEST_P(PlatformContract, ListsWindowsWithIdentityAndKind) {
    const std::vector<Element> first = editorWindows(), second = editorWindows();
    ASSERT_EQ(first.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) EXPECT_EQ(first[i] == second[j], i == j) << i << " " << j;
    }
    EXPECT_EQ(read(window(desktop_->alpha), ax::subrole), Attribute(std::string(ax::standardWindow)));
    EXPECT_EQ(read(window(desktop_->gamma), ax::subrole), Attribute(std::string(ax::dialog)));
}

TEST_P(PlatformContract, ABatchMeansReadingOneByOne) {
    std::vector<AttributeRequest> requests;
    for (const Element& element : editorWindows()) requests.push_back({element, windowAttributes});
    const auto answers = ax().read(requests);
    ASSERT_EQ(answers.size(), requests.size());
    for (std::size_t i = 0; i < answers.size(); ++i) {
        ASSERT_EQ(answers[i].size(), windowAttributes.size());
        for (std::size_t n = 0; n < windowAttributes.size(); ++n)
            EXPECT_EQ(answers[i][n], read(requests[i].element, windowAttributes[n])) << windowAttributes[n];
    }
}

TEST_P(PlatformContract, WhatIsNotThereIsAbsentOrGone) {
    const Attribute nothing = read(window(desktop_->alpha), "AXNoSuchAttribute");
    ASSERT_FALSE(nothing);
    EXPECT_EQ(nothing.error().reason, AttributeMiss::Reason::absent);

    const Attribute nobody = read(ax().application(unknownPid), ax::windows);
    ASSERT_FALSE(nobody);
    EXPECT_EQ(nobody.error().reason, AttributeMiss::Reason::gone);
}

TEST_P(PlatformContract, AVanishedWindowIsGoneForReadsAndWrites) {
    const Element beta = window(desktop_->beta);
    desktop_->vanish(desktop_->beta);
    waitUntil([&] { return editorWindows().size() == 2; }, "the window to vanish");
    const Attribute title = read(beta, ax::title);
    ASSERT_FALSE(title);
    EXPECT_EQ(title.error().reason, AttributeMiss::Reason::gone);
    EXPECT_FALSE(ax().write(beta, ax::minimized, true));
    EXPECT_FALSE(ax().writeFrame(beta, {10, 10, 100, 100}).positionSet);
    EXPECT_FALSE(ax().perform(beta, ax::raise));
    EXPECT_FALSE(run(ax().makeMovable(beta)) && read(beta, ax::position).has_value());
    run(ax().settleInPlace(beta));
}

TEST_P(PlatformContract, AFrameThatWasWrittenIsReadBack) {
    const Element alpha = window(desktop_->alpha);
    for (const Rect& target : {Rect{120, 130, 420, 330}, Rect{300, 200, 360, 280}}) {
        ASSERT_TRUE(run(ax().makeMovable(alpha)));
        const FrameWrite written = ax().writeFrame(alpha, target);
        EXPECT_TRUE(written.positionSet && written.sizeSet);
        waitUntil([&] { return near(frame(alpha), target); }, "the frame");
        run(ax().settleInPlace(alpha));
        EXPECT_TRUE(near(frame(alpha), target));
    }
}

TEST_P(PlatformContract, ARefusedWriteChangesNothing) {
    const Element alpha = window(desktop_->alpha);
    const Rect before = frame(alpha);
    EXPECT_FALSE(ax().write(alpha, "AXNoSuchAttribute", true));
    EXPECT_FALSE(ax().write(alpha, ax::minimized, std::string("yes")));
    EXPECT_FALSE(ax().perform(alpha, "AXNoSuchAction"));
    EXPECT_EQ(frame(alpha), before);
    EXPECT_FALSE(flag(alpha, ax::minimized));
}

TEST_P(PlatformContract, MinimizesAndRestores) {
    const Element alpha = window(desktop_->alpha);
    const Rect target{310, 220, 500, 400};
    ASSERT_TRUE(run(ax().makeMovable(alpha)));
    ax().writeFrame(alpha, target);
    ASSERT_TRUE(ax().write(alpha, ax::minimized, true));
    waitUntil([&] { return flag(alpha, ax::minimized); }, "the minimized state");
    run(ax().settleInPlace(alpha));
    EXPECT_TRUE(flag(alpha, ax::minimized));
    EXPECT_EQ(editorWindows().size(), 3U) << "a minimized window stays listed";
    ASSERT_TRUE(ax().write(alpha, ax::minimized, false));
    waitUntil([&] { return !flag(alpha, ax::minimized) && near(frame(alpha), target); }, "its frame");
}

TEST_P(PlatformContract, EntersAndLeavesFullScreen) {
    const Element alpha = window(desktop_->alpha);
    const Rect before = frame(alpha);
    const Rect screen = screens().at(0).frame;
    ASSERT_TRUE(ax().write(alpha, ax::fullScreen, true));
    waitUntil([&] { return flag(alpha, ax::fullScreen) && near(frame(alpha), screen); }, "full screen");
    EXPECT_TRUE(facts(alpha).isFullscreen);
    ASSERT_TRUE(ax().write(alpha, ax::fullScreen, false));
    waitUntil([&] { return !flag(alpha, ax::fullScreen) && near(frame(alpha), before); }, "the frame it had");
    EXPECT_FALSE(facts(alpha).isFullscreen);
}

TEST_P(PlatformContract, TheWindowServerSeesTheSameWindows) {
    const auto list = server().windowList();
    for (const Element& element : editorWindows()) {
        const auto number = ax().windowNumber(element);
        ASSERT_TRUE(number);
        const auto entry = std::ranges::find(list, *number, &WindowListEntry::number);
        ASSERT_NE(entry, list.end());
        EXPECT_EQ(entry->ownerPid, editor().pid);
        EXPECT_EQ(entry->layer, 0);
        EXPECT_TRUE(near(entry->bounds, frame(element)));
    }
    EXPECT_FALSE(ax().windowNumber(ax().application(unknownPid)));
}

TEST_P(PlatformContract, FactsKnowSpacesAndKindsAndNothingOfStrangers) {
    EXPECT_TRUE(facts(window(desktop_->alpha)).isStandard);
    std::set<SpaceID> known;
    for (const DisplaySpaces& display : server().displaySpaces()) {
        for (const Space& space : display.spaces) known.insert(space.id);
    }
    for (const Element& element : editorWindows()) {
        const WindowFacts seen = facts(element);
        EXPECT_FALSE(seen.spaces.empty());
        for (const SpaceID space : seen.spaces) EXPECT_TRUE(known.contains(space));
    }
    const auto stranger = server().facts({&unknownNumber, 1}).at(0);
    EXPECT_TRUE(stranger.spaces.empty() && !stranger.isStandard && !stranger.isFullscreen);
}

TEST_P(PlatformContract, MovesAWindowToAnotherDesktop) {
    const auto spaces = server().displaySpaces().at(0).spaces;
    ASSERT_GE(spaces.size(), 2U);
    const Element alpha = window(desktop_->alpha);
    const WindowNumber number = ax().windowNumber(alpha).value();
    for (const SpaceID target : {spaces[1].id, spaces[0].id}) {
        ASSERT_TRUE(server().moveWindow(number, target));
        waitUntil([&] { return facts(alpha).spaces == std::vector{target}; }, "the desktop");
    }
    EXPECT_FALSE(server().moveWindow(unknownNumber, spaces[0].id));
    EXPECT_FALSE(server().moveWindow(number, unknownSpace));
    EXPECT_EQ(facts(alpha).spaces, std::vector{spaces[0].id});
}

TEST_P(PlatformContract, CreatesADesktopDirectlyOrThroughTheOverview) {
    if (!server().desktopCreation()) GTEST_SKIP() << server().desktopCreation().reason();
    const std::string display = *screens().at(0).stableID;
    const auto count = [&] { return server().displaySpaces().at(0).spaces.size(); };
    const std::size_t before = count();
    if (server().createsDesktopsDirectly()) {
        ASSERT_TRUE(server().createDesktop(display));
    } else {
        EXPECT_FALSE(server().createDesktop(display));
        EXPECT_TRUE(addDesktopButtons().empty()) << "the overview is closed";
        ASSERT_TRUE(server().openOverview());
        waitUntil([&] { return addDesktopButtons().size() == screens().size(); },
                  "a button for each display");
        const Element button = addDesktopButtons().at(0);
        EXPECT_TRUE(inside(frame(button), screens().at(0).frame));
        ASSERT_TRUE(ax().perform(button, ax::press));
        server().closeOverview();
        EXPECT_FALSE(ax().perform(button, ax::press)) << "it went with the overview";
    }
    waitUntil([&] { return count() == before + 1; }, "one more desktop");
}

TEST_P(PlatformContract, PreparesDesktopsAndBringsWindowsToThem) {
    WindowHandleCache handles;
    DesktopAccess access{platform(), handles};
    const auto displays = Displays::current(platform().screens);
    std::vector<DesktopSnapshot> saved;
    for (const DisplaySnapshot& display : displays) {  // one more than there are on each display
        const auto count = DesktopSpaces::desktopCount(DesktopSpaces::current(access), display.id);
        for (std::int64_t index = 0; index <= count; ++index) saved.push_back({display.id, index, {}});
    }
    const auto prepare = [&] { return run(DesktopSpaces::prepare(access, saved, displays, displays)); };
    const DesktopPreparation made = prepare();
    EXPECT_TRUE(made.failures.empty()) << made.failures.front();
    const bool shared = server().createsDesktopsDirectly();
    EXPECT_EQ(made.created, shared ? 1 : static_cast<std::int64_t>(displays.size()));
    EXPECT_EQ(made.targets.size(), saved.size());
    const DesktopPreparation again = prepare();
    EXPECT_EQ(again.created, 0);
    EXPECT_EQ(again.targets, made.targets);

    const SpaceID last = made.targets.at(saved[saved.size() / displays.size() - 1].id());
    for (const std::string_view title : {desktop_->alpha, desktop_->beta}) {
        const Element element = window(title);
        const WindowNumber number = ax().windowNumber(element).value();
        if (title == desktop_->beta) {
            ASSERT_TRUE(ax().write(element, ax::minimized, true));
            waitUntil([&] { return flag(element, ax::minimized); }, "the minimized state");
        }
        EXPECT_TRUE(run(DesktopSpaces::move(access, number, last, 2s)));
        EXPECT_EQ(facts(element).spaces, std::vector{last});
        EXPECT_EQ(flag(element, ax::minimized), title == desktop_->beta);
    }
    EXPECT_FALSE(run(DesktopSpaces::move(access, unknownNumber, last, 100ms)));
}

TEST_P(PlatformContract, ScreensAreUniqueWithThePrimaryFirst) {
    const auto all = screens();
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all[0].frame.origin(), Point{});
    std::set<std::string> ids;
    const auto spaces = server().displaySpaces();
    ASSERT_EQ(spaces.size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_TRUE(inside(all[i].visibleFrame, all[i].frame));
        EXPECT_GT(all[i].scale, 0);
        ASSERT_TRUE(all[i].stableID);
        EXPECT_TRUE(ids.insert(*all[i].stableID).second);
        EXPECT_EQ(spaces[i].displayID, *all[i].stableID);
    }
}

TEST_P(PlatformContract, AnApplicationIsFoundByIdentityAndPid) {
    const RunningApplication known = editor();
    EXPECT_EQ(known.activationPolicy, ActivationPolicy::regular);
    const auto byPid = applications().running(known.pid);
    ASSERT_TRUE(byPid);
    EXPECT_EQ(byPid->bundleIdentifier, known.bundleIdentifier);
    EXPECT_EQ(byPid->launchDate, known.launchDate);
    const auto all = applications().running();
    EXPECT_EQ(std::ranges::count(all, known.bundleIdentifier, &RunningApplication::bundleIdentifier), 1);

    EXPECT_FALSE(applications().running(unknownPid));
    EXPECT_FALSE(applications().running("org.example.nobody"));
    EXPECT_FALSE(applications().location("org.example.nobody"));
    EXPECT_FALSE(applications().identifierAt(Url::file("/nowhere/nobody.app")));
}

TEST_P(PlatformContract, LaunchesWhatIsInstalledAndQuitsIt) {
    const auto location = applications().location(desktop_->launcher());
    ASSERT_TRUE(location);
    EXPECT_EQ(applications().identifierAt(*location), desktop_->launcher());
    ASSERT_FALSE(applications().running(desktop_->launcher()));
    ASSERT_TRUE(run(applications().launch(*location, {})));
    waitUntil([&] { return launcherWindowCount() == 1; }, "the launched application's window");

    EXPECT_TRUE(applications().terminate(desktop_->launcher()));
    waitUntil([&] { return !applications().running(desktop_->launcher()); }, "the application to end");
    EXPECT_FALSE(applications().terminate(desktop_->launcher()));
    EXPECT_FALSE(run(applications().requestWindow(desktop_->launcher())));
    EXPECT_FALSE(run(applications().launch(Url::file("/nowhere/nobody.app"), {})));
}

TEST_P(PlatformContract, ARunningApplicationOpensAWindowWhenAskedForOneNotWhenLaunchedAgain) {
    const Url location = applications().location(desktop_->launcher()).value();
    ASSERT_TRUE(run(applications().launch(location, {})));
    waitUntil([&] { return launcherWindowCount() == 1; }, "the launched application's window");
    const auto first = applications().running(desktop_->launcher());
    ASSERT_TRUE(first);

    ASSERT_TRUE(run(applications().launch(location, {})));
    EXPECT_EQ(launcherWindowCount(), 1U);
    ASSERT_TRUE(run(applications().requestWindow(desktop_->launcher())));
    waitUntil([&] { return launcherWindowCount() == 2; }, "another window");
    const auto all = applications().running();
    EXPECT_EQ(std::ranges::count(all, desktop_->launcher(), &RunningApplication::bundleIdentifier), 1)
        << "one application, however many processes";
    EXPECT_EQ(applications().running(desktop_->launcher())->pid, first->pid)
        << "the oldest process stands for it";

    const bool opensMore(applications().openingWindows(desktop_->launcher()));
    EXPECT_EQ(run(applications().openWindow(desktop_->launcher())).has_value(), opensMore);
    waitUntil([&] { return launcherWindowCount() == (opensMore ? 3U : 2U); }, "one more window");

    EXPECT_TRUE(applications().terminate(desktop_->launcher()));
    waitUntil([&] { return !applications().running(desktop_->launcher()); }, "the application to end");
}

TEST_P(PlatformContract, HidesWhatRunsAndRefusesWhatDoesNot) {
    EXPECT_TRUE(applications().hide(desktop_->editor()));
    EXPECT_FALSE(applications().hide("org.example.nobody"));
}

TEST_P(PlatformContract, SaysWhatItCannotDoAndDoesNotPretend) {
    if (!platform().scripts.scripting()) {
        const auto outcome =
            run(platform().scripts.execute({"com.apple.finder", ScriptRequest::ListFolders{}}, 1s));
        ASSERT_FALSE(outcome);
        EXPECT_EQ(outcome.error().kind, ErrorKind::unavailable);
    }
    if (!server().desktopCreation()) EXPECT_FALSE(server().createDesktop(*screens().at(0).stableID));
}

}  // namespace quillo
