// The integrations with applications that answer as the real ones do.
#include <fmt/format.h>

#include <algorithm>

#include "WindowEngine/integrations/Adapters.hpp"
#include "WindowEngine/integrations/AppleScript.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo {
namespace {

using namespace samples;
using Texts = std::vector<std::string>;
using Windows = std::vector<Texts>;  // what each shows, front to back

const std::string finder = "com.apple.finder", chrome = "com.google.Chrome", safari = "com.apple.Safari";

SceneApplication showing(const std::string& identifier, const Windows& windows) {
    SceneApplication application = sceneApplication(identifier);
    for (const Texts& tabs : windows) {
        const double at = 30.0 * static_cast<double>(application.windows.size() + 1);
        SceneWindow& window = application.windows.emplace_back(
            sceneWindow(fmt::format("window {}", application.windows.size()), {at, at, 400, 300}));
        window.tabs = tabs;
    }
    return application;
}

/// Addresses as they are, folders by their paths.
ContextWindow contextWindow(const Texts& texts) {
    ContextWindow window;
    for (const std::string& text : texts)
        window.urls.push_back(text.starts_with('/') ? Url::file(text, true) : Url::parse(text).value());
    return window;
}

AppContext context(const std::string& identifier, const Windows& windows) {
    AppContext context{identifier == finder ? "finder" : identifier == safari ? "safari" : "chromium", {}};
    for (const Texts& texts : windows) context.windows.push_back(contextWindow(texts));
    return context;
}

class Scripted {
  public:
    Scripted(std::string identifier, const Windows& windows, const std::string& other = {})
        : bundle(std::move(identifier)),
          adapter(*Adapters::adapter(bundle, {"finder", "chromium", "safari"})),
          addressed(other.empty() ? bundle : other),
          desktop(withFolder(scene({showing(bundle, windows)}))) {}

    static Scene withFolder(Scene scene) {
        scene.missingFolders = {"/gone"};
        return scene;
    }
    AdapterCaptureResult capture() { return desktop.run(adapter.capture(desktop.access, addressed)); }
    AdapterRestoreResult restore(const AppContext& saved) { return restore(saved, capture().context); }
    AdapterRestoreResult restore(const AppContext& saved, std::optional<AppContext> current) {
        return desktop.run(adapter.restore(desktop.access, saved, std::move(current), addressed));
    }
    Windows windows() {
        Windows result;
        for (const simulated::Window* window : desktop.world().windowsOf(bundle))
            result.push_back(window->state.tabs);
        return result;
    }
    simulated::Window& window(std::size_t index) { return *desktop.world().windowsOf(bundle).at(index); }
    void lay(FaultKind kind, double seconds = 0, double in = 0) {
        desktop.world().add(samples::fault(kind, bundle, desktop.seconds() + in, seconds));
    }

    const std::string bundle;
    const ContextAdapter& adapter;
    const std::string addressed;
    TestDesktop desktop;
};

// -- what goes wrong ----------------------------------------------------------------------------------------

constexpr bool capturing = true, restoring = false;
using Disturbance = void (*)(Scripted&);
constexpr Disturbance refused = [](Scripted& one) { one.lay(FaultKind::automationRefused); };
constexpr Disturbance slow = [](Scripted& one) { one.lay(FaultKind::automationSlow, 30); };
/// For so long that one script after the first look times out, and no other.
constexpr Disturbance hanging = [](Scripted& one) {
    one.lay(FaultKind::applicationHangs, 20.5, one.bundle == chrome ? 0.06 : 0);
};
constexpr Disturbance unidentified = [](Scripted& one) { one.lay(FaultKind::newWindowUnidentified); };
constexpr Disturbance turning = [](Scripted& one) {
    Fault fault = samples::fault(FaultKind::turnsPrivate, one.bundle);
    fault.onScript = true;
    one.desktop.world().add(fault);
};
constexpr Disturbance turned = [](Scripted& one) { one.lay(FaultKind::turnsPrivate); };
/// In words that no verification knows.
constexpr Disturbance foreign = [](Scripted& one) {
    one.desktop.world().application(one.bundle)->scene.language = "de";
};
constexpr Disturbance gone = [](Scripted& one) { one.desktop.world().close(one.window(0).number); };
constexpr Disturbance ended = [](Scripted& one) {
    one.desktop.world().end(*one.desktop.world().application(one.bundle));
};
constexpr Disturbance cancelled = nullptr;

struct Case {
    std::string bundle;
    bool captures;
    Disturbance disturb;  // after the current context was read
    Texts texts;
    Windows saved{};
    std::int64_t opened = 0;
    std::string addressed{};
};

const Texts folderTrouble{"Finder could not reopen a saved folder."},
    tabTrouble{"Browser could not reopen saved tabs."}, safariTrouble{"Safari could not reopen saved tabs."},
    unsupported{"Unsupported Chromium browser."},
    unavailable{"Safari automation was unavailable; no Safari windows were captured."},
    noneVerified{"Safari: no windows could be verified as normal browsing; nothing captured."},
    remainder{"Safari window privacy could not be verified; remaining tabs were skipped."},
    noneReopened{"Safari: no windows could be verified as normal browsing; nothing reopened."},
    someLeftOut{"Safari: private and unverified windows were excluded."};
const Windows newOnes{{"https://n.org", "https://o.org"}}, shared{{"https://a.org", "https://n.org"}},
    newOne{{"https://n.org"}}, two{{"https://n.org"}, {"https://o.org"}},
    twoOfTwo{{"https://n.org", "https://m.org"}, {"https://o.org", "https://p.org"}},
    hostile{{"javascript:alert(1)", "https://n.org"}};

const Case cases[] = {
    {finder, capturing, refused, {"Finder automation was unavailable."}},
    {finder, capturing, slow, {"Finder automation was unavailable."}},
    {finder, capturing, cancelled, {"Finder capture was cancelled."}},
    {finder, restoring, refused, folderTrouble, {{"/n"}}},
    {finder, restoring, hanging, folderTrouble, {{"/n"}, {"/o"}}, 1},
    {finder, restoring, turned, folderTrouble, {{"/gone"}, {"/n"}}, 1},
    {finder, restoring, turned, folderTrouble, {{"https://a.org"}}},
    {finder, restoring, cancelled, {"Finder restore was cancelled."}, {{"/n"}, {"/o"}}},
    {chrome, capturing, refused, {"Browser automation was unavailable."}},
    {chrome, capturing, slow, {"Browser automation was unavailable."}},
    {chrome, capturing, cancelled, {"Browser capture was cancelled."}},
    {chrome, capturing, turned, unsupported, {}, 0, "org.other.Browser"},
    {chrome, restoring, turned, unsupported, newOnes, 0, "org.other.Browser"},
    {chrome, restoring, refused, tabTrouble, newOnes},
    {chrome, restoring, slow, tabTrouble, two},
    {chrome, restoring, hanging, tabTrouble, two, 1},
    {chrome, restoring, unidentified, tabTrouble, newOnes},
    {chrome, restoring, turning, tabTrouble, shared},
    {chrome, restoring, turned, tabTrouble, hostile, 1},
    {chrome, restoring, cancelled, {"Browser restore was cancelled."}, newOnes},
    {safari, capturing, refused, unavailable},
    {safari, capturing, slow, unavailable},
    {safari, capturing, cancelled, unavailable},
    {safari, capturing, turning, someLeftOut},
    {safari, capturing, turned, noneVerified},
    {safari, capturing, ended, noneVerified},
    {safari, restoring, ended, {"Safari is not running."}, newOnes},
    {safari, restoring, refused, safariTrouble, newOnes},
    {safari, restoring, hanging, safariTrouble, two, 1},
    {safari, restoring, unidentified, {"Safari did not identify its new window."}, twoOfTwo, 1},
    {safari, restoring, foreign, remainder, two, 1},
    {safari, restoring, foreign, {}, newOne, 1},
    {safari, restoring, turned, {"Safari window privacy changed; skipped saved tabs."}, shared},
    {safari, restoring, gone, {"Safari window privacy changed; skipped saved tabs."}, shared},
    {safari, restoring, turning, remainder, newOnes, 1},
    {safari, restoring, turned, safariTrouble, hostile, 1},
    {safari, restoring, cancelled, {"Safari restore was cancelled."}, newOnes},
};

/// Stops it in the middle of its first script when there is nothing else that disturbs it.
template <class Result>
Result run(Scripted& scripted, Task<Result> task, bool cancels) {
    if (!cancels) return scripted.desktop.run(std::move(task));
    Job<Result> job(scripted.desktop.executor(), std::move(task));
    scripted.desktop.executor().runFor(20ms);
    job.cancel();
    EXPECT_TRUE(scripted.desktop.executor().runUntil([&] { return job.done(); }, 1s));
    return job.result();
}

TEST(Adapters, SayWhatWentWrong) {
    for (const Case& one : cases) {
        SCOPED_TRACE(one.bundle + (one.captures ? " captures " : " restores ") +
                     testing::PrintToString(one.texts));
        Scripted scripted(one.bundle, {{one.bundle == finder ? "/a" : "https://a.org"}}, one.addressed);
        DesktopAccess& access = scripted.desktop.access;
        const std::optional<AppContext> current = scripted.capture().context;
        if (one.disturb) one.disturb(scripted);
        if (one.captures) {
            const auto result =
                run(scripted, scripted.adapter.capture(access, scripted.addressed), !one.disturb);
            EXPECT_EQ(result.failure ? Texts{*result.failure} : result.notes, one.texts);
            EXPECT_EQ(result.context.has_value(), one.texts == someLeftOut);
            if (result.context) EXPECT_EQ(result.context->windows.size(), 0u);
        } else {
            const auto result = run(
                scripted,
                scripted.adapter.restore(access, context(one.bundle, one.saved), current, scripted.addressed),
                !one.disturb);
            EXPECT_EQ(result.failures, one.texts);
            EXPECT_EQ(result.opened, one.opened);
        }
    }
}

TEST(Adapters, ATabsWindowThatWentIsNotReplacedByAnother) {
    Scripted scripted(chrome, {{"https://a.org"}, {"https://b.org"}});
    scripted.lay(FaultKind::automationSlow, 2);
    Job<AdapterRestoreResult> job(
        scripted.desktop.executor(),
        scripted.adapter.restore(scripted.desktop.access, context(chrome, shared), AppContext{}, chrome));
    scripted.desktop.executor().runFor(3s);  // its windows have been identified
    gone(scripted);
    EXPECT_TRUE(scripted.desktop.executor().runUntil([&] { return job.done(); }, 9s));
    EXPECT_EQ(job.result().failures, tabTrouble);
    EXPECT_EQ(scripted.windows(), Windows{{"https://b.org"}});
}

TEST(Adapters, WhereNobodyKnowsWhatIsOpenABrowserIsLeftAlone) {
    Scripted scripted(chrome, {{"https://a.org"}});
    EXPECT_EQ(scripted.restore(context(chrome, newOnes), std::nullopt).failures, tabTrouble);
    EXPECT_EQ(scripted.windows().size(), 1u);

    for (const Windows& open : {Windows{}, newOne}) {
        Scripted unverified(safari, open);
        foreign(unverified);
        EXPECT_EQ(unverified.restore(context(safari, two)),
                  (open.empty() ? AdapterRestoreResult{1, 1, remainder}
                                : AdapterRestoreResult{0, 0, noneReopened}));
        EXPECT_EQ(unverified.restore(context(safari, two)), (AdapterRestoreResult{0, 0, noneReopened}));
        EXPECT_EQ(unverified.windows(), newOne);
    }
    Scripted silent(safari, newOne);
    silent.lay(FaultKind::automationRefused);
    EXPECT_EQ(silent.restore(context(safari, two)), (AdapterRestoreResult{0, 0, safariTrouble}));
}

TEST(Adapters, AToolbarMayComeAMomentAfterItsWindow) {
    const struct {
        double seconds;
        Windows open;
        AdapterRestoreResult result;
    } toolbars[] = {{0.3, {}, {2, 1, {}}},
                    {0.3, newOne, {1, 0, {}}},
                    {2, {}, {1, 1, remainder}},
                    {2, newOne, {0, 0, noneReopened}}};
    for (const auto& one : toolbars) {
        Scripted scripted(safari, one.open);
        scripted.desktop.meddler.afterRead = [&](auto, Meddler::Answers& answers) {
            if (scripted.desktop.seconds() >= one.seconds) return;
            for (auto& attributes : answers) {
                for (Attribute& attribute : attributes)
                    if (attribute == AttributeValue(std::string("AXToolbar")))
                        attribute = AttributeValue(std::string("AXGroup"));
            }
        };
        EXPECT_EQ(scripted.restore(context(safari, newOnes)), one.result) << one.seconds;
    }
}

/// A person acts right before this request of the scripts; false when they make fewer.
bool personActs(const std::string& bundle, bool captures, FaultKind act, std::int64_t step) {
    const Texts a{"https://a.org"}, b{"https://b.org"}, secret{"https://secret.org"};
    Scripted scripted(bundle, {a, b, secret});
    scripted.window(2).state.privateBrowsing = true;
    const auto current = scripted.capture().context;
    Fault fault = samples::fault(act, bundle);
    if (act != FaultKind::privateWindowOpens)
        fault.title = act == FaultKind::windowRaised ? "window 2" : "window 0";
    fault.onScript = true;
    fault.step = step;
    scripted.desktop.world().add(fault);
    if (captures) {
        for (const ContextWindow& window : scripted.capture().context.value_or(AppContext{}).windows)
            EXPECT_TRUE(window.urls == contextWindow(a).urls || window.urls == contextWindow(b).urls);
    } else {
        const Windows saved = bundle == chrome ? Windows{shared[0], twoOfTwo[1]} : shared;
        const Texts failures = scripted.restore(context(bundle, saved), current).failures;
        if (act != FaultKind::windowVanishes) EXPECT_EQ(failures, Texts{});
    }
    for (const simulated::Window* window : scripted.desktop.world().windowsOf(bundle)) {
        const Texts& tabs = window->state.tabs;
        if (window->state.privateBrowsing) EXPECT_TRUE(tabs.empty() || tabs == secret);
        if (!tabs.empty() && tabs.front() == b.front()) EXPECT_EQ(tabs, b);
    }
    return !scripted.desktop.world().fault(act, bundle, fault.title);
}

TEST(Adapters, WhoeverActsBetweenTwoStepsOfAScriptMixesNothingUp) {
    const std::pair<std::string, bool> ways[] = {
        {chrome, capturing}, {chrome, restoring}, {safari, restoring}};
    for (const auto& [bundle, captures] : ways) {
        for (const FaultKind act :
             {FaultKind::windowRaised, FaultKind::privateWindowOpens, FaultKind::windowVanishes}) {
            std::int64_t step = 1;
            while (!testing::Test::HasFailure() && personActs(bundle, captures, act, step)) ++step;
            EXPECT_GE(step, 3) << bundle << (captures ? " captures" : " restores");
        }
    }
}

TEST(AppleScript, FailsWithItsOwnWords) {
    Scripted scripted(finder, {});
    const auto failure = [&](const std::string& folder) {
        Script script{finder, ScriptRequest::OpenFolder{folder}};
        return scripted.desktop.run(AppleScript::run(scripted.desktop.plain.scripts, std::move(script), 20))
            .error()
            .description;
    };
    EXPECT_EQ(failure("/gone"), "0:0: execution error: File wasn’t found. (-43)") << "trimmed";
    scripted.lay(FaultKind::automationSlow, 20);
    EXPECT_EQ(failure("/a"), "Automation timed out.");
}

// -- what goes well -----------------------------------------------------------------------------------------

TEST(Adapters, RecordWhatWindowsShowAndLeavePrivateOnesOut) {
    Scripted folders(finder, {{"/a b"}, {}, {"file:///c/"}, {"/gone"}});
    AppContext expected = context(finder, {{"/a b/"}, {}, {"/c"}, {}});
    for (std::int64_t i = 0; i < 4; ++i) expected.windows[static_cast<std::size_t>(i)].sourceWindowIndex = i;
    EXPECT_EQ(folders.capture().context, expected);

    Scripted tabs(chrome, {{"https://a.org", "chrome://newtab/"}, {"https://p.org"}, {"chrome://settings/"}});
    tabs.window(1).state.privateBrowsing = true;
    expected = context(chrome, {{"https://a.org"}});
    expected.windows[0].sourceWindowIndex = 0;
    AdapterCaptureResult result = tabs.capture();
    EXPECT_EQ(result.context, expected);
    EXPECT_EQ(result.excludedWindowIndices, std::set<std::int64_t>{1});
    EXPECT_EQ(result.windowCount, 3u);

    Scripted safe(safari, {{"https://a.org", ""}, {"https://p.org"}, {}});
    safe.window(1).state.privateBrowsing = true;
    expected = context(safari, {{"https://a.org"}, {}});
    expected.windows[0].sourceWindowID = safe.window(0).number;
    expected.windows[1].sourceWindowID = safe.window(2).number;
    result = safe.capture();
    EXPECT_EQ(result.context, expected);
    EXPECT_EQ(result.includedWindowIDs, (std::set{safe.window(0).number, safe.window(2).number}));
    EXPECT_EQ(result.notes, someLeftOut);
}

/// All addresses of a saved window are shown by one and the same window that is not private.
bool shown(Scripted& scripted, const ContextWindow& saved) {
    const auto shows = [&](const simulated::Window* window) {
        return !window->state.privateBrowsing && std::ranges::all_of(saved.urls, [&](const Url& url) {
            const std::string text = url.filePath().value_or(url.string());
            return std::ranges::find(window->state.tabs, text) != window->state.tabs.end();
        });
    };
    return std::ranges::any_of(scripted.desktop.world().windowsOf(scripted.bundle), shows);
}

std::string randomTab(Random& random, const std::string& bundle) {
    if (bundle == finder) return fmt::format("/folder {}", random.below(9));
    if (random.below(6) == 0) return bundle == safari ? "" : "chrome://newtab/";
    return fmt::format("https://site{}.org/", random.below(9));
}

Windows randomWindows(Random& random, const std::string& bundle) {
    Windows windows(static_cast<std::size_t>(random.below(5)));
    for (Texts& tabs : windows) {
        const int count = bundle == finder ? 1 : 1 + random.below(4);
        for (int i = 0; i < count; ++i) tabs.push_back(randomTab(random, bundle));
    }
    return windows;
}

/// Some windows go, some show something else, some are private.
void disturb(Scripted& scripted, Random& random) {
    std::vector<WindowNumber> going;
    for (simulated::Window* window : scripted.desktop.world().windowsOf(scripted.bundle)) {
        if (random.below(3) == 0) window->state.tabs.front() = randomTab(random, scripted.bundle);
        if (random.below(4) == 0) window->state.privateBrowsing = scripted.bundle != finder;
        if (random.below(3) == 0) going.push_back(window->number);
    }
    for (const WindowNumber number : going) scripted.desktop.world().close(number);
    // Of windows that are all private Safari opens nothing.
    if (scripted.bundle == safari && !scripted.windows().empty())
        scripted.window(0).state.privateBrowsing = false;
}

TEST(Adapters, BringBackEverythingOnceAndNothingTheSecondTime) {
    for (unsigned seed = 0; seed < 600; ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        const std::string bundle = std::array{finder, chrome, safari}.at(seed % 3);
        Scripted scripted(bundle, randomWindows(random, bundle));
        AppContext saved = scripted.capture().context.value_or(AppContext{});
        disturb(scripted, random);
        const auto isPrivate = [](const simulated::Window& window) { return window.state.privateBrowsing; };
        Windows before, after;
        for (const auto& window : scripted.desktop.world().windows())
            if (isPrivate(window)) before.push_back(window.state.tabs);
        EXPECT_EQ(scripted.restore(saved).failures, Texts{});
        for (const ContextWindow& window : saved.windows) EXPECT_TRUE(shown(scripted, window));
        const Windows restored = scripted.windows();
        EXPECT_EQ(scripted.restore(saved), AdapterRestoreResult{});
        EXPECT_EQ(scripted.windows(), restored);
        for (const auto& window : scripted.desktop.world().windows())
            if (isPrivate(window)) after.push_back(window.state.tabs);
        EXPECT_EQ(after, before);
        if (HasFailure()) return;
    }
}

TEST(Adapters, PathsAndAddressesArriveToTheLetter) {
    const Texts pieces{"\n", " ", "\"", "\\", "é", "日本", "a", "%41", "/x", ".", "|", "#1", "?", "\x7f"};
    Random random(7);
    for (const std::string& bundle : {finder, chrome, safari}) {
        for (int round = 0; round < 20; ++round) {
            Windows saved(1);
            Texts expected;
            for (int i = 0; saved.front().size() < 60; ++i) {
                std::string text = bundle == finder ? "/" : fmt::format("https://h{}.org/", i);
                for (int n = random.below(8); n >= 0; --n) text += random.oneOf(pieces);
                if (bundle != finder && !Url::parse(text)) continue;
                saved.front().push_back(text);
                expected.push_back(bundle == finder ? *Url::file(text).standardized().filePath() : text);
            }
            const bool blank = bundle != finder && round % 2 == 0;
            Scripted scripted(bundle,
                              blank ? Windows{{bundle == safari ? "" : "chrome://newtab/"}} : Windows{});
            if (bundle == finder) {
                std::set<std::string> seen;
                std::erase_if(expected, [&](const std::string& path) { return !seen.insert(path).second; });
            }
            EXPECT_EQ(scripted.restore(context(bundle, saved)).failures, Texts{});
            Texts got;
            for (const Texts& tabs : scripted.windows())
                got.insert(bundle == finder ? got.begin() : got.end(), tabs.begin(), tabs.end());
            EXPECT_EQ(got, expected);
        }
    }
}

TEST(Adapters, APageThatIsNoWebAddressIsNotBlank) {
    for (const std::string& bundle : {chrome, safari}) {
        for (const char* page : {"file:///a.html", "chrome://settings/"}) {
            Scripted scripted(bundle, {{page}});
            EXPECT_EQ(scripted.restore(context(bundle, {{"https://a.org"}})).newWindows, 1);
            EXPECT_EQ(std::ranges::count(scripted.windows(), Texts{page}), 1) << page;
        }
    }
}

TEST(Adapters, ABrowserThatRestoresItsOwnWindowsGetsOnlyWhatIsMissing) {
    SceneApplication browser = showing(chrome, {{"https://a.org"}, {"https://b.org"}});
    browser.reopens = {browser.windows[1]};
    TestDesktop desktop(scene({browser}));
    const ContextAdapter& adapter = *Adapters::named("chromium");
    const auto current = [&] { return desktop.run(adapter.capture(desktop.access, chrome)).context; };
    const AppContext saved = *current();
    desktop.world().end(*desktop.world().application(chrome));
    EXPECT_EQ(current()->windows.size(), 1u) << "asked, it was launched and restored its own window";
    EXPECT_EQ(desktop.run(adapter.restore(desktop.access, saved, current(), chrome)),
              (AdapterRestoreResult{.opened = 1, .newWindows = 1, .failures = {}}));
    EXPECT_EQ(desktop.world().windowsOf(chrome).front()->state.title, "window 0");
}

}  // namespace
}  // namespace quillo
