#include "platform/simulated/SimulatedDock.hpp"

#include "platform/simulated/Handle.hpp"

namespace quillo::simulated {
namespace {

constexpr std::string_view overview = "mc", displayPart = "mc.display", spaces = "mc.spaces",
                           spacesList = "mc.spaces.list", addButton = "mc.spaces.add";
constexpr double buttonSize = 32;

Element part(std::string_view name, const std::string& displayID = {}) {
    return Element(std::make_shared<Handle>(Dock::pid, 0, std::string(name), displayID));
}

}  // namespace

bool Dock::exists(const Element& element) const {
    const Handle& handle = handleOf(element);
    if (handle.part.empty()) return true;
    if (!world_.overviewShown()) return false;
    if (handle.part == addButton) return world_.showsAddDesktop(handle.displayID);
    return handle.displayID.empty() || world_.display(handle.displayID);
}

std::vector<Element> Dock::children(const Element& element) const {
    const Handle& handle = handleOf(element);
    std::vector<Element> result;
    if (handle.part.empty()) {
        result.push_back(part(overview));
    } else if (handle.part == overview) {
        for (const Display& display : world_.displays())
            result.push_back(part(displayPart, display.scene.id));
    } else if (handle.part == displayPart) {
        result.push_back(part(spaces, handle.displayID));
    } else if (handle.part == spaces) {
        result.push_back(part(spacesList, handle.displayID));
        result.push_back(part(addButton, handle.displayID));
    }
    std::erase_if(result, [this](const Element& child) { return !exists(child); });
    return result;
}

Rect Dock::frame(const Element& element) const {
    const Handle& handle = handleOf(element);
    const Display* display = world_.display(handle.displayID);
    if (!display) return world_.displays().empty() ? Rect{} : world_.displays().front().scene.frame;
    const Rect& whole = display->scene.frame;
    if (handle.part != addButton) return whole;
    return {whole.maxX() - buttonSize, whole.y, buttonSize, buttonSize};
}

std::expected<AttributeValue, std::int32_t> Dock::read(const Element& element, std::string_view name) {
    const Handle& handle = handleOf(element);
    if (!exists(element)) return std::unexpected(code::invalidElement);
    if (name == ax::children) return children(element);
    if (handle.part.empty()) return std::unexpected(code::attributeUnsupported);
    if (name == ax::identifier) return handle.part;
    if (name == ax::role) return std::string(handle.part == addButton ? "AXButton" : "AXGroup");
    if (name == ax::position) return frame(element).origin();
    if (name == ax::size) return frame(element).size();
    return std::unexpected(code::attributeUnsupported);
}

std::int32_t Dock::perform(const Element& element, std::string_view action) {
    if (!exists(element)) return code::invalidElement;
    if (handleOf(element).part != addButton || action != ax::press) return code::actionUnsupported;
    return world_.pressAddDesktop(handleOf(element).displayID);
}

}  // namespace quillo::simulated
