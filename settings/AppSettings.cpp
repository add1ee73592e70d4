#include "settings/AppSettings.hpp"

#include <algorithm>

#include "WindowEngine/support/Text.hpp"
#include "WindowEngine/support/Url.hpp"

namespace quillo {

AppSettings AppSettings::load(const UserDefaults& defaults) {
    const std::optional<std::string> stored = defaults.data(defaultsKey);
    if (!stored) return {};
    return decode(*stored).value_or(AppSettings{});
}

Result<void> AppSettings::save(UserDefaults& defaults) const {
    return defaults.setData(defaultsKey, encode());
}

Shortcut AppSettings::shortcut(HotKeyAction action) const {
    const auto chosen = shortcuts.find(std::to_string(number(action)));
    return chosen != shortcuts.end() ? chosen->second : defaultShortcut(action);
}

Capture::Options AppSettings::captureOptions() const {
    return {.excludedBundleIdentifiers = excludedBundleIdentifiers,
            .excludedDomains = excludedDomains,
            .enabledAdapters = enabledAdapters};
}

bool AppSettings::excludeDomain(std::string_view typed) {
    std::string rest = text::trim(text::lowercase(typed));
    for (const std::string_view scheme : {"https://", "http://"}) {
        if (!rest.starts_with(scheme)) continue;
        rest.erase(0, scheme.size());
        break;
    }
    rest.erase(0, rest.find_first_not_of('/'));
    rest.erase(std::min(rest.find('/'), rest.size()));
    const std::optional<Url> address = Url::parse("https://" + rest);
    std::optional<std::string> host = address ? address->host() : std::nullopt;
    if (!host || host->empty()) return false;
    excludedDomains.insert(*std::move(host));
    return true;
}

}  // namespace quillo
