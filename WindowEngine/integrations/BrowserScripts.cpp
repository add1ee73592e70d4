#include "WindowEngine/integrations/BrowserScripts.hpp"

#include <algorithm>

namespace quillo::BrowserScripts {

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
