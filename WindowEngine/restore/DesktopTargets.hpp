// Which present desktop stands for each saved one, and which are missing. Pure.
//
// A saved desktop goes to the display that its windows go to (DisplayMapper::targetDisplay), and there to one
// of the desktops of that display:
// 1. the one with the saved uuid, wherever it stands in the list by now;
// 2. otherwise the one at the saved index, unless that is another saved desktop's by its uuid;
// 3. otherwise, its index taken, the first that stands for no other desktop of the same saved display.
// One whose index lies beyond the last desktop has no target: its windows stay where they are, which is
// better than a wrong desktop. So two desktops of one saved display never become one, while desktops of two
// saved displays do where only one display is left for both.
#pragma once
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/desktop/DesktopSpaces.hpp"
#include "WindowEngine/restore/DisplayMapper.hpp"

namespace quillo {

/// The space that stands for each saved desktop, by DesktopSnapshot::id().
using DesktopTargets = std::map<std::string, SpaceID>;

/// Where a saved window is to stand; absent for one that was saved on no desktop, or on one that nothing
/// stands for. A full-screen window has a desktop of its own.
std::optional<SpaceID> targetDesktop(const WindowSnapshot& saved, const DesktopTargets& desktops);

/// What the window server tells of desktops at one moment.
struct DesktopList {
    std::vector<NativeDesktop> desktops;
    Capability creation = Capability::available();
    /// Why nothing could be read, in words for the report, where `desktops` is empty.
    std::string unreadable;
};

/// What preparing the desktops of a workspace would do and come to.
struct DesktopPlan {
    struct Creation {
        std::string displayID;
        std::int64_t existing = 0;
        std::int64_t wanted = 0;  // in all; more than exist, at most the limit of a display

        bool operator==(const Creation&) const = default;
    };
    /// In the order of the current displays. Where displays share one list of desktops (each reports the same
    /// spaces), what is made for one display serves the others.
    std::vector<Creation> creations;
    /// As they would be afterwards: what is yet to be created is isPlanned() and has no uuid.
    std::vector<NativeDesktop> desktops;
    DesktopTargets targets;             // into `desktops`
    std::vector<std::string> failures;  // known before anything is tried
};

namespace DesktopSpaces {

inline constexpr std::int64_t desktopLimit = 16;  // of one display

using DisplayMapper::DisplayList;

/// Per current display id, how many desktops the saved layout needs there: one more than its largest saved
/// index. Saved displays that are attached stand for themselves, others for the best topology match; where
/// there is none, nothing is needed for their desktops.
std::map<std::string, std::int64_t> preferredIndices(std::span<const DesktopSnapshot> saved,
                                                     DisplayList savedDisplays, DisplayList current);

/// Of two saved desktops with one id the first counts.
DesktopTargets resolveTargets(std::span<const DesktopSnapshot> saved, std::span<const NativeDesktop> current,
                              DisplayList savedDisplays, DisplayList currentDisplays);

/// Without saved desktops there is nothing to do, and nothing to say.
DesktopPlan plan(std::span<const DesktopSnapshot> saved, DisplayList savedDisplays,
                 DisplayList currentDisplays, const DesktopList& reading);

/// Whether this is no desktop of the window server but one that a plan would create.
bool isPlanned(SpaceID space);

/// How a loop of creation that ends early is reported. `number` counts from 1.
std::string notCreated(std::int64_t number, const std::string& reason);

std::int64_t desktopCount(std::span<const NativeDesktop> desktops, std::string_view displayID);

}  // namespace DesktopSpaces
}  // namespace quillo
