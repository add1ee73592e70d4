#include "platform/simulated/World.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillo::simulated {
namespace {

Duration toDuration(double seconds) {
    return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

double roundedDown(double length, double cell) {
    return cell > 1 ? static_cast<double>(static_cast<std::int64_t>(length / cell)) * cell : length;
}

/// The size a window takes when it is asked for one: within its limits, in whole cells.
Size allowed(const SceneWindow& window, Size size) {
    size = {std::max(size.width, window.minimumSize.width), std::max(size.height, window.minimumSize.height)};
    if (window.maximumSize)
        size = {std::min(size.width, window.maximumSize->width),
                std::min(size.height, window.maximumSize->height)};
    return {roundedDown(size.width, window.cell.width), roundedDown(size.height, window.cell.height)};
}

bool concerns(const std::string& name, std::string_view value) {
    return name.empty() || name == value;
}

}  // namespace

World::World(VirtualExecutor& executor, Scene scene, std::uint64_t seed)
    : executor_(executor), started_(executor.now()), trusted_(scene.trusted), random_(seed) {
    for (SceneDisplay& display : scene.displays) plug(std::move(display));
    for (SceneApplication& application : scene.applications)
        applications_.emplace_back().scene = std::move(application);
    for (Fault& fault : scene.faults) add(std::move(fault));
    for (Application& application : applications_) {
        if (!application.scene.running) continue;
        run(application);
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
    application.pid = nextPid_++;
    application.launchDate = executor_.wallNow();
}

void World::start(Application& application) {
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
            if (Application* still = this->application(pid)) openWindow(*still, window);
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
    window.number = nextNumber_++;
    window.application = application.scene.identifier;
    window.state = scene;
    window.space = spaceFor(scene);
    const Size size = allowed(scene, scene.frame.size());
    window.state.frame = {scene.frame.x, scene.frame.y, size.width, size.height};
    window.plainFrame = window.state.frame;
    if (std::exchange(window.state.fullscreen, false)) enterFullscreen(window);
    return window;
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

void World::move(Window& window, const Rect& frame) {
    window.state.frame = frame;
    if (!window.state.fullscreen) window.plainFrame = frame;
    const Display* display = displayOf(frame);
    if (!display || std::ranges::find(display->desktops, window.space) != display->desktops.end()) return;
    window.space = display->desktops[static_cast<std::size_t>(display->scene.shownDesktop)];
}

bool World::listed(const Window& window) const {
    if (!window.state.listed) return false;
    if (window.state.minimized || window.state.fullscreen) return true;
    return std::ranges::any_of(displays_, [&](const Display& display) {
        return display.desktops[static_cast<std::size_t>(display.scene.shownDesktop)] == window.space;
    });
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
}

void World::leaveFullscreen(Window& window) {
    if (!window.state.fullscreen) return;
    window.state.fullscreen = false;
    window.state.frame = window.plainFrame;
    window.fullscreenSpace = 0;
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
    if (window.transition && window.transition->flickers) return random_() % 2 == 0;
    return window.state.fullscreen;
}

// -- requests -----------------------------------------------------------------------------------------------

const Fault* World::fault(FaultKind kind, std::string_view application, std::string_view title) const {
    for (const Fault& fault : faults_) {
        if (fault.kind == kind && executor_.now() >= afterStart(fault.after) &&
            concerns(fault.application, application) && concerns(fault.title, title))
            return &fault;
    }
    return nullptr;
}

const Fault* World::fault(FaultKind kind, const Window& window) const {
    return fault(kind, window.application, window.state.title.value_or(""));
}

bool World::suffer(Window& window) {
    Application& owner = *application(window.application);
    if (const Fault* hang = fault(FaultKind::applicationHangs, window.application);
        hang && hang->onWrite && !owner.hangsSince)
        owner.hangsSince = executor_.now();
    if (const Fault* crash = fault(FaultKind::applicationCrashes, window.application);
        crash && crash->onWrite) {
        end(owner);
        return false;
    }
    if (const Fault* vanish = fault(FaultKind::windowVanishes, window); vanish && vanish->onWrite) {
        close(window.number);
        return false;
    }
    return true;
}

std::int32_t World::requestPosition(WindowNumber number, Point position) {
    Window* window = this->window(number);
    if (!window || !suffer(*window)) return code::invalidElement;
    if (fault(FaultKind::moveRefused, *window)) return code::cannotComplete;
    // A full-screen or minimized window takes the request and stays.
    const bool fixed = window->state.fullscreen || window->transition || window->state.minimized;
    if (fixed || fault(FaultKind::moveIgnored, *window)) return code::success;
    Rect frame = window->state.frame;
    frame.x = position.x;
    frame.y = position.y;
    if (const Display* display = displayOf(frame); display && fault(FaultKind::positionClamped, *window)) {
        const Rect& bounds = display->scene.visibleFrame;
        frame.x = std::clamp(frame.x, bounds.minX(), std::max(bounds.minX(), bounds.maxX() - frame.width));
        frame.y = std::clamp(frame.y, bounds.minY(), std::max(bounds.minY(), bounds.maxY() - frame.height));
    }
    move(*window, frame);
    return code::success;
}

std::int32_t World::requestSize(WindowNumber number, Size size) {
    Window* window = this->window(number);
    if (!window || !suffer(*window)) return code::invalidElement;
    const SceneWindow& state = window->state;
    if (state.fullscreen || window->transition || state.minimized) return code::success;
    size = allowed(state, size);
    if (const Display* display = displayOf(state.frame); display && fault(FaultKind::sizeClamped, *window)) {
        const Rect& bounds = display->scene.frame;
        size = {std::min(size.width, bounds.width / 2), std::min(size.height, bounds.height / 2)};
    }
    move(*window, {state.frame.x, state.frame.y, size.width, size.height});
    return code::success;
}

std::int32_t World::requestMinimized(WindowNumber number, bool value) {
    Window* window = this->window(number);
    if (!window || !suffer(*window)) return code::invalidElement;
    if (fault(value ? FaultKind::minimizeRefused : FaultKind::unminimizeRefused, *window))
        return code::cannotComplete;
    if (window->state.fullscreen || fault(FaultKind::minimizeIgnored, *window)) return code::success;
    window->state.minimized = value;
    return code::success;
}

std::int32_t World::requestFullscreen(WindowNumber number, bool value) {
    using namespace std::chrono_literals;
    Window* window = this->window(number);
    if (!window || !suffer(*window)) return code::invalidElement;
    if (fault(FaultKind::fullscreenRefused, *window)) return code::cannotComplete;
    if (window->state.minimized || fault(FaultKind::fullscreenIgnored, *window)) return code::success;
    if (window->state.fullscreen == value) {
        window->transition.reset();
        return code::success;
    }
    const Fault* slow = fault(FaultKind::fullscreenSlow, *window);
    window->transition =
        Window::Transition{.target = value,
                           .until = executor_.now() + 350ms + toDuration(slow ? slow->seconds : 0),
                           .flickers = fault(FaultKind::fullscreenFlickers, *window) != nullptr};
    return code::success;
}

bool World::requestSpace(WindowNumber number, SpaceID space) {
    Window* window = this->window(number);
    if (!window || fault(FaultKind::desktopMoveRefused, *window) || window->state.fullscreen) return false;
    window->space = space;
    return true;
}

// -- faults that come with time -----------------------------------------------------------------------------

void World::add(Fault fault) {
    schedule(fault);
    faults_.push_back(std::move(fault));
}

void World::schedule(const Fault& fault) {
    if (fault.onWrite) return;
    const auto eachWindow = [this, fault](auto act) {
        std::vector<WindowNumber> numbers;
        for (const Window& window : windows_) {
            if (concerns(fault.application, window.application) &&
                concerns(fault.title, window.state.title.value_or("")))
                numbers.push_back(window.number);
        }
        for (const WindowNumber number : numbers) act(*window(number));
    };
    const TimePoint time = afterStart(fault.after);
    if (fault.kind == FaultKind::titleChanges) {
        at(time,
           [eachWindow, fault] { eachWindow([&](Window& window) { window.state.title = fault.value; }); });
    } else if (fault.kind == FaultKind::windowVanishes) {
        at(time, [this, eachWindow] { eachWindow([&](Window& window) { close(window.number); }); });
    } else if (fault.kind == FaultKind::applicationCrashes) {
        at(time, [this, fault] {
            for (Application& application : applications_) {
                if (concerns(fault.application, application.scene.identifier)) end(application);
            }
        });
    } else if (fault.kind == FaultKind::displayUnplugged) {
        at(time, [this, fault] { unplug(fault.value); });
    }
}

}  // namespace quillo::simulated
