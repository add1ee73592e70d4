// Internal to Accessibility: every reading of another application passes here, so that one that hangs is left
// alone for a while after it cost its messaging timeout.
#pragma once
#include <span>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo::Accessibility {

struct OwnedRequest {
    ProcessID owner = 0;
    AttributeRequest request;
};

/// As AccessibilityService::read; requests to an application that rests answer `timedOut` unasked.
std::vector<std::vector<Attribute>> read(DesktopAccess& desktop, std::span<const OwnedRequest> requests);
std::vector<Attribute> read(DesktopAccess& desktop, ProcessID owner, const AttributeRequest& request);

bool isTimeout(const Attribute& attribute);
/// A timeout that nobody waited for: the application rests, or another one of the batch hangs.
bool isUnasked(const Attribute& attribute);
/// Whether the owner does not answer now; then a write would only wait for it.
bool unresponsive(const DesktopAccess& desktop, ProcessID owner);

}  // namespace quillo::Accessibility
