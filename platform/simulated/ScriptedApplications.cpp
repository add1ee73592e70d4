#include "platform/simulated/ScriptedApplications.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
namespace {

using Kind = Script::Kind;

enum class Family { finder, chromium, safari };

struct Scripted {
    std::string_view name, identifier;
    Family family;
};

constexpr std::array<Scripted, 6> scripted{{
    {"Finder", finder, Family::finder},
    {"Safari", safari, Family::safari},
    {"Google Chrome", "com.google.Chrome", Family::chromium},
    {"Brave Browser", "com.brave.Browser", Family::chromium},
    {"Microsoft Edge", "com.microsoft.edgemac", Family::chromium},
    {"Arc", "company.thebrowser.Browser", Family::chromium},
}};

Family familyOf(Kind kind) {
    switch (kind) {
        case Kind::listFolders:
        case Kind::openFolder:
            return Family::finder;
        case Kind::listTabs:
        case Kind::identifyTabs:
        case Kind::newWindow:
        case Kind::openTabs:
            return Family::chromium;
        default:
            return Family::safari;
    }
}

constexpr std::string_view newTab = "chrome://newtab/";

/// What an interpreter prints of a result.
ScriptOutcome printed(std::string_view text) {
    return {0, fmt::format("{}\n", text), {}};
}

struct Answering {
    World& world;
    Application& application;
    const Script& script;

    /// All windows that its script terms count, on whatever desktop, front to back.
    std::vector<Window*> windows() const {
        std::vector<Window*> result = world.windowsOf(application.scene.identifier);
        std::erase_if(result,
                      [](const Window* window) { return window->state.subrole != ax::standardWindow; });
        return result;
    }
    Window& newBrowserWindow(std::vector<std::string> tabs) const {
        SceneWindow window =
            world.newWindow(application, World::pageTitle(application, tabs.empty() ? "" : tabs.front()));
        window.tabs = std::move(tabs);
        return world.openInFront(application, window);
    }
    /// The tab in front is the first of the list; new ones open behind it.
    void show(Window& window, const std::string& address) const {
        if (window.state.tabs.empty()) window.state.tabs.emplace_back();
        window.state.tabs.front() = address;
        window.state.title = World::pageTitle(application, address);
    }
    /// The first address into the tab in front, where the script says so, and a tab for each of the others.
    void openTabs(Window& window) const {
        if (window.state.tabs.empty()) window.state.tabs.emplace_back(blank());
        if (const auto first = script.values("first"); !first.empty()) show(window, first.front());
        for (std::string& address : script.values("next")) window.state.tabs.push_back(std::move(address));
    }
    std::string blank() const { return std::string(familyOf(script.kind) == Family::chromium ? newTab : ""); }
    /// The addresses of a window's tabs as a script joins them.
    std::string addresses(const Window& window) const {
        std::vector<std::string> tabs = window.state.tabs;
        if (tabs.empty()) tabs.push_back(blank());
        for (std::string& address : tabs)
            if (address.empty()) address = "missing value";
        return fmt::format("{}", fmt::join(tabs, "\t"));
    }
};

// -- Finder -------------------------------------------------------------------------------------------------

ScriptOutcome listFolders(const Answering& finder) {
    std::vector<std::string> rows;
    for (const Window* window : finder.windows()) {
        const auto folder = Url::parse(World::documentOf(*window).value_or(""));
        std::string path = folder ? folder->standardized().filePath().value_or("") : "";
        const bool there = !path.empty() && finder.world.folderExists(path);
        if (there && !path.ends_with('/')) path += '/';
        rows.push_back(there ? std::move(path) : "");
    }
    return printed(fmt::format("{}", fmt::join(rows, "\n")));
}

ScriptOutcome openFolder(const Answering& finder) {
    const std::string path = finder.script.value("folder");
    if (!finder.world.folderExists(path)) return scriptFailed("execution error: File wasn’t found.", -43);
    const Url folder = Url::file(path, true);
    SceneWindow window = finder.world.newWindow(finder.application, World::documentTitle(folder));
    window.tabs = {path};
    finder.world.openInFront(finder.application, window);
    return printed("folder");
}

// -- Chromium -----------------------------------------------------------------------------------------------

/// A browser's own identifier of a window: no number of the window server.
std::string chromiumID(const Window& window) {
    return std::to_string(1'600'000'000 + window.number);
}

ScriptOutcome listTabs(const Answering& browser) {
    std::vector<std::string> rows;
    for (const Window* window : browser.windows()) {
        if (window->state.privateBrowsing) {
            rows.push_back(browser.script.value("marker"));
        } else if (browser.script.kind == Kind::identifyTabs) {
            rows.push_back(chromiumID(*window) + "\t" + browser.addresses(*window));
        } else {
            rows.push_back(browser.addresses(*window));
        }
    }
    return printed(fmt::format("{}", fmt::join(rows, "\n")));
}

ScriptOutcome newWindow(const Answering& browser) {
    Window& window = browser.newBrowserWindow({std::string(newTab)});
    browser.show(window, browser.script.value("first"));
    const bool silent = browser.world.fault(FaultKind::newWindowUnidentified, window.application) != nullptr;
    return printed(silent ? "" : chromiumID(window));
}

ScriptOutcome openChromiumTabs(const Answering& browser) {
    const auto windows = browser.windows();
    const auto found = std::ranges::find(windows, browser.script.value("window"),
                                         [](const Window* window) { return chromiumID(*window); });
    if (found == windows.end()) return scriptFailed("execution error: the window is gone", -2700);
    if ((*found)->state.privateBrowsing) return scriptFailed("execution error: the window is private", -2700);
    browser.openTabs(**found);
    return {};
}

// -- Safari -------------------------------------------------------------------------------------------------

ScriptOutcome listSafariTabs(const Answering& browser) {
    const auto allowed = browser.script.values("allowed");
    std::vector<std::string> rows;
    for (const Window* window : browser.windows()) {
        const std::string number = std::to_string(window->number);
        if (std::ranges::find(allowed, number) != allowed.end())
            rows.push_back(number + "\t" + browser.addresses(*window));
    }
    return printed(fmt::format("{}", fmt::join(rows, "\n")));
}

ScriptOutcome newSafariWindow(const Answering& browser) {
    const Window& window = browser.newBrowserWindow({browser.script.value("first")});
    const bool silent = browser.world.fault(FaultKind::newWindowUnidentified, window.application) != nullptr;
    return silent ? ScriptOutcome{} : printed(std::to_string(window.number));
}

ScriptOutcome openSafariTabs(const Answering& browser) {
    const auto windows = browser.windows();
    const auto found = std::ranges::find(windows, browser.script.value("window"),
                                         [](const Window* window) { return std::to_string(window->number); });
    if (found == windows.end())
        return scriptFailed("execution error: Safari got an error: Can’t get window. Invalid index.", -1719);
    browser.openTabs(**found);
    return printed("tab");
}

}  // namespace

ScriptOutcome scriptFailed(std::string_view message, int number) {
    return {1, {}, fmt::format("0:0: {} ({})\n", message, number)};
}

std::optional<std::string_view> addressee(const Script& script) {
    const auto found = std::ranges::find(scripted, script.value("application"), &Scripted::name);
    if (found == scripted.end() || found->family != familyOf(script.kind)) return std::nullopt;
    return found->identifier;
}

ScriptOutcome perform(World& world, Application& application, const Script& script) {
    const Answering answering{world, application, script};
    switch (script.kind) {
        case Kind::listFolders:
            return listFolders(answering);
        case Kind::openFolder:
            return openFolder(answering);
        case Kind::listTabs:
        case Kind::identifyTabs:
            return listTabs(answering);
        case Kind::newWindow:
            return newWindow(answering);
        case Kind::openTabs:
            return openChromiumTabs(answering);
        case Kind::listSafariTabs:
            return listSafariTabs(answering);
        case Kind::newSafariWindow:
            return newSafariWindow(answering);
        case Kind::openSafariTabs:
            return openSafariTabs(answering);
    }
    return scriptFailed("execution error: not understood", -1708);
}

}  // namespace quillo::simulated
