// Displays that come and go, and the world as a scene.
#include <algorithm>
#include <utility>

#include "platform/simulated/World.hpp"
#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
const Display* World::display(std::string_view id) const {
    for (const Display& display : displays_) {
        if (display.scene.id == id) return &display;
    }
    return nullptr;
}

void World::plug(SceneDisplay scene) {
    Display& display = displays_.emplace_back(Display{std::move(scene), {}});
    if (likeX11_ && displays_.size() > 1) {
        display.desktops = displays_.front().desktops;
        return;
    }
    for (std::int64_t i = 0; i < display.scene.desktops; ++i) display.desktops.push_back(nextSpace_++);
}

void World::addSharedDesktop() {
    const SpaceID added = nextSpace_++;
    for (Display& display : displays_) display.desktops.push_back(added);
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
        window.space = refuge.shown();
        window.plainFrame = movedBetween(window.plainFrame, from, refuge.scene.visibleFrame);
        window.state.frame = window.state.fullscreen ? refuge.scene.frame : window.plainFrame;
    }
    const Point corner = refuge.scene.frame.origin();
    std::map<std::string, Rect, std::less<>> frames;
    for (const Display& display : displays_)
        frames[display.scene.id] = movedBy(display.scene.frame, -corner.x, -corner.y);
    arrange(frames);
}

void World::arrange(const std::map<std::string, Rect, std::less<>>& frames) {
    std::map<WindowNumber, std::string> homes;
    for (const Window& window : windows_) {
        if (const Display* display = displayOf(window.state.frame)) homes[window.number] = display->scene.id;
    }
    std::map<std::string, Rect, std::less<>> before;
    for (Display& display : displays_) {
        const Rect old = display.scene.frame, visible = display.scene.visibleFrame;
        before[display.scene.id] = old;
        const auto given = frames.find(display.scene.id);
        if (given == frames.end()) continue;
        const Rect& frame = given->second;
        display.scene.frame = frame;
        display.scene.visibleFrame = {frame.x + visible.x - old.x, frame.y + visible.y - old.y,
                                      frame.width - (old.width - visible.width),
                                      frame.height - (old.height - visible.height)};
    }
    const auto primary = std::ranges::find(
        displays_, Point{}, [](const Display& display) { return display.scene.frame.origin(); });
    if (primary != displays_.end()) std::rotate(displays_.begin(), primary, primary + 1);
    for (Window& window : windows_) {
        if (const auto home = homes.find(window.number); home != homes.end())
            follow(window, before.at(home->second), display(home->second)->scene);
    }
}

void World::follow(Window& window, const Rect& from, const SceneDisplay& home) {
    if (home.frame == from) return;
    const Rect carried = movedBy(window.plainFrame, home.frame.x - from.x, home.frame.y - from.y);
    window.plainFrame = home.frame.contains(carried.center())
                            ? carried
                            : movedBetween(window.plainFrame, from, home.visibleFrame);
    window.state.frame = window.state.fullscreen ? home.frame : window.plainFrame;
}

void World::swap(std::string_view one, std::string_view other) {
    const Display *first = display(one), *second = display(other);
    if (!first || !second) return;
    arrange({{first->scene.id, second->scene.frame}, {second->scene.id, first->scene.frame}});
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
            if (desktop == display.desktops.end() || (likeX11_ && &display != displayOf(window.state.frame)))
                continue;
            scene.display = display.scene.id;
            scene.desktop = desktop - display.desktops.begin();
        }
    }
    return result;
}

Scene World::scene() const {
    Scene scene{.trusted = trusted_,
                .displays = {},
                .applications = {},
                .faults = {faults_.begin(), faults_.end()},
                .missingFolders = missingFolders_,
                .opensWindows = opensWindows_,
                .likeX11 = likeX11_,
                .refusedDocuments = refusedDocuments_,
                .desktopRefusal = desktopRefusal_};
    for (const Display& display : displays_) {
        scene.displays.push_back(display.scene);
        scene.displays.back().desktops = static_cast<std::int64_t>(display.desktops.size());
    }
    for (const Application& application : applications_) {
        SceneApplication& written = scene.applications.emplace_back(application.scene);
        written.running = application.running;
        written.hidden = application.hidden;
        if (!application.running) continue;
        if (written.reopens.empty()) written.reopens = application.scene.windows;
        written.windows = sceneWindows(application);
    }
    return scene;
}

}  // namespace quillo::simulated
