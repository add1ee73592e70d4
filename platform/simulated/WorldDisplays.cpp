// Displays that come and go, and the world as a scene.
#include <algorithm>
#include <utility>

#include "platform/simulated/World.hpp"

namespace quillo::simulated {
namespace {

/// Where a window of a display that went comes to stand on another: at the same offset, pulled inside.
Rect moved(const Rect& frame, const Rect& from, const Rect& to) {
    const double width = std::min(frame.width, to.width), height = std::min(frame.height, to.height);
    const double x = to.minX() + frame.minX() - from.minX(), y = to.minY() + frame.minY() - from.minY();
    return {std::clamp(x, to.minX(), to.maxX() - width), std::clamp(y, to.minY(), to.maxY() - height), width,
            height};
}

}  // namespace

const Display* World::display(std::string_view id) const {
    for (const Display& display : displays_) {
        if (display.scene.id == id) return &display;
    }
    return nullptr;
}

void World::plug(SceneDisplay scene) {
    Display& display = displays_.emplace_back(Display{std::move(scene), {}});
    for (std::int64_t i = 0; i < display.scene.desktops; ++i) display.desktops.push_back(nextSpace_++);
}

void World::unplug(std::string_view id) {
    const auto found =
        std::ranges::find(displays_, id, [](const Display& display) { return display.scene.id; });
    if (found == displays_.end()) return;
    const Rect from = found->scene.frame;
    displays_.erase(found);
    if (displays_.empty()) return;
    const Display& refuge = displays_.front();
    for (Window& window : windows_) {
        if (!from.contains(window.state.frame.center())) continue;
        window.space = refuge.desktops[static_cast<std::size_t>(refuge.scene.shownDesktop)];
        window.plainFrame = moved(window.plainFrame, from, refuge.scene.visibleFrame);
        window.state.frame = window.state.fullscreen ? refuge.scene.frame : window.plainFrame;
    }
}

void World::resize(std::string_view id, const Rect& frame) {
    for (Display& display : displays_) {
        if (display.scene.id != id) continue;
        const Rect before = display.scene.frame, visible = display.scene.visibleFrame;
        display.scene.frame = frame;
        display.scene.visibleFrame = {frame.x + visible.x - before.x, frame.y + visible.y - before.y,
                                      frame.width - (before.width - visible.width),
                                      frame.height - (before.height - visible.height)};
    }
}

std::vector<SceneWindow> World::sceneWindows(const Application& application) const {
    std::vector<SceneWindow> result;
    for (const Window& window : windows_) {
        if (window.application != application.scene.identifier) continue;
        SceneWindow& scene = result.emplace_back(window.state);
        scene.opensAfter = 0;
        scene.frame = window.plainFrame;
        for (const Display& display : displays_) {
            const auto desktop = std::ranges::find(display.desktops, window.space);
            if (desktop == display.desktops.end()) continue;
            scene.display = display.scene.id;
            scene.desktop = desktop - display.desktops.begin();
        }
    }
    return result;
}

Scene World::scene() const {
    Scene scene{
        .trusted = trusted_, .displays = {}, .applications = {}, .faults = {faults_.begin(), faults_.end()}};
    for (const Display& display : displays_) {
        scene.displays.push_back(display.scene);
        scene.displays.back().desktops = static_cast<std::int64_t>(display.desktops.size());
    }
    for (const Application& application : applications_) {
        SceneApplication& written = scene.applications.emplace_back(application.scene);
        written.running = application.running;
        if (!application.running) continue;
        if (written.reopens.empty()) written.reopens = application.scene.windows;
        written.windows = sceneWindows(application);
    }
    return scene;
}

}  // namespace quillo::simulated
