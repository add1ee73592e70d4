#include <algorithm>
#include <chrono>
#include <cstring>

#include "platform/simulated/Handle.hpp"
#include "platform/simulated/SimulatedServices.hpp"
#include "platform/simulated/SimulatedToolbar.hpp"
#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
namespace {

AttributeMiss miss(std::int32_t resultCode) {
    using Reason = AttributeMiss::Reason;
    switch (resultCode) {
        case code::invalidElement:
            return {Reason::gone, resultCode};
        case code::cannotComplete:
            return {Reason::timedOut, resultCode};
        case code::noValue:
        case code::attributeUnsupported:
            return {Reason::absent, resultCode};
        default:
            return {Reason::refused, resultCode};
    }
}

Attribute missing(std::int32_t resultCode) {
    return std::unexpected(miss(resultCode));
}

const Attribute unasked = std::unexpected(AttributeMiss{AttributeMiss::Reason::timedOut, 0});

}  // namespace

bool Accessibility::trusted() {
    world_.advance();
    return world_.trusted();
}

Capability Accessibility::access() {
    return trusted() ? Capability::available()
                     : Capability::unavailable("The scene does not grant the Accessibility permission.");
}

Element Accessibility::application(ProcessID pid) {
    return Element(std::make_shared<Handle>(pid, 0));
}

void Accessibility::setMessagingTimeout(const Element& element, double seconds) {
    timeouts_[handleOf(element).pid] = seconds;
}

Application* Accessibility::ownerOf(const Element& element) {
    return world_.application(handleOf(element).pid);
}

Window* Accessibility::windowOf(const Element& element) {
    const Application* owner = ownerOf(element);
    Window* window = world_.window(handleOf(element).number);
    return owner && window && window->application == owner->scene.identifier ? window : nullptr;
}

std::int32_t Accessibility::obstacle(const Element& element) {
    world_.advance();
    if (!world_.trusted()) return code::apiDisabled;
    if (handleOf(element).pid == Dock::pid) return code::success;
    const Application* owner = ownerOf(element);
    if (!owner) return code::invalidElement;
    if (!world_.hangs(*owner)) return code::success;
    const auto timeout = timeouts_.find(owner->pid);
    const std::chrono::duration<double> seconds(timeout == timeouts_.end() ? 6.0 : timeout->second);
    executor_.burn(std::chrono::duration_cast<Duration>(seconds));
    return code::cannotComplete;
}

std::vector<std::vector<Attribute>> Accessibility::read(std::span<const AttributeRequest> requests) {
    std::vector<std::vector<Attribute>> answers;
    std::optional<ProcessID> silent;
    for (const AttributeRequest& request : requests) {
        const ProcessID pid = handleOf(request.element).pid;
        std::vector<Attribute>& answer = answers.emplace_back();
        if (silent && pid != silent) {
            answer.assign(request.names.size(), unasked);
            continue;
        }
        const std::int32_t trouble = silent ? code::cannotComplete : obstacle(request.element);
        if (trouble == code::cannotComplete) silent = pid;
        for (const std::string_view name : request.names)
            answer.push_back(trouble == code::success ? readOne(request.element, name) : missing(trouble));
    }
    return answers;
}

Attribute Accessibility::readOne(const Element& element, std::string_view name) {
    if (handleOf(element).pid == Dock::pid) {
        const auto value = dock_.read(element, name);
        return value ? Attribute(*value) : missing(value.error());
    }
    if (handleOf(element).number == 0) return readApplication(handleOf(element).pid, name);
    const Window* window = windowOf(element);
    if (!window) return missing(code::invalidElement);
    const bool inside = name == ax::children && window->application == safari;
    if (!inside && handleOf(element).part.empty()) return readWindow(*window, name);
    const auto value = Toolbar::read(*ownerOf(element), *window, handleOf(element), name);
    return value ? Attribute(*value) : missing(value.error());
}

Attribute Accessibility::readApplication(ProcessID pid, std::string_view name) {
    if (name != ax::windows) return missing(code::attributeUnsupported);
    std::vector<Element> elements;
    for (const Window* window : world_.windowsOf(world_.application(pid)->scene.identifier)) {
        if (world_.listed(*window)) elements.push_back(windowElement(*window));
    }
    return elements;
}

Attribute Accessibility::readWindow(const Window& window, std::string_view name) {
    const SceneWindow& state = window.state;
    if (name == ax::subrole) return state.subrole;
    if (name == ax::role) return std::string("AXWindow");
    if (name == ax::position) return state.frame.origin();
    if (name == ax::size) return state.frame.size();
    if (name == ax::minimized) return state.minimized;
    if (name == ax::fullScreen) return world_.shownFullscreen(window);
    if (name == ax::title) return state.title.value_or("");
    if (name == ax::document) {
        const std::optional<std::string> document = World::documentOf(window);
        return document ? Attribute(*document) : missing(code::noValue);
    }
    return missing(code::attributeUnsupported);
}

Element Accessibility::windowElement(const Window& window) {
    return Element(std::make_shared<Handle>(world_.application(window.application)->pid, window.number));
}

AccessibilityCode Accessibility::write(const Element& element, std::string_view name,
                                       const AttributeValue& value) {
    if (const std::int32_t trouble = obstacle(element); trouble != code::success) return {trouble};
    const Window* window = windowOf(element);
    if (!window) return {code::invalidElement};
    if (!handleOf(element).part.empty()) return {code::attributeUnsupported};
    if (const bool* flag = std::get_if<bool>(&value)) {
        if (name == ax::minimized) return {world_.requestMinimized(window->number, *flag)};
        if (name == ax::fullScreen) return {world_.requestFullscreen(window->number, *flag)};
    }
    if (const Point* point = std::get_if<Point>(&value); point && name == ax::position)
        return {world_.requestPosition(window->number, *point)};
    if (const Size* size = std::get_if<Size>(&value); size && name == ax::size)
        return {world_.requestSize(window->number, *size)};
    return {code::attributeUnsupported};
}

FrameWrite Accessibility::writeFrame(const Element& window, const Rect& frame) {
    const TimePoint began = executor_.now();
    const bool first = bool(write(window, ax::position, frame.origin()));
    if (executor_.now() > began) return {};  // it hangs
    const bool size = bool(write(window, ax::size, frame.size()));
    if (executor_.now() > began) return {first, false};
    const bool second = bool(write(window, ax::position, frame.origin()));
    return {first || second, size};
}

AccessibilityCode Accessibility::perform(const Element& element, std::string_view action) {
    if (const std::int32_t trouble = obstacle(element); trouble != code::success) return {trouble};
    if (handleOf(element).pid == Dock::pid) return {dock_.perform(element, action)};
    const Window* window = windowOf(element);
    if (!window) return {code::invalidElement};
    if (action != ax::raise || !handleOf(element).part.empty()) return {code::actionUnsupported};
    world_.raise(window->number);
    return {code::success};
}

std::optional<WindowNumber> Accessibility::windowNumber(const Element& window) {
    world_.advance();
    const Window* found = windowOf(window);
    return found ? std::optional(found->number) : std::nullopt;
}

std::optional<Element> Accessibility::elementFromToken(std::span<const std::byte, 20> token) {
    using namespace std::chrono_literals;
    executor_.burn(5us);
    world_.advance();
    ProcessID pid = 0;
    std::uint64_t counter = 0;
    std::memcpy(&pid, token.data(), sizeof pid);
    std::memcpy(&counter, token.data() + 12, sizeof counter);
    const Window* window = world_.window(static_cast<WindowNumber>(counter));
    const Application* owner = world_.application(pid);
    if (!window || !owner || window->application != owner->scene.identifier) return std::nullopt;
    return windowElement(*window);
}

Capability Accessibility::placement(const Element& window) {
    const Window* found = windowOf(window);
    const bool able = !found || found->state.immovable.empty();
    return able ? Capability::available() : Capability::unavailable(found->state.immovable);
}

Task<bool> Accessibility::makeMovable(Element) {
    co_return true;
}

Task<void> Accessibility::settleInPlace(Element) {
    co_return;
}

}  // namespace quillo::simulated
