#include "WindowEngine/integrations/BrowserScripts.hpp"

#include <algorithm>

namespace quillo::BrowserScripts {

std::vector<std::span<const Url>> portions(std::span<const Url> urls) {
    std::vector<std::span<const Url>> result;
    while (!urls.empty()) {
        std::size_t count = 1, bytes = urls.front().string().size();
        while (count < std::min(urls.size(), tabsPerScript) &&
               (bytes += urls[count].string().size()) <= bytesPerScript)
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
