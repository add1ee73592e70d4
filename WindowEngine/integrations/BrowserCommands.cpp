#include "WindowEngine/integrations/BrowserCommands.hpp"

#include <limits>

#include "WindowEngine/integrations/BrowserScripts.hpp"

namespace quillo::BrowserCommands {
namespace {

/// Bytes of addresses in one command; what else stands in it, a profile's path, has room beside them.
std::size_t mostBytes(BrowserFamily family) {
    return family == BrowserFamily::chromium ? std::size_t{12} * 1024 : std::size_t{64} * 1024;
}

}  // namespace

std::vector<std::span<const Url>> portions(std::span<const Url> urls, BrowserFamily family) {
    return BrowserScripts::portions(urls, std::numeric_limits<std::size_t>::max(), mostBytes(family));
}

std::size_t dropTooLong(std::vector<Url>& urls, BrowserFamily family) {
    return std::erase_if(urls, [&](const Url& url) { return url.string().size() > mostBytes(family); });
}

Arguments newWindow(const BrowserProfile& profile, BrowserFamily family, std::span<const Url> urls) {
    Arguments arguments = profile.arguments;
    // Firefox opens one window for several plain addresses; with the switch, one for the first only.
    if (family == BrowserFamily::chromium || urls.size() == 1) arguments.emplace_back("--new-window");
    for (const Url& url : urls) arguments.push_back(url.string());
    return arguments;
}

Arguments moreTabs(const BrowserProfile& profile, BrowserFamily family, std::span<const Url> urls) {
    Arguments arguments = profile.arguments;
    for (const Url& url : urls) {
        if (family == BrowserFamily::firefox) arguments.emplace_back("--new-tab");
        arguments.push_back(url.string());
    }
    return arguments;
}

}  // namespace quillo::BrowserCommands
