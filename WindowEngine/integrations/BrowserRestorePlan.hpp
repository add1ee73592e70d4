// Which saved browser window goes into which open one, and which addresses are still to be opened there.
// Pure.
#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "WindowEngine/integrations/ContextAdapter.hpp"

namespace quillo::BrowserRestorePlan {

struct Step {
    std::optional<std::int64_t> index;  // position in the live list of the window to reuse; none: a new one
    std::vector<Url> urls;              // to be opened in it, in order; never empty
    std::size_t saved = 0;              // position in the saved list

    bool operator==(const Step&) const = default;
};

/// One step for each saved window that lacks an address, in saved order.
///
/// With `reuseExisting`, a saved window takes the open window that shares most of its addresses with it (the
/// larger part of both together, then the earlier one), and only what that lacks is opened there; what is
/// left takes windows that show nothing yet, in order; only then is a new one made. A window in which other
/// things are open is not filled up with tabs that never were in it. An address that is no web address is
/// never opened.
std::vector<Step> make(std::span<const ContextWindow> saved, std::span<const ContextWindow> live,
                       bool reuseExisting);

/// The same in an integration's terms.
std::vector<AdapterStep> adapterSteps(const AppContext& saved, const AppContext& current);

}  // namespace quillo::BrowserRestorePlan
