#include "platform/simulated/ScriptedApplications.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <functional>
#include <ranges>
#include <utility>

#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
namespace {

using namespace ScriptRequest;

constexpr std::string_view newTab = "chrome://newtab/";

/// What an interpreter prints of a result.
ScriptOutcome printed(std::string_view text) {
    return {0, fmt::format("{}\n", text), {}};
}

/// A browser's own identifier of a window: no number of the window server.
std::string chromiumID(const Window& window) {
    return std::to_string(1'600'000'000 + window.number);
}

/// The addresses of a window's tabs as a script joins them; `blank` where there is none.
std::string addresses(const Window& window, std::string_view blank) {
    std::vector<std::string> tabs = window.state.tabs;
    if (tabs.empty()) tabs.emplace_back(blank);
    for (std::string& address : tabs)
        if (address.empty()) address = "missing value";
    return fmt::format("{}", fmt::join(tabs, "\t"));
}

/// What the application does with each request.
struct Answering {
    World& world;
    Application& application;

    ScriptOutcome operator()(const ListFolders&) const {
        std::vector<std::string> rows;
        for (const Window* window : windows()) {
            const auto folder = Url::parse(World::documentOf(*window).value_or(""));
            std::string path = folder ? folder->standardized().filePath().value_or("") : "";
            const bool there = !path.empty() && world.folderExists(path);
            if (there && !path.ends_with('/')) path += '/';
            rows.push_back(there ? std::move(path) : "");
        }
        return printed(fmt::format("{}", fmt::join(rows, "\n")));
    }
    ScriptOutcome operator()(const OpenFolder& asked) const {
        if (!world.folderExists(asked.path)) return scriptFailed("execution error: File wasn’t found.", -43);
        SceneWindow window = world.newWindow(application, World::documentTitle(Url::file(asked.path, true)));
        window.tabs = {asked.path};
        world.openInFront(application, window);
        return printed("folder");
    }

    ScriptOutcome operator()(const ListTabs& asked) const {
        std::vector<std::string> rows;
        for (const Window* window : windows()) {
            if (window->state.privateBrowsing) {
                rows.emplace_back(privateMarker);
            } else {
                rows.push_back((asked.identified ? chromiumID(*window) + "\t" : "") +
                               addresses(*window, newTab));
            }
        }
        return printed(fmt::format("{}", fmt::join(rows, "\n")));
    }
    ScriptOutcome operator()(const NewWindow& asked) const {
        const Window& window = newBrowserWindow(asked.first);
        return saysWhichItIs() ? printed(chromiumID(window)) : printed("");
    }
    ScriptOutcome operator()(const OpenTabs& asked) const {
        Window* window = find(asked.window, chromiumID);
        if (!window) return scriptFailed("execution error: the window is gone", -2700);
        if (window->state.privateBrowsing)
            return scriptFailed("execution error: the window is private", -2700);
        openTabs(*window, asked.urls, asked.intoActiveTab, newTab);
        return {};
    }

    ScriptOutcome operator()(const ListSafariTabs& asked) const {
        std::vector<std::string> rows;
        for (const Window* window : windows()) {
            if (asked.allowed.contains(window->number))
                rows.push_back(std::to_string(window->number) + "\t" + addresses(*window, ""));
        }
        return printed(fmt::format("{}", fmt::join(rows, "\n")));
    }
    ScriptOutcome operator()(const NewSafariWindow& asked) const {
        const Window& window = newBrowserWindow(asked.first);
        return saysWhichItIs() ? printed(std::to_string(window.number)) : ScriptOutcome{};
    }
    ScriptOutcome operator()(const OpenSafariTabs& asked) const {
        Window* window = find(asked.window, &Window::number);
        if (!window)
            return scriptFailed("execution error: Safari got an error: Can’t get window. Invalid index.",
                                -1719);
        openTabs(*window, asked.urls, asked.intoCurrentTab, "");
        return printed("tab");
    }

  private:
    /// All windows that its script terms count, on whatever desktop, front to back.
    std::vector<Window*> windows() const {
        std::vector<Window*> result = world.windowsOf(application.scene.identifier);
        std::erase_if(result,
                      [](const Window* window) { return window->state.subrole != ax::standardWindow; });
        return result;
    }
    Window* find(const auto& identifier, auto identifierOf) const {
        const auto all = windows();
        const auto found = std::ranges::find_if(
            all, [&](const Window* window) { return std::invoke(identifierOf, *window) == identifier; });
        return found == all.end() ? nullptr : *found;
    }
    bool saysWhichItIs() const {
        return !world.fault(FaultKind::newWindowUnidentified, application.scene.identifier);
    }
    Window& newBrowserWindow(const Url& first) const {
        SceneWindow window = world.newWindow(application, World::pageTitle(application, first.string()));
        window.tabs = {first.string()};
        return world.openInFront(application, window);
    }
    /// The tab in front is the first of the list; new ones open behind it.
    void openTabs(Window& window, const std::vector<Url>& urls, bool intoTabInFront,
                  std::string_view blank) const {
        if (window.state.tabs.empty()) window.state.tabs.emplace_back(blank);
        if (intoTabInFront) {
            window.state.tabs.front() = urls.front().string();
            window.state.title = World::pageTitle(application, urls.front().string());
        }
        for (const Url& url : urls | std::views::drop(intoTabInFront ? 1 : 0))
            window.state.tabs.push_back(url.string());
    }
};

}  // namespace

ScriptOutcome scriptFailed(std::string_view message, int number) {
    return {1, {}, fmt::format("0:0: {} ({})\n", message, number)};
}

ScriptOutcome perform(World& world, Application& application, const Script& script) {
    return std::visit(Answering{world, application}, script.request);
}

}  // namespace quillo::simulated
