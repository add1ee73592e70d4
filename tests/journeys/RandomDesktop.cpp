#include "tests/journeys/RandomDesktop.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace quillo {

using namespace simulated;

Rect RandomDesktop::frameOn(const Rect& bounds) {
    const auto width = static_cast<double>(number(120, static_cast<std::int64_t>(bounds.width * 0.8)));
    const auto height = static_cast<double>(number(100, static_cast<std::int64_t>(bounds.height * 0.8)));
    const auto x = static_cast<double>(number(0, static_cast<std::int64_t>(bounds.width - width)));
    const auto y = static_cast<double>(number(0, static_cast<std::int64_t>(bounds.height - height)));
    return {bounds.x + x, bounds.y + y, width, height};
}

SceneWindow RandomDesktop::window(const Scene& scene, std::string title) {
    const SceneDisplay& display = scene.displays[static_cast<std::size_t>(
        number(0, static_cast<std::int64_t>(scene.displays.size()) - 1))];
    SceneWindow window;
    window.title = std::move(title);
    window.frame = frameOn(display.visibleFrame);
    window.minimized = chance(15);
    window.fullscreen = !window.minimized && chance(10);
    window.desktop = number(0, display.desktops - 1);
    // A dialog on a desktop that is not shown is not seen at all, and may later be taken for a window that
    // went.
    if (window.desktop == 0 && chance(10)) window.subrole = "AXDialog";
    if (chance(15)) window.cell = {6, 13};
    if (chance(30)) window.opensAfter = static_cast<double>(number(0, 8)) / 10;
    return window;
}

SceneApplication RandomDesktop::application(const Scene& scene, std::int64_t index) {
    SceneApplication application;
    application.identifier = fmt::format("org.example.app{}", index);
    application.name = fmt::format("App {}", index);
    application.launchSeconds = static_cast<double>(number(0, 20)) / 10;
    for (std::int64_t i = number(0, 8); i > 0; --i)
        application.windows.push_back(window(scene, fmt::format("Window {} of {}", i, index)));
    if (application.windows.empty()) return application;
    if (chance(20)) {
        addTabs(application);
    } else if (chance(30)) {
        addDocuments(application);
        return application;
    }
    // Without a title only where nothing else could be taken for it: pairing goes by the order in which
    // accessibility lists windows then, and that changes when one is minimized or leaves the desktop in
    // front.
    if (application.windows.size() == 1 && chance(50)) application.windows.front().title.reset();
    return application;
}

/// A terminal with one window of several tabs: capture folds them into one. No other window beside it: one
/// that was closed could be paired with a tab behind, and moving that moves the whole window.
void RandomDesktop::addTabs(SceneApplication& application) {
    application.identifier = "com.apple.Terminal";
    application.name = "Terminal";
    application.windows.resize(1);
    SceneWindow tab = application.windows.front();
    application.windows.front().tabGroup = tab.tabGroup = "tabs";
    for (std::int64_t i = number(1, 3); i > 0; --i) {
        tab.title = fmt::format("Tab {}", i);
        application.windows.push_back(tab);
    }
}

void RandomDesktop::addDocuments(SceneApplication& application) {
    for (SceneWindow& window : application.windows) {
        if (chance(25)) continue;
        window.subrole = "AXStandardWindow";
        window.title = *window.title + ".txt";
        window.document = Url::file("/home/ada/" + *window.title).string();
    }
}

/// Every tab is of a site of its own, so that a window is known by any of them.
SceneApplication RandomDesktop::browser(const Scene& scene, std::string identifier) {
    SceneApplication application;
    application.name = application.identifier = std::move(identifier);
    // Where one window is private and another out of sight, titles are withheld and any may stand for any.
    const bool anyPrivate = chance(40);
    for (std::int64_t i = number(0, 4); i > 0; --i) {
        SceneWindow& shown = application.windows.emplace_back(window(scene, fmt::format("Site {}", i)));
        shown.subrole = "AXStandardWindow";
        for (std::int64_t tab = number(1, 4); tab > 0; --tab)
            shown.tabs.push_back(fmt::format("https://{}.site{}.example/?q=a|b", tab, i));
        shown.privateBrowsing = anyPrivate && chance(40);
        if (anyPrivate) shown.desktop = 0;
    }
    return application;
}

SceneApplication RandomDesktop::fileManager(const Scene& scene) {
    SceneApplication application;
    application.name = application.identifier = "com.apple.finder";
    for (std::int64_t i = number(0, 4); i > 0; --i) {
        const std::string name = fmt::format("\"Folder\" \\ {}", i);
        SceneWindow& shown = application.windows.emplace_back(window(scene, name));
        shown.subrole = "AXStandardWindow";
        shown.fullscreen = false;  // two that lie on each other are taken for tabs of one
        shown.tabs = {"/home/ada/" + name + "/"};
    }
    return application;
}

Scene RandomDesktop::scene() {
    Scene scene;
    double x = 0;
    for (std::int64_t i = 0, count = number(1, 3); i < count; ++i) {
        SceneDisplay display;
        display.id = fmt::format("DISPLAY-{}", i);
        display.frame = {x, 0, static_cast<double>(number(10, 25) * 100),
                         static_cast<double>(number(8, 14) * 100)};
        // Two of one model, so that they can be exchanged.
        if (i > 0 && chance(30))
            display.frame = {x, 0, scene.displays[0].frame.width, scene.displays[0].frame.height};
        display.visibleFrame = display.frame;
        display.visibleFrame.y += 25;
        display.visibleFrame.height -= 25;
        display.desktops = number(1, 3);
        x += display.frame.width;
        scene.displays.push_back(display);
    }
    for (std::int64_t i = 0, count = number(1, 6); i < count; ++i)
        scene.applications.push_back(application(scene, i));
    // At most one terminal: an identifier names one application.
    bool terminal = false;
    std::erase_if(scene.applications, [&](const SceneApplication& application) {
        return application.identifier == "com.apple.Terminal" && std::exchange(terminal, true);
    });
    for (const char* identifier : {"com.google.Chrome", "com.apple.Safari"}) {
        if (chance(30)) scene.applications.push_back(browser(scene, identifier));
    }
    if (chance(30)) scene.applications.push_back(fileManager(scene));
    return scene;
}

/// A Safari that is left with private windows only does not tell what it shows, and nothing is opened in it.
static bool isLastNormal(World& world, const Window& window) {
    if (window.application != "com.apple.Safari" || window.state.privateBrowsing) return false;
    const auto all = world.windowsOf(window.application);
    const auto isPrivate = [](const Window* other) { return other->state.privateBrowsing; };
    return all.size() > 1 && std::ranges::count_if(all, isPrivate) == std::ssize(all) - 1;
}

void RandomDesktop::disturb(World& world, WindowNumber windowNumber) {
    Window& window = *world.window(windowNumber);
    const Rect bounds = world.displays().front().scene.visibleFrame;
    switch (number(0, 6)) {
        case 0:
            if (!window.state.fullscreen) world.move(window, frameOn(bounds));
            break;
        case 1:
            world.requestMinimized(windowNumber, !window.state.minimized);
            break;
        case 2:
            world.requestFullscreen(windowNumber, !window.state.fullscreen);
            break;
        case 3:
            if (window.state.privateBrowsing) break;  // out of sight it would cost all others their titles
            for (const Display& display : world.displays()) {
                const auto last = static_cast<std::int64_t>(display.desktops.size()) - 1;
                if (display.scene.frame.contains(window.state.frame.center()))
                    world.requestSpace(windowNumber,
                                       display.desktops[static_cast<std::size_t>(number(0, last))]);
            }
            break;
        case 4:
            if (!recoverable_ ||
                ((window.state.document || !window.state.tabs.empty()) && !isLastNormal(world, window)))
                world.close(windowNumber);
            break;
        default:
            break;
    }
}

void RandomDesktop::disturb(World& world, bool displays) {
    disturbAll(world);
    if (displays) disturbDisplays(world);
}

void RandomDesktop::disturbRecoverably(World& world) {
    recoverable_ = true;
    disturbAll(world);
}

void RandomDesktop::disturbAll(World& world) {
    std::vector<WindowNumber> numbers;
    for (const Window& window : world.windows()) numbers.push_back(window.number);
    for (const WindowNumber windowNumber : numbers) disturb(world, windowNumber);
    for (Application& application : world.applications()) {
        if (chance(25)) world.end(application);
    }
    if (!recoverable_) disturbDesktops(world);
}

void RandomDesktop::disturbDesktops(World& world) {
    for (const Display& display : world.displays()) {
        const auto last = static_cast<std::int64_t>(display.desktops.size()) - 1;
        if (chance(40)) world.removeDesktop(display.scene.id, number(0, last));
    }
}

void RandomDesktop::disturbDisplays(World& world) {
    const SceneDisplay first = world.displays().front().scene, last = world.displays().back().scene;
    if (world.displays().size() > 1 && chance(60)) {
        world.unplug(chance(50) ? last.id : first.id);
    } else if (world.displays().size() > 1 && first.frame.size() == last.frame.size()) {
        world.swap(first.id, last.id);
    } else {
        Rect frame = last.frame;
        frame.width += static_cast<double>(number(-3, 3) * 100);
        world.arrange({{last.id, frame}});
    }
}

std::vector<Fault> RandomDesktop::faults(const Scene& scene) {
    std::vector<Fault> faults;
    for (std::int64_t i = number(0, 4); i > 0; --i) {
        Fault& fault = faults.emplace_back();
        fault.kind =
            static_cast<FaultKind>(number(0, static_cast<std::int64_t>(FaultKind::permissionRevoked)));
        const auto& application = scene.applications[static_cast<std::size_t>(
            number(0, static_cast<std::int64_t>(scene.applications.size()) - 1))];
        fault.application = application.identifier;
        if (!application.windows.empty() && chance(50))
            fault.title = application.windows.front().title.value_or("");
        if (fault.kind == FaultKind::displayUnplugged && scene.displays.size() > 1)
            fault.value = (chance(50) ? scene.displays.back() : scene.displays.front()).id;
        fault.after = static_cast<double>(number(0, 40)) / 10;
        fault.seconds = static_cast<double>(number(1, 80)) / 10;
        fault.onWrite = chance(30);
    }
    return faults;
}

}  // namespace quillo
