#include "platform/simulated/SimulatedToolbar.hpp"

#include <charconv>

#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated::Toolbar {
namespace {

constexpr std::string_view bar = "toolbar", level = "toolbar/", content = "content";

/// How far below the toolbar a part lies; none for the content.
std::optional<std::int64_t> depthOf(std::string_view part) {
    if (part == bar) return 0;
    if (!part.starts_with(level)) return std::nullopt;
    part.remove_prefix(level.size());
    std::int64_t depth = 0;
    std::from_chars(part.data(), part.data() + part.size(), depth);
    return depth;
}

std::string partAt(std::int64_t depth) {
    return depth == 0 ? std::string(bar) : std::string(level) + std::to_string(depth);
}

std::vector<Element> children(const Window& window, const Handle& handle) {
    const auto child = [&](std::string part) {
        return Element(std::make_shared<Handle>(handle.pid, handle.number, std::move(part)));
    };
    if (handle.part.empty() && window.state.toolbar) return {child(std::string(content)), child(partAt(0))};
    if (handle.part.empty()) return {child(std::string(content))};
    const auto depth = depthOf(handle.part);
    if (!depth || *depth >= window.state.addressFieldDepth) return {};
    return {child(partAt(*depth + 1))};
}

std::string addressWords(const Application& application, const Window& window) {
    std::string words = "smart search field";
    if (window.state.privateBrowsing) words += ", private browsing";
    if (application.scene.language != "en") words += " in language " + application.scene.language;
    return words;
}

}  // namespace

std::expected<AttributeValue, std::int32_t> read(const Application& application, const Window& window,
                                                 const Handle& handle, std::string_view name) {
    const auto depth = depthOf(handle.part);
    if (depth && !window.state.toolbar) return std::unexpected(code::invalidElement);
    const bool addressField = depth == window.state.addressFieldDepth;
    if (name == ax::children) return children(window, handle);
    if (name == ax::role && depth == 0) return std::string("AXToolbar");
    if (name == ax::role) return std::string(addressField ? "AXTextField" : "AXGroup");
    if (name == ax::identifier && addressField) return std::string("WEB_BROWSER_ADDRESS_AND_SEARCH_FIELD");
    if (name == ax::description && addressField) return addressWords(application, window);
    return std::unexpected(code::attributeUnsupported);
}

}  // namespace quillo::simulated::Toolbar
