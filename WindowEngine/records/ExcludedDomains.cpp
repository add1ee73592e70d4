#include "WindowEngine/records/ExcludedDomains.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "WindowEngine/support/Domain.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

// An IPv6 address has no brackets in Url::host() either; its colons are no port.
bool isBareAddress(std::string_view entry) {
    return std::ranges::count(entry, ':') > 1 && !entry.contains('[') && !entry.contains("://");
}

std::string domainIn(std::string_view entry) {
    const std::string text = text::trim(entry);
    if (isBareAddress(text)) return asciiDomain(text);
    const auto address = Url::parse(text.contains("://") ? text : "https://" + text);
    std::string domain = address ? address->asciiHost().value_or("") : asciiDomain(text);
    const std::size_t start = domain.starts_with("*.") ? 1 : 0;
    return domain.substr(std::min(domain.find_first_not_of('.', start), domain.size()));
}

bool isOn(std::string_view host, std::string_view domain) {
    if (!host.ends_with(domain)) return false;
    return host.size() == domain.size() || host[host.size() - domain.size() - 1] == '.';
}

}  // namespace

ExcludedDomains::ExcludedDomains(const std::set<std::string>& entries) {
    for (const std::string& entry : entries) {
        if (std::string domain = domainIn(entry); !domain.empty()) domains_.push_back(std::move(domain));
    }
}

bool ExcludedDomains::contain(const Url& address) const {
    if (domains_.empty()) return false;
    const std::optional<std::string> host = address.asciiHost();
    return host &&
           std::ranges::any_of(domains_, [&](const std::string& domain) { return isOn(*host, domain); });
}

}  // namespace quillo
