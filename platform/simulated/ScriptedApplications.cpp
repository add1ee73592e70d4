#include "platform/simulated/ScriptedApplications.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "WindowEngine/integrations/AppleScriptText.hpp"
#include "platform/simulated/ScriptInterpretation.hpp"
#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
namespace {

using Part = Reference::Part;

constexpr std::string_view newTab = "chrome://newtab/";

/// Of Chrome and its kin, to which every browser but Safari belongs here.
bool isChromium(std::string_view application) {
    return application != finder && application != safari;
}

/// The page of a tab that nothing was opened in.
std::string blankPage(std::string_view application) {
    return isChromium(application) ? std::string(newTab) : std::string();
}

Value address(const std::string& text) {
    return text.empty() ? Value{} : Value{text};
}

/// A window without tabs shows one that is blank.
void fillBlank(Window& window) {
    if (window.state.tabs.empty()) window.state.tabs.push_back(blankPage(window.application));
}

/// A browser of Chrome's kin counts its own windows, and has a text for each.
Reference referenceTo(const Window& window) {
    Reference reference{.windows = Reference::Windows::withID};
    if (isChromium(window.application)) {
        reference.identifier = std::to_string(1'600'000'000 + window.number);
    } else {
        reference.identifier = static_cast<std::int64_t>(window.number);
    }
    return reference;
}

[[noreturn]] void cannotGet(std::string_view what) {
    throw ScriptError{fmt::format("Can’t get {}.", what), -1728};
}

}  // namespace

std::vector<Window*> ScriptedApplication::requested() {
    world_.scriptAsks(application_.scene.identifier);
    std::vector<Window*> windows = world_.windowsOf(application_.scene.identifier);
    std::erase_if(windows, [](const Window* window) { return window->state.subrole != ax::standardWindow; });
    return windows;
}

Window& ScriptedApplication::find(const std::vector<Window*>& windows, const Reference& reference) {
    if (reference.windows == Reference::Windows::atPlace) {
        if (reference.place < 1 || std::cmp_greater(reference.place, windows.size()))
            throw ScriptError{"Can’t get item of every window. Invalid index.", -1719};
        return *windows[static_cast<std::size_t>(reference.place - 1)];
    }
    const auto found = std::ranges::find_if(windows, [&](const Window* window) {
        return referenceTo(*window).identifier == reference.identifier;
    });
    if (found != windows.end()) return **found;
    if (reference.windows == Reference::Windows::whoseID)
        throw ScriptError{"Can’t get window. Invalid index.", -1719};
    cannotGet("window id");
}

std::string ScriptedApplication::folderOf(const Window& window) const {
    const auto folder = Url::parse(World::documentOf(window).value_or(""));
    return folder ? folder->standardized().filePath().value_or("") : "";
}

bool ScriptedApplication::saysWhichItIs() const {
    return !world_.fault(FaultKind::newWindowUnidentified, application_.scene.identifier);
}

Value ScriptedApplication::property(const Window& window, Part part, std::string_view name) const {
    const bool chromium = isChromium(window.application), isFinder = window.application == finder;
    if (part == Part::window && name == "id")
        return std::visit([](const auto& identifier) { return Value{identifier}; },
                          referenceTo(window).identifier);
    if (part == Part::window && name == "mode" && chromium)
        return {std::string(window.state.privateBrowsing ? "incognito" : "normal")};
    if (part == Part::window && name == "target" && isFinder) return {folderOf(window)};
    if (part == Part::everyTab && name == "URL" && !isFinder) {
        std::vector<Value> tabs;
        for (const std::string& tab : window.state.tabs) tabs.push_back(address(tab));
        if (tabs.empty()) tabs.push_back(address(blankPage(window.application)));
        return {std::move(tabs)};
    }
    cannotGet(name);
}

std::int64_t ScriptedApplication::count(const Reference& reference) {
    const auto windows = requested();
    if (reference != Reference{}) cannotGet("every window");
    return std::ssize(windows);
}

Value ScriptedApplication::get(const Reference& of, std::string_view name) {
    const auto windows = requested();
    if (of.windows == Reference::Windows::every) {
        std::vector<Value> all;
        for (const Window* window : windows) all.push_back(property(*window, of.part, name));
        return {std::move(all)};
    }
    if (name == "id" && nameless_) return {};
    return property(find(windows, of), of.part, name);
}

Reference ScriptedApplication::resolved(const Reference& reference) {
    return referenceTo(find(requested(), reference));
}

void ScriptedApplication::set(const Reference& of, std::string_view name, const std::string& value) {
    Window& window = find(requested(), of);
    const bool isFinder = window.application == finder;
    const Part tabInFront = isChromium(window.application) ? Part::activeTab : Part::currentTab;
    if (of.part == tabInFront && name == "URL" && !isFinder) {
        fillBlank(window);
        window.state.title = World::pageTitle(application_, value);
    } else if (of.part == Part::window && name == "target" && isFinder) {
        window.state.tabs.resize(1);
        window.state.title = World::documentTitle(Url::file(value, true));
    } else {
        throw ScriptError{fmt::format("Can’t set {}.", name), -10006};
    }
    window.state.tabs.front() = value;  // the list begins with the tab in front
}

Window& ScriptedApplication::open(const std::string& title, const std::string& shown) {
    SceneWindow window = world_.newWindow(application_, title);
    if (!shown.empty()) window.tabs = {shown};
    return world_.openInFront(application_, window);
}

Value ScriptedApplication::make(std::string_view kind, const std::optional<Reference>& at,
                                const std::string& address) {
    const auto windows = requested();
    const std::string& identifier = application_.scene.identifier;
    if (kind == "tab" && at && at->part == Part::everyTab && identifier != finder) {
        Window& window = find(windows, *at);
        fillBlank(window);
        window.state.tabs.push_back(address);  // behind the one in front
        return {*at};
    }
    if (kind == "document" && identifier == safari) {
        open(World::pageTitle(application_, address), address);
        nameless_ = !saysWhichItIs();
        return {std::string("document")};
    }
    if ((kind == "window" && isChromium(identifier)) || (kind == "Finder window" && identifier == finder)) {
        const Window& window = open("", blankPage(identifier));
        return saysWhichItIs() ? Value{referenceTo(window)} : Value{};
    }
    throw ScriptError{fmt::format("Can’t make {}.", kind), -2710};
}

ScriptOutcome scriptFailed(std::string_view message, int number) {
    return {1, {}, fmt::format("0:0: execution error: {} ({})\n", message, number)};
}

ScriptOutcome perform(World& world, Application& application, const Script& script) {
    ScriptedApplication asked(world, application);
    try {
        return {0, interpret(AppleScript::text(script), asked) + "\n", {}};
    } catch (const ScriptError& error) {
        return scriptFailed(error.message, error.number);
    }
}

}  // namespace quillo::simulated
