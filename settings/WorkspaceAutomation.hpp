// What brings one workspace back besides the person's choosing it in the window. A setting of this machine,
// not a part of the workspace: a file from elsewhere cannot bring keys with it.
#pragma once
#include <optional>

#include "settings/Shortcut.hpp"

namespace quillo {

struct WorkspaceAutomation {
    std::optional<Shortcut> shortcut = {};  // works in any application
    bool withoutAsking = false;             // links and other programs have it resumed unasked

    bool operator==(const WorkspaceAutomation&) const = default;
};

}  // namespace quillo
