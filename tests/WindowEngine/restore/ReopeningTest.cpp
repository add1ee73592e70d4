// What a restore does beside its windows: the clean slate, documents, folders and tabs.
#include <gtest/gtest.h>

#include <algorithm>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/restore/CleanSlate.hpp"
#include "WindowEngine/restore/ContextRestore.hpp"
#include "WindowEngine/services/ForwardingApplications.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

constexpr Rect home{100, 100, 600, 400}, second{300, 200, 600, 400};
constexpr const char* chrome = "com.google.Chrome";
constexpr const char* finder = "com.apple.finder";

using Texts = std::vector<std::string>;
using enum FaultKind;

SceneWindow withTabs(SceneWindow window, std::vector<std::string> tabs) {
    window.tabs = std::move(tabs);
    return window;
}

SceneWindow document(const std::string& name, Rect frame) {
    SceneWindow window = sceneWindow(name, frame);
    window.document = "file:///home/ada/" + name;
    return window;
}

// -- clean slate --------------------------------------------------------------------------------------------

TEST(CleanSlate, SparesWhatIsSavedAndWhatIsNobodysToClose) {
    using CleanSlatePolicy::shouldAffect;
    const std::set<std::string> saved{"org.saved"};
    for (const char* spared : {"org.saved", "com.apple.finder", "app.quillo.Quillo", "org.self"})
        EXPECT_FALSE(shouldAffect(spared, true, saved, "org.self")) << spared;
    EXPECT_TRUE(shouldAffect("org.self", true, saved, std::nullopt));
    EXPECT_TRUE(shouldAffect("org.other", true, saved, "org.self"));
    EXPECT_FALSE(shouldAffect("org.other", false, saved, "org.self"));
}

/// A terminal that the program was started from.
class FromTerminal final : public ForwardingApplications {
  public:
    using ForwardingApplications::ForwardingApplications;
    std::vector<std::string> ownIdentifiers() override { return {"org.terminal"}; }
};

TEST(CleanSlate, HidesOrQuitsTheOthersAndSaysWhatBecameOfEach) {
    struct Case {
        std::optional<CleanSlateMode> mode;
        std::optional<FaultKind> fault;
        const char* outcome;
        double least, most;  // seconds of the run
    };
    const char* stays = "failed App is still running; it may need you to save changes";
    const Case cases[] = {
        {{}, {}, nullptr, 0, 2},
        {CleanSlateMode::keep, {}, nullptr, 0, 2},
        {CleanSlateMode::hide, {}, "note Hidden", 0, 2},
        {CleanSlateMode::hide, hideRefused, "failed App refused to hide", 0, 2},
        {CleanSlateMode::quit, {}, "note Quit", 0, 2},
        {CleanSlateMode::quit, quitRefused, stays, 3, 5},
    };
    for (const Case& c : cases) {
        SceneApplication agent = sceneApplication("org.agent");
        agent.policy = ActivationPolicy::accessory;
        TestDesktop desktop(
            scene({sceneApplication("org.saved", {sceneWindow("1", home)}), agent,
                   sceneApplication("org.one", {sceneWindow("2", home)}), sceneApplication("org.terminal"),
                   sceneApplication(finder), sceneApplication("org.two")}));
        WorkspaceSnapshot snapshot = desktop.capture();
        std::erase_if(snapshot.applications, [](const auto& one) { return one.name != "org.saved"; });
        if (c.fault) desktop.world().add(fault(*c.fault));
        FromTerminal applications(desktop.plain.applications);
        DesktopAccess access = desktop.with(applications);
        const RestoreReport report = desktop.restoreThrough(access, snapshot, {.cleanSlate = c.mode});
        Texts expected;
        if (c.outcome)
            expected = {std::string("org.one: ") + c.outcome, std::string("org.two: ") + c.outcome};
        expected.push_back("org.saved/1: restored");
        EXPECT_EQ(texts(report), expected);
        EXPECT_GE(report.duration, c.least);
        EXPECT_LE(report.duration, c.most) << "all are asked at once";
        for (const char* spared : {"org.agent", "org.terminal", finder})
            EXPECT_TRUE(desktop.world().application(spared)->running) << spared;
    }
}

TEST(CleanSlate, LeavesAnEditorThatMustAskAndLosesNothing) {
    SceneApplication editor = sceneApplication("org.editor", {sceneWindow("draft", home)});
    editor.windows[0].unsaved = true;
    TestDesktop desktop(scene({editor}));
    const RestoreReport report = desktop.restore({}, {.cleanSlate = CleanSlateMode::quit});
    EXPECT_EQ(texts(report),
              Texts{"org.editor: failed App is still running; it may need you to save changes"});
    EXPECT_TRUE(desktop.world().window("org.editor", "draft"));
}

// -- documents ----------------------------------------------------------------------------------------------

/// An editor that was saved with these windows, and ended.
struct Closed {
    explicit Closed(std::vector<SceneWindow> windows) : desktop(with(std::move(windows))) {
        snapshot = desktop.capture();
        simulated::Application& editor = *desktop.world().application("org.editor");
        desktop.world().end(editor);
        editor.scene.windows.clear();
    }
    static Scene with(std::vector<SceneWindow> windows) {
        Scene saved = scene({sceneApplication("org.editor", std::move(windows))});
        saved.opensWindows = true;
        return saved;
    }
    TestDesktop desktop;
    WorkspaceSnapshot snapshot;
};

TEST(Documents, ComeBackOnceOrItIsSaidWhyNot) {
    struct Case {
        const char* what;
        std::optional<FaultKind> fault;
        Texts items;
        std::size_t windows;
    };
    const std::string launched = "org.editor: launched", opened = "org.editor: opened";
    const std::string a = "org.editor/a.txt: ", b = "org.editor/b.txt: ", back = "restored";
    const std::string missing = "skipped no matching accessible window";
    const Case cases[] = {
        {"as it should be", {}, {launched, opened, a + back, b + back}, 2},
        {"late", documentLate, {launched, opened, a + back, b + back}, 2},
        {"refused",
         documentRefused,
         {launched, b + "failed document could not be opened", opened, a + back, b + missing},
         1},
        {"ignored",
         documentIgnored,
         {launched, opened, a + back, b + missing, b + "failed document did not appear before timeout"},
         1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Closed closed({document("a.txt", home), document("b.txt", second)});
        auto& [desktop, snapshot] = closed;
        if (c.fault) {
            Fault trouble = fault(*c.fault, "org.editor", 0, 2);
            trouble.title = "b.txt";
            desktop.world().add(trouble);
        }
        EXPECT_EQ(texts(desktop.restore(snapshot)), c.items);
        EXPECT_EQ(desktop.world().windowsOf("org.editor").size(), c.windows);
        if (c.fault && *c.fault != documentLate) continue;
        EXPECT_EQ(texts(desktop.restore(snapshot)), (Texts{a + back, b + back})) << "nothing opens twice";
    }
}

TEST(Documents, ThatWereNotKnownAreSaidToBeMissing) {
    for (const std::string title : {"b.txt", "Untitled"}) {
        Closed closed({document("a.txt", home), sceneWindow(title, second)});
        const RestoreReport report = closed.desktop.restore(closed.snapshot);
        EXPECT_EQ(report.totals().restored, 2) << testing::PrintToString(texts(report));
        EXPECT_EQ(
            std::ranges::count(texts(report),
                               "org.editor/" + title +
                                   ": note what it showed was not known when it was saved, and is not back"),
            title == "b.txt");
    }
}

TEST(Documents, OfAStrangerAreNotRun) {
    for (const char* name : {"Tool.app", "run.command", "start.desktop", "jump.fileloc", "setup.deb"}) {
        TestDesktop desktop(scene({sceneApplication("org.editor", {sceneWindow("other", home)})}));
        WorkspaceSnapshot snapshot = desktop.capture();
        snapshot.applications[0].windows[0].documentURL = Url::file("/home/ada/" + std::string(name));
        snapshot.applications[0].windows[0].title = "bait";
        EXPECT_EQ(
            texts(desktop.restore(snapshot)),
            (Texts{"org.editor/bait: failed document could not be opened: opening it could run a program",
                   "org.editor/bait: restored"}))
            << name;
        EXPECT_EQ(desktop.world().windowsOf("org.editor").size(), 1u);
    }
}

/// As a platform where an application opens an empty window unless documents come with its launch.
class TravellingDocuments final : public ForwardingApplications {
  public:
    using ForwardingApplications::ForwardingApplications;
    bool documentsTravelWithLaunch() override { return true; }
    Task<Result<void>> launch(Url location, std::vector<Url> documents) override {
        launches.push_back(documents.size());
        return ForwardingApplications::launch(std::move(location), std::move(documents));
    }
    std::vector<std::size_t> launches;
};

TEST(Documents, TravelWithTheLaunchWhereThatSparesAnEmptyWindow) {
    Closed closed({document("a.txt", home)});
    TravellingDocuments applications(closed.desktop.plain.applications);
    DesktopAccess access = closed.desktop.with(applications);
    EXPECT_EQ(texts(closed.desktop.restoreThrough(access, closed.snapshot)),
              (Texts{"org.editor: launched", "org.editor: opened", "org.editor/a.txt: restored"}));
    EXPECT_EQ(applications.launches, std::vector<std::size_t>{1});
}

/// Shows what it is launched with in one window, and what it is handed later, where it has tabs, in the
/// window that came last.
class Editor final : public ForwardingApplications {
  public:
    using ForwardingApplications::ForwardingApplications;
    bool documentsTravelWithLaunch() override { return true; }
    DocumentHanding handing(std::string_view, std::span<const Url>) override { return hands; }
    Task<Result<void>> launch(Url location, std::vector<Url> documents) override {
        std::vector<Url> shown{documents.back()};
        if (slow) shown.clear();
        const auto launched = co_await ForwardingApplications::launch(std::move(location), shown);
        if (slow) {
            world->openWindow(*world->application("org.editor"), sceneWindow("Editor", second));
            executor->postAfter(1s, [this, last = documents.back()] { display(last); });
        }
        co_return launched;
    }
    Task<Result<void>> open(std::string identifier, std::vector<Url> documents) override {
        if (!tabs) co_return co_await ForwardingApplications::open(identifier, documents);
        display(documents.front());
        co_return Result<void>();
    }
    simulated::World* world = nullptr;
    Executor* executor = nullptr;
    DocumentHanding hands{};
    bool tabs = false;
    bool slow = false;  // shows an empty window first, and in it what it was launched with

  private:
    void display(const Url& document) {
        SceneWindow& front = world->windowsOf("org.editor").front()->state;
        front.title = simulated::World::documentTitle(document);
        front.document = document.string();
    }
};

TEST(Documents, ComeIntoAWindowEachAsFarAsTheirEditorDoesIt) {
    const struct {
        DocumentHanding hands;
        bool tabs;
        bool slow;
        std::int64_t windows;
        double most;           // seconds
        const char* notes[2];  // about whose documents, of the first run and the second
    } cases[] = {
        {DocumentHanding::together, true, false, 1, 10, {"", "a.txt"}},
        {DocumentHanding::oneByOne, false, false, 2, 6, {"", ""}},
        {DocumentHanding::oneByOne, true, false, 1, 6, {"b.txt", "b.txt"}},
        {DocumentHanding::intoNewWindows, true, false, 2, 6, {"", ""}},
        {DocumentHanding::intoNewWindows, true, true, 2, 6, {"", ""}},
    };
    for (const auto& c : cases) {
        Closed closed({document("a.txt", home), document("b.txt", second)});
        Editor editor(closed.desktop.plain.applications);
        editor.world = &closed.desktop.world();
        editor.executor = &closed.desktop.executor();
        editor.hands = c.hands;
        editor.tabs = c.tabs;
        editor.slow = c.slow;
        DesktopAccess access = closed.desktop.with(editor);
        for (const std::string about : c.notes) {
            const RestoreReport report = closed.desktop.restoreThrough(access, closed.snapshot);
            const std::string note = about + ": note its document is a tab of another window";
            EXPECT_EQ(report.totals().restored, c.windows) << testing::PrintToString(texts(report));
            EXPECT_EQ(std::ranges::count(texts(report), "org.editor/" + note), !about.empty());
            EXPECT_LT(report.duration, c.most);
        }
    }
}

TEST(WindowlessApplication, IsAskedForAWindowOnlyWhenNothingElseBringsOne) {
    struct Case {
        const char* what;
        std::vector<WindowSnapshot> windows;
        std::size_t opened;
    };
    WindowSnapshot withDocument = window(home, "a.txt");
    withDocument.documentURL = Url::file("/home/ada/a.txt");
    const Case cases[] = {
        {"a bare window", {window(home, "1")}, 1},
        {"no window", {}, 0},
        {"a document", {withDocument}, 1},
        {"both", {withDocument, window(home, "1")}, 2},
    };
    for (const Case& c : cases) {
        TestDesktop desktop(scene({sceneApplication("org.editor")}));
        WorkspaceSnapshot snapshot;
        snapshot.displays = Displays::current(desktop.plain.screens);
        snapshot.applications = {{"org.editor", "Editor", {}, c.windows, {}}};
        desktop.restore(snapshot);
        EXPECT_EQ(desktop.world().windowsOf("org.editor").size(), c.opened) << c.what;
    }
}

// -- folders and tabs ---------------------------------------------------------------------------------------

Scene integrated() {
    return scene({sceneApplication(chrome, {withTabs(sceneWindow("News", home), {"https://news.example/"}),
                                            withTabs(sceneWindow("Mail", second),
                                                     {"https://mail.example/", "https://work.example/x"})}),
                  sceneApplication(finder, {withTabs(sceneWindow("Papers", home), {"/home/ada/Papers/"})})});
}
const std::set<std::string> all{"finder", "chromium", "safari"};

TEST(Context, WaitsForWhatAnApplicationBringsBackItself) {
    Scene both = integrated();
    for (SceneWindow& window : both.applications[0].windows) window.opensAfter = 2;
    TestDesktop desktop(both);
    desktop.executor().runFor(3s);
    const WorkspaceSnapshot snapshot = desktop.capture({.enabledAdapters = all});
    desktop.world().end(*desktop.world().application(chrome));
    const RestoreReport report = desktop.restore(snapshot, {.enabledAdapters = all});
    EXPECT_EQ(report.totals().opened, 0) << testing::PrintToString(texts(report));
    EXPECT_EQ(desktop.world().windowsOf(chrome).size(), 2u);
}

TEST(Context, OfAnIntegrationThatIsOffOrUnknownIsNoted) {
    TestDesktop desktop(integrated());
    WorkspaceSnapshot snapshot = desktop.capture({.enabledAdapters = all});
    for (auto& application : snapshot.applications) {
        if (application.name == chrome) application.context->adapter = "unheard-of";
    }
    const Texts items = texts(desktop.restore(snapshot));
    const std::string off = " integration is disabled or unavailable";
    for (const std::string& note :
         {"com.apple.finder: note Finder" + off, "com.google.Chrome: note The saved" + off})
        EXPECT_EQ(std::ranges::count(items, note), 1) << testing::PrintToString(items);
}

TEST(Context, TroubleIsReportedAndHoldsUpNothingElse) {
    TestDesktop desktop(integrated());
    const WorkspaceSnapshot snapshot = desktop.capture({.enabledAdapters = all});
    desktop.world().end(*desktop.world().application(chrome));
    desktop.world().add(fault(automationRefused, chrome));
    desktop.world().add(fault(automationSlow, finder, 0, 60));
    const RestoreReport report = desktop.restore(snapshot, {.enabledAdapters = all});
    const Texts items = texts(report);
    EXPECT_EQ(std::ranges::count(items, "com.google.Chrome: failed Browser could not reopen saved tabs."), 1);
    EXPECT_EQ(report.totals().restored, 3) << testing::PrintToString(items);
    EXPECT_LT(report.duration, 70);
}

TEST(Context, OfACaptureHoldsNothingPrivateAndNothingExcluded) {
    Scene with = integrated();
    with.applications[0].windows[1].privateBrowsing = true;
    with.applications[0].windows.push_back(withTabs(sceneWindow("Bank", home), {"https://my.bank.example/"}));
    with.applications[0].windows[2].document = "https://my.bank.example/";
    const auto written = [](TestDesktop& desktop) {
        return WorkspaceCoding::encode(
                   desktop.capture({.excludedDomains = {"bank.example"}, .enabledAdapters = all}))
            .value();
    };
    TestDesktop desktop(with);
    const std::string bytes = written(desktop);
    for (const char* secret : {"Mail", "mail.example", "work.example", "bank.example"})
        EXPECT_FALSE(bytes.contains(secret)) << secret;
    EXPECT_TRUE(bytes.contains("News"));

    // A window on a desktop that is not in front is in the browser's list and not in ours: which one is
    // private cannot be told, and no title stays.
    with.applications[0].windows[2].desktop = 1;
    TestDesktop apart(with);
    const std::string careful = written(apart);
    for (const char* secret : {"Mail", "mail.example", "Bank"}) EXPECT_FALSE(careful.contains(secret));
    EXPECT_TRUE(careful.contains("private windows could not be told apart"));
    EXPECT_TRUE(careful.contains("news.example"));
}

TEST(Context, ThatFailsAtCaptureLeavesTheWindowsAndANote) {
    TestDesktop desktop(integrated());
    desktop.world().add(fault(automationRefused));
    const WorkspaceSnapshot snapshot = desktop.capture({.enabledAdapters = all});
    EXPECT_EQ(snapshot.windowCount(), 3);
    EXPECT_EQ(snapshot.notes, (Texts{"com.google.Chrome: Browser automation was unavailable.",
                                     "com.apple.finder: Finder automation was unavailable."}));
    EXPECT_EQ(desktop.simulated->logLines()[0],
              "capture error: adapter chromium failed: Browser automation was unavailable.");
}

}  // namespace
}  // namespace quillo::samples
