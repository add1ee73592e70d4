// The web domains that a person keeps out of saved workspaces. Pure.
#pragma once
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/support/Url.hpp"

namespace quillo {

class ExcludedDomains {
  public:
    /// Entries as people type them: white space around them, capitals, other scripts and a trailing dot do
    /// not matter. Whoever pasted an address, wrote a port or a pattern means the domain in it:
    /// "https://shop.example:8080/cart", "*.shop.example" and ".shop.example" all exclude shop.example. An
    /// entry that holds no domain excludes nothing.
    explicit ExcludedDomains(const std::set<std::string>& entries);

    bool empty() const { return domains_.empty(); }
    /// Whether the address is on one of the domains or on a subdomain of it; never without a host.
    bool contain(const Url& address) const;

  private:
    std::vector<std::string> domains_;  // as asciiDomain() spells them, none empty
};

}  // namespace quillo
