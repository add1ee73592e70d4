// Makes the desktops that a saved layout needs and the present one lacks.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/restore/DesktopTargets.hpp"

namespace quillo {

struct DesktopPreparation {
    DesktopTargets targets;  // a saved desktop without one is absent
    std::int64_t created = 0;
    std::vector<std::string> failures;  // sentences for the report, in the order in which they arose
};

namespace DesktopSpaces {

/// What the window server tells of desktops now.
DesktopList read(DesktopAccess& desktop);

/// Creates what is missing, display after display, and resolves the targets against what is there in the end.
/// No failure stops a restore: each is logged and kept. Without saved desktops nothing is read. The desktop
/// in front stays in front. Cancelled, it closes the overview and returns what was created until then,
/// without targets, instead of throwing. The references must outlive the task.
Task<DesktopPreparation> prepare(DesktopAccess& desktop, std::span<const DesktopSnapshot> saved,
                                 DisplayList savedDisplays, DisplayList current);

}  // namespace DesktopSpaces
}  // namespace quillo
