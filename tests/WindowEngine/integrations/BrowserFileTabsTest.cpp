// Browsers that no script speaks to: their files are some seconds behind, and their commands open more.
#include <fmt/format.h>

#include <algorithm>

#include "WindowEngine/integrations/BrowserCommands.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "platform/linux/NoScripts.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo {
namespace {

using namespace samples;
using Texts = std::vector<std::string>;

const std::string chromium = "chromium", firefox = "firefox";
const std::set<std::string> both{"chromium", "firefox"};

SceneWindow page(std::string title, Texts tabs, bool isPrivate = false) {
    SceneWindow window = sceneWindow(std::move(title), {40, 60, 600, 400});
    window.tabs = std::move(tabs);
    window.privateBrowsing = isPrivate;
    return window;
}

class Browsing {
  public:
    Browsing(std::string identifier, std::vector<SceneWindow> windows, std::vector<SceneWindow> reopens = {})
        : bundle(std::move(identifier)), desktop(sceneOf(bundle, std::move(windows), std::move(reopens))) {}

    static Scene sceneOf(const std::string& bundle, std::vector<SceneWindow> windows,
                         std::vector<SceneWindow> reopens) {
        SceneApplication browser = sceneApplication(bundle, std::move(windows));
        browser.reopens = std::move(reopens);
        return scene({browser});
    }
    WorkspaceSnapshot capture(std::set<std::string> excludedDomains = {}) {
        return desktop.run(Capture::snapshot(
            access, {.excludedDomains = std::move(excludedDomains), .enabledAdapters = both}));
    }
    Texts restore(const WorkspaceSnapshot& saved) {
        const RestoreReport report = desktop.restoreThrough(access, saved, {.enabledAdapters = both});
        Texts lines;
        for (const auto& item : report.items) {
            const auto count = detailOf(item.status).count;
            if (!item.title && !item.savedIndex)
                lines.push_back(samples::text(item.status) + (count ? fmt::format(" {}", *count) : ""));
        }
        return lines;
    }
    /// In the order in which they were made.
    std::vector<Texts> open() {
        auto windows = desktop.world().windowsOf(bundle);
        std::ranges::sort(windows, {}, &simulated::Window::number);
        std::vector<Texts> tabs;
        for (const auto* window : windows) tabs.push_back(window->state.tabs);
        return tabs;
    }
    simulated::Window& window(std::string_view title) { return *desktop.world().window(bundle, title); }
    void openInFront(const SceneWindow& window) {
        desktop.world().openInFront(*desktop.world().application(bundle), window);
    }
    void lay(FaultKind kind, double seconds = 0) {
        desktop.world().add(samples::fault(kind, bundle, desktop.seconds(), seconds));
    }
    /// Until all that is open now is written: the simulated files begin to be behind at the first look.
    void settle() {
        capture();
        desktop.executor().runFor(20s);
    }

    const std::string bundle;
    TestDesktop desktop;
    NoScripts scripts;
    DesktopAccess access{{desktop.plain.executor, desktop.plain.accessibility, desktop.plain.windowServer,
                          desktop.plain.applications, desktop.plain.screens, scripts,
                          desktop.plain.browserFiles, desktop.plain.log},
                         desktop.handles};
};

const Texts a{"https://a.org/1", "https://a.org/2"}, b{"https://b.org/"}, c{"https://c.org/"};

Texts titles(const WorkspaceSnapshot& saved) {
    Texts all;
    for (const auto& window : saved.applications.at(0).windows) all.push_back(window.title.value_or("-"));
    return all;
}
std::vector<Texts> saved(const WorkspaceSnapshot& snapshot) {
    std::vector<Texts> all;
    for (const auto& window : snapshot.applications.at(0).context.value_or(AppContext{}).windows) {
        all.emplace_back();
        for (const Url& url : window.urls) all.back().push_back(url.string());
    }
    return all;
}

TEST(BrowserFileTabs, NoWordOfAPrivateWindowIsSaved) {
    for (const std::string& bundle : {chromium, firefox}) {
        Browsing one(bundle, {page("A", a), page("Secret", {"https://secret.org/"}, true), page("B", b)});
        const WorkspaceSnapshot snapshot = one.capture();
        EXPECT_EQ(titles(snapshot), (Texts{"A", "-", "B"}));
        EXPECT_EQ(saved(snapshot), (std::vector<Texts>{a, b}));
        const auto& windows = snapshot.applications[0].context->windows;
        EXPECT_EQ(windows.at(1).sourceWindowIndex, 2);
        EXPECT_EQ(windows.at(1).profile, "Default");
        EXPECT_EQ(snapshot.notes, (Texts{bundle + ": titles of windows that may be private were left out."}));
        const std::string document = WorkspaceCoding::encode(snapshot).value();
        EXPECT_FALSE(document.contains("ecret")) << document;
        for (const std::string& line : one.desktop.simulated->logLines())
            EXPECT_FALSE(line.contains("ecret") || line.contains("a.org")) << line;
        EXPECT_EQ(saved(one.capture({"a.org"})), std::vector<Texts>{b});
    }
}

TEST(BrowserFileTabs, AFileThatIsBehindIsGivenTheTimeThatItsBrowserNeeds) {
    Browsing quick(chromium, {page("A", a)}), slow(firefox, {page("A", a)});
    EXPECT_EQ(saved(quick.capture()), std::vector<Texts>{a});
    EXPECT_LT(quick.desktop.seconds(), 1) << "waited for what was settled";
    slow.capture();
    for (Browsing* one : {&quick, &slow}) one->openInFront(page("B", b));
    EXPECT_EQ(saved(quick.capture()), (std::vector<Texts>{a, b}));
    EXPECT_EQ(titles(slow.capture()), (Texts{"-", "A"})) << "too new to be told from a private one";
    slow.desktop.executor().runFor(17s);
    EXPECT_EQ(saved(slow.capture()), (std::vector<Texts>{a, b}));
}

TEST(BrowserFileTabs, OnlyWhatIsNotOpenIsOpened) {
    for (const std::string& bundle : {chromium, firefox}) {
        Browsing one(bundle, {page("A", a), page("B", b), page("Long", {})});
        for (int i = 0; i < 60; ++i)
            one.window("Long").state.tabs.push_back(fmt::format("https://c.org/{}/{:0>2000}", i, 0));
        const Texts many = one.window("Long").state.tabs;
        const WorkspaceSnapshot snapshot = one.capture();
        one.desktop.world().close(one.window("Long").number);
        one.window("A").state.tabs.pop_back();
        one.openInFront(page("Secret", {"https://secret.org/"}, true));
        one.settle();
        EXPECT_EQ(one.restore(snapshot), Texts{"opened 61"});
        EXPECT_EQ(one.open(), (std::vector<Texts>{a, b, {"https://secret.org/"}, many}));
        one.settle();
        EXPECT_EQ(one.restore(snapshot), Texts{});
        EXPECT_EQ(one.open().size(), 4u);
    }
}

TEST(BrowserFileTabs, ABrowserThatRestoresItsOwnWindowsGetsOnlyWhatIsMissing) {
    for (const std::string& bundle : {chromium, firefox}) {
        Browsing one(bundle, {page("A", a), page("B", b)}, {page("A", a)});
        const WorkspaceSnapshot snapshot = one.capture();
        one.desktop.world().end(*one.desktop.world().application(bundle));
        const double started = one.desktop.seconds();
        EXPECT_EQ(one.restore(snapshot), (Texts{"launched", "opened 1"}));
        EXPECT_EQ(one.open(), (std::vector<Texts>{a, b}));
        EXPECT_GE(one.desktop.seconds() - started, bundle == firefox ? 17 : 2.5)
            << "it had not said what it has";
    }
}

TEST(BrowserFileTabs, WhereItCannotBeToldWhatIsOpenNothingIs) {
    const struct {
        FaultKind kind;
        double seconds;
        std::string note;
    } cases[] = {{FaultKind::automationRefused, 0, "its session file is encrypted."},
                 {FaultKind::automationSlow, 30, "its session file cannot be read in time."}};
    for (const auto& each : cases) {
        Browsing one(firefox, {page("A", a), page("B", b)});
        const WorkspaceSnapshot snapshot = one.capture();
        one.desktop.world().close(one.window("B").number);
        one.lay(each.kind, each.seconds);
        const WorkspaceSnapshot blind = one.capture();
        EXPECT_EQ(titles(blind), Texts{"-"});
        EXPECT_TRUE(saved(blind).empty());
        EXPECT_TRUE(blind.notes->back().ends_with(each.note)) << blind.notes->back();
        EXPECT_EQ(one.restore(snapshot), Texts{"failed Browser could not reopen saved tabs."});
        EXPECT_EQ(one.open(), std::vector<Texts>{a});
    }
    Browsing deaf(chromium, {page("A", a), page("B", b)});
    const WorkspaceSnapshot snapshot = deaf.capture();
    deaf.desktop.world().close(deaf.window("B").number);
    deaf.lay(FaultKind::launchRefused);
    EXPECT_EQ(deaf.restore(snapshot), Texts{"failed Browser could not reopen saved tabs."});
}

TEST(BrowserCommands, AreWhatEachFamilyUnderstands) {
    const BrowserProfile profile{.name = "P", .arguments = {"--in=P"}};
    const std::vector<Url> urls{Url::parse(a[0]).value(), Url::parse(a[1]).value()};
    const auto one = std::span(urls).first(1);
    namespace Commands = BrowserCommands;
    EXPECT_EQ(Commands::newWindow(profile, BrowserFamily::chromium, urls),
              (Texts{"--in=P", "--new-window", a[0], a[1]}));
    EXPECT_EQ(Commands::newWindow(profile, BrowserFamily::firefox, urls), (Texts{"--in=P", a[0], a[1]}));
    EXPECT_EQ(Commands::newWindow(profile, BrowserFamily::firefox, one),
              (Texts{"--in=P", "--new-window", a[0]}));
    EXPECT_EQ(Commands::moreTabs(profile, BrowserFamily::chromium, urls), (Texts{"--in=P", a[0], a[1]}));
    EXPECT_EQ(Commands::moreTabs(profile, BrowserFamily::firefox, urls),
              (Texts{"--in=P", "--new-tab", a[0], "--new-tab", a[1]}));
    std::vector<Url> longOnes(3, Url::parse("https://a.org/" + std::string(10'000, 'a')).value());
    EXPECT_EQ(Commands::portions(longOnes, BrowserFamily::chromium).size(), 3u);
    EXPECT_EQ(Commands::portions(longOnes, BrowserFamily::firefox).size(), 1u);
    longOnes.push_back(Url::parse("https://a.org/" + std::string(70'000, 'a')).value());
    EXPECT_EQ(Commands::dropTooLong(longOnes, BrowserFamily::firefox), 1u);
}

}  // namespace
}  // namespace quillo
