#include "WindowEngine/restore/DesktopTargets.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <set>

namespace quillo {

std::optional<SpaceID> targetDesktop(const WindowSnapshot& saved, const DesktopTargets& desktops) {
    if (saved.isFullscreen || !saved.desktop) return std::nullopt;
    const auto target = desktops.find(saved.desktop->id());
    return target == desktops.end() ? std::nullopt : std::optional(target->second);
}

namespace DesktopSpaces {
namespace {

constexpr SpaceID firstPlanned = SpaceID{1} << 63;
constexpr std::string_view unreadableDisplay =
    "The desktops of a display could not be read; none were created there";
constexpr std::string_view beyondLimit = "The saved layout exceeds the per-display desktop limit";

const DisplaySnapshot* withID(std::string_view id, DisplayList displays) {
    const auto found = std::ranges::find(displays, id, &DisplaySnapshot::id);
    return found == displays.end() ? nullptr : &*found;
}

/// The current display on which the desktops of a saved one are made when they are missing.
const DisplaySnapshot* standIn(std::string_view id, DisplayList saved, DisplayList current) {
    const DisplaySnapshot* described = withID(id, saved);
    if (!described) return nullptr;
    const DisplaySnapshot* same = withID(id, current);
    return same ? same : DisplayMapper::bestTopologyMatch(*described, saved, current);
}

/// The desktops of one saved display among those of one present display.
class Pairing {
  public:
    Pairing(std::span<const NativeDesktop> current, std::string_view displayID) {
        for (const NativeDesktop& desktop : current) {
            if (desktop.displayID == displayID) present_.push_back({&desktop, nullptr});
        }
    }
    void add(const DesktopSnapshot& saved) { open_.push_back(&saved); }

    void resolve(DesktopTargets& targets) {
        settle([this](const DesktopSnapshot& saved) { return withUuid(saved); });
        settle([this](const DesktopSnapshot& saved) { return atIndex(saved); });
        settle([this](const DesktopSnapshot& saved) { return instead(saved); });
        for (const Present& present : present_) {
            if (present.saved) targets.emplace(present.saved->id(), present.desktop->id);
        }
    }

  private:
    struct Present {
        const NativeDesktop* desktop;
        const DesktopSnapshot* saved;  // whom it stands for; null: nobody
    };

    /// Gives each open desktop what `choose` finds for it, unless that is taken.
    template <class Choose>
    void settle(Choose choose) {
        std::erase_if(open_, [&](const DesktopSnapshot* saved) {
            Present* chosen = choose(*saved);
            if (!chosen || chosen->saved) return false;
            chosen->saved = saved;
            return true;
        });
    }
    Present* withUuid(const DesktopSnapshot& saved) {
        if (!saved.uuid) return nullptr;
        const auto found = std::ranges::find(present_, saved.uuid,
                                             [](const Present& present) { return present.desktop->uuid; });
        return found == present_.end() ? nullptr : &*found;
    }
    Present* atIndex(const DesktopSnapshot& saved) {
        const bool exists = saved.index >= 0 && saved.index < static_cast<std::int64_t>(present_.size());
        return exists ? &present_[static_cast<std::size_t>(saved.index)] : nullptr;
    }
    Present* instead(const DesktopSnapshot& saved) {
        if (!atIndex(saved)) return nullptr;
        const auto free = std::ranges::find(present_, nullptr, &Present::saved);
        return free == present_.end() ? nullptr : &*free;
    }

    std::vector<Present> present_;  // in the order of their indices
    std::vector<const DesktopSnapshot*> open_;
};

void note(DesktopPlan& plan, std::string failure) {
    if (std::ranges::find(plan.failures, failure) == plan.failures.end())
        plan.failures.push_back(std::move(failure));
}

/// Of displays that share one list of desktops, each reports all of it.
std::vector<std::string> displaysWithTheListOf(const std::string& displayID,
                                               std::span<const NativeDesktop> desktops) {
    std::vector<std::string> displays{displayID};
    const auto first = std::ranges::find(desktops, displayID, &NativeDesktop::displayID);
    if (first == desktops.end()) return displays;
    for (const NativeDesktop& desktop : desktops) {
        if (desktop.id == first->id && desktop.displayID != displayID) displays.push_back(desktop.displayID);
    }
    return displays;
}

void addPlanned(DesktopPlan& plan, const DesktopPlan::Creation& creation) {
    const std::vector<std::string> displays = displaysWithTheListOf(creation.displayID, plan.desktops);
    SpaceID next = firstPlanned + plan.desktops.size();  // above all that were given out
    for (std::int64_t index = creation.existing; index < creation.wanted; ++index, ++next) {
        for (const std::string& display : displays)
            plan.desktops.push_back({next, display, index, std::nullopt});
    }
}

void planCreation(DesktopPlan& plan, const std::string& displayID, std::int64_t needed,
                  const Capability& creation) {
    const std::int64_t existing = desktopCount(plan.desktops, displayID);
    if (needed <= existing) return;
    // Every display has one: how many more it needs is not known.
    if (existing == 0) return note(plan, std::string(unreadableDisplay));
    if (!creation) return note(plan, notCreated(existing + 1, creation.reason()));
    if (needed > desktopLimit) note(plan, std::string(beyondLimit));
    const std::int64_t wanted = std::min(needed, desktopLimit);
    if (wanted <= existing) return;
    plan.creations.push_back({displayID, existing, wanted});
    addPlanned(plan, plan.creations.back());
}

}  // namespace

std::map<std::string, std::int64_t> preferredIndices(std::span<const DesktopSnapshot> saved,
                                                     DisplayList savedDisplays, DisplayList current) {
    std::map<std::string, std::int64_t> needed;
    for (const DesktopSnapshot& desktop : saved) {
        const DisplaySnapshot* display = standIn(desktop.displayID, savedDisplays, current);
        if (!display || desktop.index < 0) continue;
        // An index from a stranger's file may be any number.
        const std::int64_t count = std::min(desktop.index, std::numeric_limits<std::int64_t>::max() - 1) + 1;
        std::int64_t& most = needed[display->id];
        most = std::max(most, count);
    }
    return needed;
}

DesktopTargets resolveTargets(std::span<const DesktopSnapshot> saved, std::span<const NativeDesktop> current,
                              DisplayList savedDisplays, DisplayList currentDisplays) {
    std::map<std::string, Pairing> pairings;  // by saved display
    std::set<std::string> seen;
    for (const DesktopSnapshot& desktop : saved) {
        if (!seen.insert(desktop.id()).second) continue;
        const DisplaySnapshot* display =
            DisplayMapper::targetDisplay(desktop.displayID, savedDisplays, currentDisplays);
        if (!display) return {};
        pairings.try_emplace(desktop.displayID, current, display->id).first->second.add(desktop);
    }
    DesktopTargets targets;
    for (auto& [displayID, pairing] : pairings) pairing.resolve(targets);
    return targets;
}

DesktopPlan plan(std::span<const DesktopSnapshot> saved, DisplayList savedDisplays,
                 DisplayList currentDisplays, const DesktopList& reading) {
    DesktopPlan plan;
    if (saved.empty()) return plan;
    if (reading.desktops.empty()) {
        note(plan, reading.unreadable);
        return plan;
    }
    plan.desktops = reading.desktops;
    const auto needed = preferredIndices(saved, savedDisplays, currentDisplays);
    for (const DisplaySnapshot& display : currentDisplays) {
        const auto count = needed.find(display.id);
        if (count != needed.end()) planCreation(plan, display.id, count->second, reading.creation);
    }
    plan.targets = resolveTargets(saved, plan.desktops, savedDisplays, currentDisplays);
    return plan;
}

bool isPlanned(SpaceID space) {
    return space >= firstPlanned;
}

std::string notCreated(std::int64_t number, const std::string& reason) {
    return fmt::format("Could not create Desktop {}: {}", number, reason);
}

std::int64_t desktopCount(std::span<const NativeDesktop> desktops, std::string_view displayID) {
    return std::ranges::count(desktops, displayID, &NativeDesktop::displayID);
}

}  // namespace DesktopSpaces
}  // namespace quillo
