#include "WindowEngine/integrations/BrowserScripts.hpp"

#include <algorithm>

namespace quillo::BrowserScripts {

std::vector<std::span<const Url>> portions(std::span<const Url> urls, std::size_t mostTabs,
                                           std::size_t mostBytes) {
    std::vector<std::span<const Url>> result;
    while (!urls.empty()) {
        std::size_t count = 1, bytes = urls.front().string().size();
        while (count < std::min(urls.size(), mostTabs) && (bytes += urls[count].string().size()) <= mostBytes)
            ++count;
        result.push_back(urls.first(count));
        urls = urls.subspan(count);
    }
    return result;
}

bool allWeb(const std::vector<ContextWindow>& windows) {
    return std::ranges::all_of(
        windows, [](const ContextWindow& window) { return std::ranges::all_of(window.urls, &Url::isWeb); });
}

}  // namespace quillo::BrowserScripts
