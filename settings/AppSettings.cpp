#include "settings/AppSettings.hpp"

#include <algorithm>
#include <set>
#include <sstream>
#include <utility>

#include "WindowEngine/support/Text.hpp"
#include "WindowEngine/support/Url.hpp"

namespace quillo {
namespace {

/// Of the "http:" in "http:a.example"; "a.example:80" has none.
std::size_t lengthOfScheme(std::string_view address) {
    constexpr std::string_view digits = "0123456789";
    const std::size_t colon = address.find(':');
    const std::size_t end = address.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789+-.");
    if (colon == address.npos || colon == 0 || end != colon) return 0;
    const std::string_view rest = address.substr(colon + 1);
    const std::string_view port = rest.substr(0, rest.find_first_of("/?#"));
    const bool isPort = !port.empty() && port.find_first_not_of(digits) == port.npos;
    return isPort ? 0 : colon + 1;
}

/// Of a name in the ASCII form of UTS 46, or a number. Underscores do occur.
bool isHost(std::string_view host) {
    constexpr std::string_view usual = "abcdefghijklmnopqrstuvwxyz0123456789-_.";
    if (host.contains(':')) return host.find_first_not_of("0123456789abcdef:.") == host.npos;
    const bool whole = !host.empty() && host.front() != '.' && !host.contains("..");
    return whole && host.find_first_not_of(usual) == host.npos;
}

/// Of an address in lower case, with or without its scheme.
std::optional<std::string> hostOf(std::string_view address) {
    address.remove_prefix(lengthOfScheme(address));
    address.remove_prefix(std::min(address.find_first_not_of('/'), address.size()));
    if (address.starts_with("*.")) address.remove_prefix(2);  // as patterns are written
    const std::optional<Url> url = Url::parse("https://" + std::string(address.substr(0, address.find('/'))));
    return url && isHost(url->asciiHost().value_or("")) ? url->host() : std::nullopt;
}

std::string refusal(std::string_view word) {
    const std::string quoted = "“" + text::clipped(word, 60) + "”";
    if (isHost(word)) return quoted + " is only a part of an address. Type all of it, such as example.com";
    return quoted + " is no website. Type its address, such as example.com";
}

}  // namespace

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

WorkspaceAutomation AppSettings::automationOf(const Uuid& workspace) const {
    const auto chosen = automation.find(workspace.lower());
    return chosen != automation.end() ? chosen->second : WorkspaceAutomation{};
}

void AppSettings::setAutomation(const Uuid& workspace, const WorkspaceAutomation& chosen) {
    if (chosen.atLogin)
        for (auto& [id, other] : automation) other.atLogin = false;
    automation[workspace.lower()] = chosen;
    std::erase_if(automation, [](const auto& one) { return one.second == WorkspaceAutomation{}; });
}

Capture::Options AppSettings::captureOptions() const {
    return {.excludedBundleIdentifiers = excludedBundleIdentifiers,
            .excludedDomains = excludedDomains,
            .enabledAdapters = enabledAdapters};
}

Result<void> AppSettings::excludeDomains(std::string_view typed) {
    static const text::Pattern between(R"([\s,]+)");
    std::istringstream addresses(between.replaceAll(text::lowercase(typed), " "));
    std::set<std::string> hosts;
    for (std::string address; addresses >> address;) {
        std::optional<std::string> host = hostOf(address);
        const bool onlyAWord = host == address && !address.contains('.') && address != "localhost";
        if (!host || onlyAWord) return fail(ErrorKind::invalidArgument, refusal(address));
        hosts.insert(*std::move(host));
    }
    if (hosts.empty()) return fail(ErrorKind::invalidArgument, "Type a website, such as example.com");
    excludedDomains.insert(hosts.begin(), hosts.end());
    return {};
}

}  // namespace quillo
