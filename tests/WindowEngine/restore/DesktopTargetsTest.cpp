// Which desktop stands for a saved one, and what would be created. Desktops are written short: "A1:x" is the
// second desktop of display A with the uuid x.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "WindowEngine/restore/DesktopTargets.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo::samples {
namespace {

using Displays = std::vector<DisplaySnapshot>;

/// A is the primary one, B of its model stands to its right, C is larger, D of A's model.
Displays displaysNamed(std::string_view names) {
    Displays displays;
    for (const char name : names) {
        const Rect frame = name == 'A'   ? Rect{0, 0, 1000, 800}
                           : name == 'B' ? Rect{1000, 0, 1000, 800}
                           : name == 'C' ? Rect{2000, 0, 1600, 1200}
                                         : Rect{0, 0, 1000, 800};
        displays.push_back(display(std::string(1, name), frame, displays.empty()));
    }
    return displays;
}

std::vector<DesktopSnapshot> desktopsNamed(const std::string& text) {
    std::vector<DesktopSnapshot> desktops;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const std::size_t colon = word.find(':');
        DesktopSnapshot& desktop =
            desktops.emplace_back(DesktopSnapshot{word.substr(0, 1), std::stoll(word.substr(1)), {}});
        if (colon != std::string::npos) desktop.uuid = word.substr(colon + 1);
    }
    return desktops;
}

/// Their ids count from 1; "=" begins again, for displays that share one list.
std::vector<NativeDesktop> present(const std::string& text) {
    std::vector<NativeDesktop> desktops;
    SpaceID id = 0;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, '='); id = 0) {
        for (const DesktopSnapshot& desktop : desktopsNamed(part))
            desktops.push_back({++id, desktop.displayID, desktop.index, desktop.uuid});
    }
    return desktops;
}

TEST(DesktopTargets, ASavedDesktopHasOneOfTheDisplayItsWindowsGoTo) {
    const struct {
        const char *what, *savedDisplays, *saved, *displays, *current, *targets;
    } cases[] = {
        {"as it was", "AB", "A0:a A1:b B0:c", "AB", "A0:a A1:b B0:c", "A0>1 A1>2 B0>3"},
        {"no uuids", "AB", "A0 A1 B0", "AB", "A0 A1 B0", "A0>1 A1>2 B0>3"},
        {"reordered", "A", "A0:a A1:b", "A", "A0:b A1:a", "A0>2 A1>1"},
        {"one in front", "A", "A0:a A1:b", "A", "A0:x A1:a A2:b", "A0>2 A1>3"},
        {"new uuids", "A", "A0:a A1:b", "A", "A0:x A1:y", "A0>1 A1>2"},
        {"the first replaced", "A", "A0:a A1:b", "A", "A0:b A1:x", "A0>2 A1>1"},
        {"the middle replaced", "A", "A0:a A1:b A2:c", "A", "A0:a A1:c A2:x", "A0>1 A1>3 A2>2"},
        {"a replaced one keeps its index first", "A", "A0:a A1:b A2:c A3:d", "A", "A0:b A1:x A2:y A3:z",
         "A0>2 A1>1 A2>3 A3>4"},
        {"too few", "A", "A0 A1 A2", "A", "A0 A1", "A0>1 A1>2"},
        {"too few, the first kept", "A", "A0:a A1:b A2:c", "A", "A0:c", "A2>1"},
        {"uuid gone to another display", "AB", "A0:a A1:b B0:c", "AB", "A0:x A1:y B0:b", "A0>1 A1>2 B0>3"},
        {"display of the same model instead", "AC", "A0:a A1:b", "DC", "D0:x D1:y C0:z", "A0>1 A1>2"},
        {"it brought its desktops along", "CA", "C0:c A0:a A1:b", "CD", "C0:c D0:b D1:a", "A0>3 A1>2 C0>1"},
        {"nothing like it: the primary one", "AC", "C0:c C1:d", "A", "A0:x A1:y A2:d", "C0>1 C1>3"},
        {"both on the one that is left", "AB", "A0 A1 B0 B1", "A", "A0 A1", "A0>1 A1>2 B0>1 B1>2"},
        {"a display nobody described", "A", "Z0 Z1", "AB", "A0 B0", "Z0>1"},
        {"one list of both", "AB", "A0 A1 B0 B1", "AB", "A0 A1=B0 B1", "A0>1 A1>2 B0>1 B1>2"},
        {"no display", "A", "A0", "", "", ""},
        {"twice the same, no such index", "A", "A0:a A0:b A-1 A99", "A", "A0:b A1:a", "A0>2"},
    };
    for (const auto& c : cases) {
        std::string targets;
        for (const auto& [id, space] :
             DesktopSpaces::resolveTargets(desktopsNamed(c.saved), present(c.current),
                                           displaysNamed(c.savedDisplays), displaysNamed(c.displays)))
            targets += (targets.empty() ? "" : " ") + id.substr(0, 1) + id.substr(id.find("#desktop") + 8) +
                       ">" + std::to_string(space);
        EXPECT_EQ(targets, c.targets) << c.what;
    }
}

TEST(DesktopTargets, WhatIsMissingIsPlannedUpToTheLimit) {
    const auto cannot = Capability::unavailable("There is no way to do it.");
    const std::string sixteen = "A0 A1 A2 A3 A4 A5 A6 A7 A8 A9 A10 A11 A12 A13 A14 A15";
    const std::string beyond = "The saved layout exceeds the per-display desktop limit";
    const struct {
        const char *what, *savedDisplays;
        std::string saved;
        const char* displays;
        std::string current, creations, failures;
        Capability creation = Capability::available();
    } cases[] = {
        {"nothing saved", "A", "", "A", "", "", ""},
        {"enough", "A", "A0 A1", "A", "A0 A1 A2", "", ""},
        {"one on each", "AB", "A2 B0 B1", "AB", "A0 A1 B0", "A 2-3 B 1-2 ", ""},
        {"one list for both", "AB", "A2 B2", "AB", "A0=B0", "A 1-3 ", ""},
        {"one list, the second needs more", "AB", "A1 B2", "AB", "A0=B0", "A 1-2 B 2-3 ", ""},
        {"a display of the same model", "A", "A1", "D", "D0", "D 1-2 ", ""},
        {"nothing like the display", "C", "C3", "A", "A0", "", ""},
        {"nobody described the display", "", "A3", "A", "A0", "", ""},
        {"too many", "A", "A19", "A", "A0", "A 1-16 ", beyond},
        {"as many as can be", "A", "A16", "A", sixteen, "", beyond},
        {"an index of nobody's", "A", "A9223372036854775807 A-5", "A", "A0", "A 1-16 ", beyond},
        {"unreadable", "A", "A1", "A", "", "", "unreadable"},
        {"impossible", "AB", "A1 B3", "AB", "A0 B0", "",
         "Could not create Desktop 2: There is no way to do it.", cannot},
        {"impossible and not needed", "A", "A0", "A", "A0", "", "", cannot},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto saved = desktopsNamed(c.saved);
        const DesktopPlan plan =
            DesktopSpaces::plan(saved, displaysNamed(c.savedDisplays), displaysNamed(c.displays),
                                {present(c.current), c.creation, "unreadable"});
        std::string creations, failures;
        for (const auto& creation : plan.creations)
            creations += creation.displayID + " " + std::to_string(creation.existing) + "-" +
                         std::to_string(creation.wanted) + " ";
        for (const std::string& failure : plan.failures) failures += failure;
        EXPECT_EQ(creations, c.creations);
        EXPECT_EQ(failures, c.failures);
        // What exists or would be made has its number, and each saved desktop within the limit a target.
        for (const DesktopSnapshot& desktop : saved) {
            const auto target = plan.targets.find(desktop.id());
            if (target == plan.targets.end()) continue;
            const auto native = std::ranges::find(plan.desktops, target->second, &NativeDesktop::id);
            ASSERT_NE(native, plan.desktops.end());
            EXPECT_EQ(native->index, desktop.index);
            EXPECT_EQ(DesktopSpaces::isPlanned(native->id),
                      native->index >= DesktopSpaces::desktopCount(present(c.current), native->displayID));
        }
    }
}

}  // namespace
}  // namespace quillo::samples
