#include "WindowEngine/integrations/BrowserScripts.hpp"

#include <algorithm>

#include "WindowEngine/integrations/AppleScript.hpp"

namespace quillo::BrowserScripts {

std::string tell(std::string_view application) {
    return "tell application " + AppleScript::quoted(application);
}

std::vector<std::string> newTabs(std::string_view indent, std::string_view window,
                                 std::span<const Url> urls) {
    std::vector<std::string> lines;
    for (const Url& url : urls) {
        lines.push_back(std::string(indent) + "make new tab at end of tabs of " + std::string(window) +
                        " with properties {URL:" + AppleScript::quoted(url.string()) + "}");
    }
    return lines;
}

std::vector<std::span<const Url>> portions(std::span<const Url> urls) {
    std::vector<std::span<const Url>> result;
    for (; !urls.empty(); urls = urls.subspan(std::min(urls.size(), tabsPerScript)))
        result.push_back(urls.first(std::min(urls.size(), tabsPerScript)));
    return result;
}

bool allWeb(const std::vector<ContextWindow>& windows) {
    return std::ranges::all_of(
        windows, [](const ContextWindow& window) { return std::ranges::all_of(window.urls, &Url::isWeb); });
}

}  // namespace quillo::BrowserScripts
