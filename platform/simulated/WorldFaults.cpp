// Which faults apply, and what they bring about when their time comes or a window is first written to.
#include <algorithm>
#include <utility>

#include "platform/simulated/World.hpp"
#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
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

bool World::lasts(FaultKind kind) const {
    const TimePoint now = executor_.now();
    return std::ranges::any_of(faults_, [&](const Fault& fault) {
        return fault.kind == kind && now >= afterStart(fault.after) &&
               (fault.seconds == 0 || now < afterStart(fault.after + fault.seconds));
    });
}

ScreenState World::screenState() const {
    if (lasts(FaultKind::screenLocked)) return ScreenState::locked;
    return lasts(FaultKind::screenBlank) ? ScreenState::blank : ScreenState::shown;
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

void World::drift(const Window& window) {
    const Fault* drift = fault(FaultKind::windowDrifts, window);
    if (!drift || !drifting_.insert(window.number).second) return;
    at(executor_.now() + toDuration(drift->seconds),
       [this, number = window.number, isLasting = drift->value == "always"] {
           if (isLasting) drifting_.erase(number);
           if (Window* still = this->window(number)) move(*still, movedBy(still->state.frame, 6, 6));
       });
}

void World::eachConcerned(const Fault& fault, const std::function<void(Window&)>& act) {
    std::vector<WindowNumber> numbers;
    for (const Window& window : windows_) {
        if (concerns(fault.application, window.application) &&
            concerns(fault.title, window.state.title.value_or("")))
            numbers.push_back(window.number);
    }
    for (const WindowNumber number : numbers) act(*window(number));
}

void World::eachRunning(const Fault& fault, const std::function<void(Application&)>& act) {
    for (Application& application : applications_) {
        if (application.running && concerns(fault.application, application.scene.identifier))
            act(application);
    }
}

bool World::waitsForScript(const Fault& fault, std::string_view application) const {
    return fault.onScript && executor_.now() >= afterStart(fault.after) &&
           concerns(fault.application, application);
}

void World::scriptAsks(std::string_view application) {
    happenOnScript(application, 1);
    for (Fault& fault : faults_) {
        if (fault.step > 1 && waitsForScript(fault, application)) --fault.step;
    }
}

void World::scriptRan(std::string_view application) {
    happenOnScript(application, 0);
}

void World::happenOnScript(std::string_view application, std::int64_t step) {
    const auto due = std::ranges::find_if(faults_, [&](const Fault& fault) {
        return fault.step == step && waitsForScript(fault, application);
    });
    if (due == faults_.end()) return;
    Fault fault = std::move(*due);
    faults_.erase(due);
    fault.application = application;
    happen(fault);
}

void World::add(Fault fault) {
    schedule(fault);
    faults_.push_back(std::move(fault));
}

void World::schedule(const Fault& fault) {
    if (fault.onWrite || fault.onScript) return;
    at(afterStart(fault.after), [this, fault] { happen(fault); });
}

void World::happen(const Fault& fault) {
    switch (fault.kind) {
        case FaultKind::titleChanges:
            return eachConcerned(fault, [&](Window& window) { window.state.title = fault.value; });
        case FaultKind::windowVanishes:
            return eachConcerned(fault, [&](const Window& window) { close(window.number); });
        case FaultKind::turnsPrivate:
            return eachConcerned(fault, [](Window& window) { window.state.privateBrowsing = true; });
        case FaultKind::windowRaised:
            return eachConcerned(fault, [&](const Window& window) { raise(window.number); });
        case FaultKind::privateWindowOpens:
            return eachRunning(fault, [&](Application& application) {
                SceneWindow window = newWindow(application, fault.value);
                window.privateBrowsing = true;
                openInFront(application, window);
            });
        case FaultKind::applicationCrashes:
            return eachRunning(fault, [&](Application& application) { end(application); });
        case FaultKind::displayUnplugged:
            return unplug(fault.value);
        default:
            return;  // it lasts, and is asked for where it applies
    }
}

}  // namespace quillo::simulated
