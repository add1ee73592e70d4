// Which faults apply, and what they bring about when their time comes or a window is first written to.
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

void World::eachConcerned(const Fault& fault, const std::function<void(Window&)>& act) {
    std::vector<WindowNumber> numbers;
    for (const Window& window : windows_) {
        if (concerns(fault.application, window.application) &&
            concerns(fault.title, window.state.title.value_or("")))
            numbers.push_back(window.number);
    }
    for (const WindowNumber number : numbers) act(*window(number));
}

void World::scriptRan(std::string_view application) {
    const auto spent = std::ranges::find_if(faults_, [&](const Fault& fault) {
        return fault.kind == FaultKind::turnsPrivate && fault.onScript &&
               executor_.now() >= afterStart(fault.after) && concerns(fault.application, application);
    });
    if (spent == faults_.end()) return;
    eachConcerned(*spent, [&](Window& window) {
        if (window.application == application) window.state.privateBrowsing = true;
    });
    faults_.erase(spent);
}

void World::add(Fault fault) {
    schedule(fault);
    faults_.push_back(std::move(fault));
}

void World::schedule(const Fault& fault) {
    if (fault.onWrite || fault.onScript) return;
    const TimePoint time = afterStart(fault.after);
    if (fault.kind == FaultKind::titleChanges) {
        at(time, [this, fault] {
            eachConcerned(fault, [&](Window& window) { window.state.title = fault.value; });
        });
    } else if (fault.kind == FaultKind::windowVanishes) {
        at(time,
           [this, fault] { eachConcerned(fault, [&](const Window& window) { close(window.number); }); });
    } else if (fault.kind == FaultKind::turnsPrivate) {
        at(time, [this, fault] {
            eachConcerned(fault, [](Window& window) { window.state.privateBrowsing = true; });
        });
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
