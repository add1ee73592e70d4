#include "platform/simulated/World.hpp"

#include <algorithm>
#include <utility>

#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
World::World(VirtualExecutor& executor, Scene scene, std::uint64_t seed)
    : executor_(executor),
      started_(executor.now()),
      trusted_(scene.trusted),
      random_(seed),
      missingFolders_(std::move(scene.missingFolders)),
      opensWindows_(scene.opensWindows),
      likeX11_(scene.likeX11),
      refusedDocuments_(std::move(scene.refusedDocuments)),
      desktopRefusal_(std::move(scene.desktopRefusal)) {
    for (SceneDisplay& display : scene.displays) plug(std::move(display));
    for (SceneApplication& application : scene.applications)
        applications_.emplace_back().scene = std::move(application);
    for (Fault& fault : scene.faults) add(std::move(fault));
    for (Application& application : applications_) {
        if (!application.scene.running) continue;
        run(application);
        application.hidden = application.scene.hidden;
        openLaunchWindows(application, application.scene.windows, 0);
    }
}

void World::advance() {
    while (!events_.empty() && events_.begin()->first <= executor_.now()) {
        const auto happen = std::move(events_.begin()->second);
        events_.erase(events_.begin());
        happen();
    }
    for (Window& window : windows_) {
        if (window.transition && window.transition->until <= executor_.now()) finish(window);
    }
}

TimePoint World::nextChange() const {
    TimePoint next = events_.empty() ? TimePoint::max() : events_.begin()->first;
    for (const Window& window : windows_) {
        if (window.transition) next = std::min(next, window.transition->until);
    }
    return next;
}

void World::at(TimePoint time, std::function<void()> happen) {
    events_.emplace(time, std::move(happen));
}

TimePoint World::afterStart(double seconds) const {
    return started_ + toDuration(seconds);
}

bool World::trusted() const {
    return trusted_ && !fault(FaultKind::permissionRevoked);
}

// -- applications -------------------------------------------------------------------------------------------

Application* World::application(std::string_view identifier) {
    for (Application& application : applications_) {
        if (application.scene.identifier == identifier) return &application;
    }
    return nullptr;
}

Application* World::application(ProcessID pid) {
    for (Application& application : applications_) {
        if (application.running && application.pid == pid) return &application;
    }
    return nullptr;
}

void World::run(Application& application) {
    application.running = true;
    application.starting = false;
    application.hidden = false;
    application.hangsSince.reset();
    application.handedDocuments.clear();
    application.pid = nextPid_++;
    application.launchDate = executor_.wallNow();
}

void World::start(Application& application) {
    if (application.running) application.hidden = false;
    if (application.running || application.starting) return;
    application.starting = true;
    const std::string identifier = application.scene.identifier;
    const Fault* slow = fault(FaultKind::slowLaunch, identifier);
    const Fault* late = fault(FaultKind::lateWindows, identifier);
    const double lateness = late ? late->seconds : 0;
    at(executor_.now() + toDuration(application.scene.launchSeconds + (slow ? slow->seconds : 0)),
       [this, identifier, lateness] {
           Application& starting = *this->application(identifier);
           run(starting);
           const auto& reopens = starting.scene.reopens;
           openLaunchWindows(starting, reopens.empty() ? starting.scene.windows : reopens, lateness);
       });
}

void World::openLaunchWindows(Application& application, const std::vector<SceneWindow>& windows,
                              double late) {
    for (const SceneWindow& window : windows) {
        if (window.opensAfter + late <= 0) {
            openWindow(application, window);
            continue;
        }
        at(executor_.now() + toDuration(window.opensAfter + late), [this, window, pid = application.pid] {
            Application* still = this->application(pid);
            if (still && !broughtAlready(*still, window)) openWindow(*still, window);
        });
    }
}

void World::end(Application& application) {
    application.running = false;
    std::erase_if(windows_,
                  [&](const Window& window) { return window.application == application.scene.identifier; });
}

bool World::hangs(const Application& application) const {
    const Fault* hang = fault(FaultKind::applicationHangs, application.scene.identifier);
    if (!hang) return false;
    if (hang->onWrite && !application.hangsSince) return false;
    const TimePoint since = hang->onWrite ? *application.hangsSince : afterStart(hang->after);
    return hang->seconds == 0 || executor_.now() < since + toDuration(hang->seconds);
}

// -- windows ------------------------------------------------------------------------------------------------

Window& World::openWindow(Application& application, const SceneWindow& scene) {
    Window& window = windows_.emplace_back();
    settle(window, application, scene);
    return window;
}

Window& World::openInFront(Application& application, const SceneWindow& scene) {
    Window& window = windows_.emplace_front();
    settle(window, application, scene);
    return window;
}

void World::settle(Window& window, const Application& application, const SceneWindow& scene) {
    window.number = nextNumber_++;
    window.application = application.scene.identifier;
    window.state = scene;
    window.space = spaceFor(scene);
    const Size size = allowedSize(scene, scene.frame.size());
    window.state.frame = {scene.frame.x, scene.frame.y, size.width, size.height};
    window.plainFrame = window.state.frame;
    if (std::exchange(window.state.fullscreen, false)) enterFullscreen(window);
    if (const Window* front = frontTab(window); front != &window) copyPlace(*front, window);
    if (scene.closesAfter > 0)
        at(executor_.now() + toDuration(scene.closesAfter),
           [this, number = window.number] { close(number); });
}

Window* World::window(WindowNumber number) {
    const auto found = std::ranges::find(windows_, number, &Window::number);
    return found == windows_.end() ? nullptr : &*found;
}

Window* World::window(std::string_view application, std::string_view title) {
    for (Window* window : windowsOf(application)) {
        if (window->state.title.value_or("") == title) return window;
    }
    return nullptr;
}

std::vector<Window*> World::windowsOf(std::string_view application) {
    std::vector<Window*> result;
    for (Window& window : windows_) {
        if (window.application == application) result.push_back(&window);
    }
    return result;
}

void World::close(WindowNumber number) {
    std::erase_if(windows_, [&](const Window& window) { return window.number == number; });
}

void World::raise(WindowNumber number) {
    const auto raised = std::ranges::find(windows_, number, &Window::number);
    if (raised != windows_.end()) std::rotate(windows_.begin(), raised, raised + 1);
}

void World::move(Window& window, const Rect& frame) {
    window.state.frame = frame;
    if (!window.state.fullscreen) window.plainFrame = frame;
    const Display* display = displayOf(frame);
    if (display && std::ranges::find(display->desktops, window.space) == display->desktops.end())
        window.space = display->shown();
    shareWithTabs(window);
}

const Window* World::frontTab(const Window& window) const {
    if (window.state.tabGroup.empty()) return &window;
    return &*std::ranges::find_if(windows_, [&](const Window& other) {
        return other.application == window.application && other.state.tabGroup == window.state.tabGroup;
    });
}

void World::copyPlace(const Window& from, Window& to) {
    to.state.frame = from.state.frame;
    to.state.minimized = from.state.minimized;
    to.state.fullscreen = from.state.fullscreen;
    to.plainFrame = from.plainFrame;
    to.space = from.space;
    to.fullscreenSpace = from.fullscreenSpace;
    to.transition = from.transition;
}

void World::shareWithTabs(const Window& window) {
    if (window.state.tabGroup.empty()) return;
    for (Window& other : windows_) {
        if (&other != &window && other.application == window.application &&
            other.state.tabGroup == window.state.tabGroup)
            copyPlace(window, other);
    }
}

bool World::listed(const Window& window) const {
    if (!window.state.listed) return false;
    if (likeX11_ || window.state.minimized || window.state.fullscreen) return true;
    return std::ranges::any_of(displays_,
                               [&](const Display& display) { return display.shown() == window.space; });
}

const Display* World::displayOf(const Rect& frame) const {
    const Display* best = nullptr;
    double bestArea = -1;
    for (const Display& display : displays_) {
        if (display.scene.frame.contains(frame.center())) return &display;
        const double area = display.scene.frame.intersectionArea(frame);
        if (area > bestArea) {
            best = &display;
            bestArea = area;
        }
    }
    return best;
}

SpaceID World::spaceFor(const SceneWindow& scene) const {
    const Display* target = scene.display.empty() ? nullptr : display(scene.display);
    if (!target) target = displayOf(scene.frame);
    if (!target) return 0;
    const auto last = static_cast<std::int64_t>(target->desktops.size()) - 1;
    return target->desktops[static_cast<std::size_t>(std::clamp<std::int64_t>(scene.desktop, 0, last))];
}

// -- full screen --------------------------------------------------------------------------------------------

void World::enterFullscreen(Window& window) {
    if (window.state.fullscreen || displays_.empty()) return;
    window.plainFrame = window.state.frame;
    const Display* named = display(window.state.display);
    window.state.frame = (named ? *named : *displayOf(window.state.frame)).scene.frame;
    window.state.fullscreen = true;
    window.fullscreenSpace = nextSpace_++;
    shareWithTabs(window);
}

void World::leaveFullscreen(Window& window) {
    if (!window.state.fullscreen) return;
    window.state.fullscreen = false;
    window.state.frame = window.plainFrame;
    window.fullscreenSpace = 0;
    shareWithTabs(window);
}

void World::finish(Window& window) {
    const bool target = window.transition->target;
    window.transition.reset();
    if (target) {
        enterFullscreen(window);
    } else {
        leaveFullscreen(window);
    }
}

bool World::shownFullscreen(const Window& window) {
    if (!window.transition || !window.transition->flickers) return window.state.fullscreen;
    bool& shown = this->window(window.number)->transition->shown;
    return shown = !shown;
}

}  // namespace quillo::simulated
