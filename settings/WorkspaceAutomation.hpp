// What brings one workspace back besides the person's choosing it in the window. A setting of this machine,
// not a part of the workspace: a file from elsewhere cannot bring keys with it.
#pragma once
#include <cstdint>
#include <optional>

#include "settings/Shortcut.hpp"

namespace quillo {

/// On which days a workspace comes back at its time.
enum class Days : std::uint8_t { never, daily, weekdays };
inline constexpr std::int64_t minutesOfDay = 24 * 60;

struct WorkspaceAutomation {
    std::optional<Shortcut> shortcut = {};  // works in any application
    bool withoutAsking = false;             // links and other programs have it resumed unasked
    bool atLogin = false;                   // of one workspace at most
    bool atDisplays = false;                // when exactly those displays come that it was saved with
    Days days = Days::never;
    std::int64_t minute = 9 * 60;  // of these days, by the clock on the wall

    bool operator==(const WorkspaceAutomation&) const = default;
};

}  // namespace quillo
