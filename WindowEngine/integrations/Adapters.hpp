// The integrations there are.
#pragma once
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/integrations/ContextAdapter.hpp"

namespace quillo {

/// An integration that is shown to the person and cannot be switched on here.
struct UnavailableAdapter {
    std::string id;
    std::string name;
    std::string reason;

    bool operator==(const UnavailableAdapter&) const = default;
};

namespace Adapters {

/// In this order: Finder, Chromium family, Safari, Firefox. Made once.
std::span<const ContextAdapter* const> all();

/// The first enabled one that handles the application; null when there is none.
const ContextAdapter* adapter(std::string_view bundleIdentifier, const std::set<std::string>& enabled);
/// Null for an identifier that no integration has.
const ContextAdapter* named(std::string_view id);

/// Whether this machine can run one at least.
Capability any(const Platform& platform);
/// Those that this machine cannot run, with the platform's reason.
std::vector<UnavailableAdapter> unavailable(const Platform& platform);

}  // namespace Adapters
}  // namespace quillo
