// Desktops made through the overview and windows moved to them: every failure with the line it ends in.
#include <gtest/gtest.h>

#include "WindowEngine/restore/DesktopCreation.hpp"
#include "WindowEngine/services/ForwardingWindowServer.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

using enum FaultKind;
using Texts = std::vector<std::string>;

class Server final : public ForwardingWindowServer {
  public:
    using ForwardingWindowServer::ForwardingWindowServer;
    Capability spaces() override { return readable; }
    Capability desktopCreation() override { return creation; }
    bool createsDesktopsDirectly() override { return directly; }
    Result<void> moveWindow(WindowNumber number, SpaceID space) override {
        ++moves;
        everywhere = false;
        return ForwardingWindowServer::moveWindow(number, space);
    }
    bool openOverview() override {
        ++opened;
        return ForwardingWindowServer::openOverview();
    }

    std::vector<DisplaySpaces> displaySpaces() override {
        auto displays = ForwardingWindowServer::displaySpaces();
        std::erase_if(displays, [&](const DisplaySpaces& display) { return display.displayID == hidden; });
        return displays;
    }

    std::vector<WindowFacts> facts(std::span<const WindowNumber> numbers) override {
        auto facts = ForwardingWindowServer::facts(numbers);
        const DisplaySpaces main = displaySpaces().front();
        for (WindowFacts& fact : everywhere ? std::span(facts) : std::span<WindowFacts>{}) {
            fact.spaces.clear();
            for (const Space& space : main.spaces) fact.spaces.push_back(space.id);
        }
        return facts;
    }

    bool everywhere = false;  // windows stand on all desktops, until one is moved
    std::string hidden;       // the display whose spaces cannot be read
    Capability readable = Capability::available(), creation = Capability::available();
    bool directly = false;
    int moves = 0, opened = 0;
};

/// "main" with two desktops, the second in front, and "side" with one.
class Spaces : public TestDesktop {
  public:
    explicit Spaces(std::vector<SceneApplication> applications = {}, std::int64_t desktops = 2)
        : TestDesktop([&] {
              Scene it = scene(std::move(applications));
              it.displays[0].desktops = desktops;
              it.displays[0].shownDesktop = 1;
              return it;
          }()) {}

    Server server{plain.windowServer};
    DesktopAccess seen = with(server);

    DesktopPreparation prepare(std::int64_t onMain, std::int64_t onSide) {
        return run(preparation(*this, onMain, onSide));
    }
    static Task<DesktopPreparation> preparation(Spaces& spaces, std::int64_t onMain, std::int64_t onSide) {
        const auto displays = Displays::current(spaces.plain.screens);
        std::vector<DesktopSnapshot> saved;
        for (std::int64_t i = 0; i < onMain; ++i) saved.push_back({"main", i, {}});
        for (std::int64_t i = 0; i < onSide; ++i) saved.push_back({"side", i, {}});
        co_return co_await DesktopSpaces::prepare(spaces.seen, saved, displays, displays);
    }
    std::size_t count(std::string_view display) {
        const simulated::Display* found = world().display(display);
        return found ? found->desktops.size() : 0;
    }
    SpaceID space(std::string_view display, std::size_t index) {
        return world().display(display)->desktops.at(index);
    }
    bool overviewClosed() {
        executor().runFor(1s);
        return !world().overviewShown();
    }
};

const std::string notThird = "Could not create Desktop 3: ";
const std::string pressRefused = "Mission Control refused Add Desktop (Accessibility error -25200)";

enum Abilities : unsigned { able = 0, unreadable = 1, uncreatable = 2, direct = 4, halfReadable = 8 };

TEST(DesktopCreation, MakesWhatIsMissingOrSaysWhyNot) {
    const std::string gone = "The target display disconnected before its desktops could be created",
                      ignored =
                          "Mission Control accepted Add Desktop but no desktop appeared; its desktop "
                          "limit may have been reached",
                      beyond = "The saved layout exceeds the per-display desktop limit",
                      noLayout = "macOS did not expose the current desktop layout; no desktops were created",
                      halfLayout = "The desktops of a display could not be read; none were created there",
                      noButton = "Mission Control did not expose its Add Desktop button";
    const struct {
        const char* what;
        std::int64_t onMain, onSide;
        std::optional<FaultKind> fault;
        double after;
        std::int64_t created;
        Texts failures;
        int opened = 1;
        unsigned server = able;
    } cases[] = {
        {"enough", 2, 1, {}, 0, 0, {}, 0},
        {"none saved", 0, 0, {}, 0, 0, {}, 0, unreadable},
        {"one", 3, 1, {}, 0, 1, {}},
        {"several on both", 5, 3, {}, 0, 5, {}},
        {"as many as can be", 20, 1, {}, 0, 14, {beyond}},
        {"refused", 4, 1, overviewRefused, 0, 0, {notThird + "macOS could not open Mission Control"}},
        {"no button", 4, 1, addDesktopMissing, 0, 0, {notThird + noButton}},
        {"press refused", 4, 1, addDesktopRefused, 0, 0, {notThird + pressRefused}},
        {"without effect", 4, 1, addDesktopIgnored, 0, 0, {notThird + ignored}},
        {"on each display",
         3,
         2,
         addDesktopIgnored,
         0,
         0,
         {notThird + ignored, "Could not create Desktop 2: " + ignored}},
        {"after one", 5, 1, addDesktopIgnored, 0.5, 1, {"Could not create Desktop 4: " + ignored}},
        {"unplugged before its turn", 4, 3, displayUnplugged, 0.5, 2, {gone}},
        {"unplugged meanwhile", 2, 9, displayUnplugged, 0.8, 1, {notThird + gone}},
        {"unreadable", 4, 1, {}, 0, 0, {noLayout}, 0, unreadable},
        {"unreadable, no Dock", 4, 1, {}, 0, 0, {"No layout."}, 0, unreadable | direct},
        {"unreadable in part", 3, 2, {}, 0, 1, {halfLayout}, 1, halfReadable},
        {"no way", 4, 1, {}, 0, 0, {notThird + "No way."}, 0, uncreatable},
        {"refused directly",
         4,
         1,
         {},
         0,
         0,
         {notThird + "the overview creates desktops, not the window server"},
         0,
         direct},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Spaces desktop;
        if (c.fault) {
            Fault provoking = fault(*c.fault, {}, c.after);
            provoking.value = "side";
            desktop.world().add(provoking);
        }
        if (c.server & unreadable) desktop.server.readable = Capability::unavailable("No layout.");
        if (c.server & uncreatable) desktop.server.creation = Capability::unavailable("No way.");
        desktop.server.directly = c.server & direct;
        if (c.server & halfReadable) desktop.server.hidden = "side";
        const std::size_t before = desktop.count("main") + desktop.count("side");

        const DesktopPreparation made = desktop.prepare(c.onMain, c.onSide);
        EXPECT_EQ(made.failures, c.failures);
        EXPECT_EQ(made.created, c.created);
        const std::size_t side = desktop.count("side");  // 0 once it is unplugged, with what it had
        if (side > 0) EXPECT_EQ(desktop.count("main") + side, before + static_cast<std::size_t>(c.created));
        EXPECT_EQ(desktop.server.opened, c.opened) << "once for all displays";
        EXPECT_TRUE(desktop.overviewClosed());
        EXPECT_EQ(desktop.world().display("main")->scene.shownDesktop, 1) << "people stay where they are";
        Texts logged;
        for (const std::string& failure : c.failures)
            logged.push_back("restore error: Desktop creation: " + failure);
        EXPECT_EQ(desktop.simulated->logLines(), logged);
        for (std::size_t i = 0; i < static_cast<std::size_t>(c.onMain) && desktop.server.readable; ++i) {
            const auto target =
                made.targets.find(DesktopSnapshot{"main", static_cast<std::int64_t>(i), {}}.id());
            ASSERT_EQ(target != made.targets.end(), i < desktop.count("main")) << i;
            if (target != made.targets.end()) EXPECT_EQ(target->second, desktop.space("main", i));
        }
    }
}

TEST(DesktopCreation, CancelledAtAnyMomentTheOverviewIsClosed) {
    for (const bool destroyed : {false, true}) {
        for (int tenths = 0; tenths < 20; ++tenths) {
            Spaces desktop;
            auto job = std::make_unique<Job<DesktopPreparation>>(desktop.executor(),
                                                                 Spaces::preparation(desktop, 9, 1));
            desktop.executor().runFor(tenths * 100ms);
            destroyed ? job.reset() : job->cancel();
            desktop.executor().runFor(0s);
            if (job) EXPECT_TRUE(job->done());
            EXPECT_TRUE(desktop.overviewClosed()) << tenths;
            const std::size_t count = desktop.count("main");
            desktop.executor().runFor(10s);
            EXPECT_EQ(desktop.count("main"), count);
        }
    }
}

TEST(DesktopCreation, AnOverviewThatIsOpenIsUsedAndLeft) {
    Spaces desktop;
    desktop.world().openOverview();
    desktop.executor().runFor(1s);
    EXPECT_EQ(desktop.prepare(3, 1).created, 1);
    EXPECT_EQ(desktop.server.opened, 0);
    EXPECT_FALSE(desktop.overviewClosed());
}

constexpr Rect there{200, 100, 600, 400}, away{500, 300, 300, 200};

/// Saves a window on the first desktop of "main"; it lies on the second by then.
struct Moved {
    explicit Moved(unsigned state = 0) : desktop({application(state)}) {
        snapshot = desktop.capture();
        for (const simulated::Window& window : desktop.world().windows()) number = window.number;
    }
    enum State : unsigned { minimized = 1, tabs = 2 };
    static SceneApplication application(unsigned state) {
        SceneWindow window = sceneWindow("Notes", there);
        window.minimized = state & minimized;
        if (!(state & tabs)) return sceneApplication("org.a", {window});
        SceneWindow other = sceneWindow("Other", there);
        window.tabGroup = other.tabGroup = "group";
        return sceneApplication("com.apple.Terminal", {window, other});
    }
    std::string status() {
        const RestoreReport report = desktop.restoreThrough(desktop.seen, snapshot);
        EXPECT_EQ(report.items.size(), 1U);
        return text(report.items.at(0).status);
    }
    simulated::Window& window() { return *desktop.world().window(number); }

    Spaces desktop;
    WorkspaceSnapshot snapshot;
    WindowNumber number = 0;
};

TEST(DesktopMove, AWindowComesBackToItsDesktopOrItsLineSaysSo) {
    const auto inPlace = [](Moved& it) { it.window().space = it.desktop.space("main", 0); };
    const auto side = [](Moved& it) { it.desktop.world().move(it.window(), {1500, 10, 300, 200}); };
    const auto filling = [](Moved& it) {
        it.desktop.world().requestFullscreen(it.number, true);
        it.desktop.executor().runFor(1s);
    };
    const auto behind = [](Moved& it) {
        WindowSnapshot& saved = it.snapshot.applications[0].windows[0];
        saved.title = saved.tabs->front().title = "Other";
    };
    const auto refused = [](Moved& it) { it.desktop.world().add(fault(desktopMoveRefused)); };
    const auto ignored = [](Moved& it) { it.desktop.world().add(fault(desktopMoveIgnored)); };
    const auto everywhere = [](Moved& it) { it.desktop.server.everywhere = true; };
    const auto noneKnown = [](Moved& it) { it.snapshot.desktops->clear(); };
    const auto full = [](Moved& it) { it.snapshot.applications[0].windows[0].isFullscreen = true; };
    const std::string notMoved = "failed position restored, but Desktop 1 assignment failed";
    const struct {
        const char* what;
        unsigned state;
        std::function<void(Moved&)> meddle;
        std::string status;
        int moves = 1;
        std::size_t index = 0;  // where it stands in the end
    } cases[] = {
        {"moved", 0, {}, "restored"},
        {"minimized", Moved::minimized, {}, "restored"},
        {"there already", 0, inPlace, "restored", 0},
        {"on all desktops", 0, everywhere, "restored"},
        {"from another display", 0, side, "restored"},
        {"out of full screen", 0, filling, "restored"},
        {"a stack of tabs", Moved::tabs, {}, "restored"},
        {"the tab behind", Moved::tabs, behind, "restored"},
        {"refused", 0, refused, notMoved, 1, 1},
        {"without effect", 0, ignored, notMoved, 1, 1},
        {"no desktops saved", 0, noneKnown, "restored", 0, 1},
        {"saved as full screen", 0, full, "restored", 0, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Moved moved(c.state);
        for (simulated::Window* window : moved.desktop.world().windowsOf(moved.window().application)) {
            moved.desktop.world().move(*window, away);
            ASSERT_TRUE(moved.desktop.world().requestSpace(window->number, moved.desktop.space("main", 1)));
        }
        if (c.meddle) c.meddle(moved);
        EXPECT_EQ(moved.status(), c.status);
        EXPECT_EQ(moved.window().space, moved.desktop.space("main", c.index));
        EXPECT_EQ(moved.desktop.server.moves, c.moves);
        EXPECT_EQ(moved.desktop.world().display("main")->scene.shownDesktop, 1);
    }
}

TEST(DesktopMove, TakesPlaceWhenNothingAnimates) {
    for (const double animates : {1.3, 60.0}) {  // one that goes on is not waited for
        Moved moved;
        simulated::World& world = moved.desktop.world();
        world.requestSpace(moved.number, moved.desktop.space("main", 1));
        const SceneWindow film = sceneWindow("Film", there);
        world.add(fault(fullscreenSlow, "org.a", 0, animates - 0.35));
        world.requestFullscreen(world.openWindow(*world.application("org.a"), film).number, true);
        EXPECT_TRUE(moved.desktop.run(
            DesktopSpaces::move(moved.desktop.seen, moved.number, moved.desktop.space("main", 0), 1s)));
        EXPECT_EQ(moved.desktop.server.moves, 1);
        EXPECT_NEAR(moved.desktop.seconds(), std::min(animates, 2.0), 0.1);
    }
}

}  // namespace
}  // namespace quillo::samples
