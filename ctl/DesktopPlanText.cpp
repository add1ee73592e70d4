#include "ctl/DesktopPlanText.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

const NativeDesktop* targetOf(const DesktopPlan& desktops, const WindowPlan& plan) {
    if (!plan.desktop) return nullptr;
    // Where displays share one list, the entry of the window's own display.
    const auto on = [&](const NativeDesktop& desktop) {
        return desktop.id == *plan.desktop && desktop.displayID == plan.displayID;
    };
    const auto found = std::ranges::find_if(desktops.desktops, on);
    return found == desktops.desktops.end() ? nullptr : &*found;
}

}  // namespace

void printDesktops(Output& output, const DesktopPlan& desktops) {
    for (const DesktopPlan::Creation& creation : desktops.creations) {
        const std::int64_t count = creation.wanted - creation.existing;
        if (output.json()) {
            JsonLine line;
            line.add("displayID", creation.displayID)
                .add("existingDesktops", creation.existing)
                .add("createdDesktops", count);
            output.value(std::move(line));
        } else {
            output.line(fmt::format("Desktops: {} would be created on display {}, which has {}",
                                    counted(count, "desktop"), printable(creation.displayID),
                                    creation.existing));
        }
    }
    for (const std::string& failure : desktops.failures) {
        if (output.json()) {
            JsonLine line;
            line.add("reason", failure);
            output.value(std::move(line));
        } else {
            output.line("Desktops: " + output.painted(Style::warning, printable(failure)));
        }
    }
}

std::optional<std::string> desktopText(const DesktopPlan& desktops, const WindowPlan& plan) {
    const NativeDesktop* target = targetOf(desktops, plan);
    if (!target) return std::nullopt;
    return fmt::format("desktop {}{}", target->index + 1,
                       DesktopSpaces::isPlanned(target->id) ? " (to be created)" : "");
}

void addDesktop(JsonLine& line, const DesktopPlan& desktops, const WindowPlan& plan) {
    const NativeDesktop* target = targetOf(desktops, plan);
    if (!target) return;
    line.add("desktop", target->index).add("desktopToBeCreated", DesktopSpaces::isPlanned(target->id));
}

}  // namespace quillo::ctl
