#include <algorithm>

#include "platform/simulated/SimulatedServices.hpp"

namespace quillo::simulated {
namespace {

class Watch final : public ChangeWatch {
  public:
    Watch(World& world, VirtualExecutor& executor) : world_(world), executor_(executor) {}

    Task<bool> next(Duration limit) override {
        const TimePoint deadline = executor_.timeAfter(limit), change = world_.nextChange();
        co_await sleepFor(std::min(deadline, change) - executor_.now());
        world_.advance();
        co_return change <= deadline;
    }

  private:
    World& world_;
    VirtualExecutor& executor_;
};

}  // namespace

std::vector<WindowListEntry> Server::windowList() {
    world_.advance();
    std::vector<WindowListEntry> list;
    for (const Window& window : world_.windows()) {
        const ProcessID process = world_.application(window.application)->pid;
        list.push_back({process, 0, window.number, window.state.frame, process});
    }
    return list;
}

std::vector<DisplaySpaces> Server::displaySpaces() {
    world_.advance();
    std::vector<DisplaySpaces> result;
    for (const Display& display : world_.displays()) {
        DisplaySpaces& spaces = result.emplace_back(DisplaySpaces{display.scene.id, {}});
        for (const SpaceID id : display.desktops)
            spaces.spaces.push_back(
                {id, SpaceKind::standard,
                 world_.likeX11() ? std::nullopt : std::optional("space-" + std::to_string(id))});
        if (world_.likeX11()) continue;
        for (const Window& window : world_.windows()) {
            const bool owns = window.fullscreenSpace != 0 && world_.frontTab(window) == &window;
            if (owns && display.scene.frame.contains(window.state.frame.center()))
                spaces.spaces.push_back({window.fullscreenSpace, SpaceKind::fullScreen, std::nullopt});
        }
    }
    return result;
}

std::vector<WindowFacts> Server::facts(std::span<const WindowNumber> numbers) {
    world_.advance();
    std::vector<WindowFacts> result;
    for (const WindowNumber number : numbers) {
        WindowFacts& facts = result.emplace_back();
        const Window* window = world_.window(number);
        if (!window) continue;
        // A tab behind another stands on no desktop of its own.
        if (window->state.everyDesktop && !world_.displays().empty())
            facts.spaces = world_.displays().front().desktops;
        else if (world_.likeX11())
            facts.spaces = {window->space};
        else if (world_.frontTab(*window) == window)
            facts.spaces = {window->state.fullscreen ? window->fullscreenSpace : window->space};
        facts.isStandard = window->state.subrole == ax::standardWindow;
        facts.isFullscreen = window->state.fullscreen;
    }
    return result;
}

bool Server::isAnimating(std::string_view displayID) {
    world_.advance();
    const Display* display = world_.display(displayID);
    return display && std::ranges::any_of(world_.windows(), [&](const Window& window) {
               return window.transition && display->scene.frame.contains(window.state.frame.center());
           });
}

Result<void> Server::moveWindow(WindowNumber number, SpaceID space) {
    world_.advance();
    if (!world_.requestSpace(number, space))
        return fail(ErrorKind::refused, "the window server refused the move");
    return {};
}

std::string Server::noWindows() {
    return world_.likeX11() ? "no accessible windows appeared; windows on other desktops may be unavailable"
                            : WindowServer::noWindows();
}

Capability Server::desktopCreation() {
    const std::string& refusal = world_.desktopRefusal();
    return refusal.empty() ? Capability::available() : Capability::unavailable(refusal);
}

bool Server::createsDesktopsDirectly() {
    return world_.likeX11();
}

Result<void> Server::createDesktop(std::string_view) {
    if (!world_.likeX11())
        return fail(ErrorKind::unavailable, "the overview creates desktops, not the window server");
    world_.addSharedDesktop();
    return {};
}

bool Server::openOverview() {
    world_.advance();
    return world_.openOverview();
}

std::unique_ptr<ChangeWatch> Server::watch(std::optional<WindowNumber>) {
    return std::make_unique<Watch>(world_, executor_);
}

}  // namespace quillo::simulated
