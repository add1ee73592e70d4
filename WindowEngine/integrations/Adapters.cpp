#include "WindowEngine/integrations/Adapters.hpp"

#include <algorithm>
#include <array>

#include "WindowEngine/integrations/ChromiumAdapter.hpp"
#include "WindowEngine/integrations/FinderAdapter.hpp"
#include "WindowEngine/integrations/FirefoxAdapter.hpp"
#include "WindowEngine/integrations/SafariAdapter.hpp"

namespace quillo::Adapters {

std::span<const ContextAdapter* const> all() {
    static const FinderAdapter finder;
    static const ChromiumAdapter chromium;
    static const SafariAdapter safari;
    static const FirefoxAdapter firefox;
    static const std::array<const ContextAdapter*, 4> adapters{&finder, &chromium, &safari, &firefox};
    return adapters;
}

const ContextAdapter* adapter(std::string_view bundleIdentifier, const std::set<std::string>& enabled) {
    const auto found = std::ranges::find_if(all(), [&](const ContextAdapter* adapter) {
        return enabled.contains(adapter->id()) &&
               adapter->bundleIdentifiers().contains(std::string(bundleIdentifier));
    });
    return found == all().end() ? nullptr : *found;
}

const ContextAdapter* named(std::string_view id) {
    const auto found =
        std::ranges::find_if(all(), [&](const ContextAdapter* adapter) { return adapter->id() == id; });
    return found == all().end() ? nullptr : *found;
}

Capability any(const Platform& platform) {
    for (const ContextAdapter* adapter : all()) {
        if (adapter->available(platform)) return Capability::available();
    }
    return all().front()->available(platform);
}

std::vector<UnavailableAdapter> unavailable(const Platform& platform) {
    std::vector<UnavailableAdapter> result;
    for (const ContextAdapter* adapter : all()) {
        if (const Capability able = adapter->available(platform); !able)
            result.push_back({adapter->id(), adapter->name(platform), able.reason()});
    }
    return result;
}

}  // namespace quillo::Adapters
