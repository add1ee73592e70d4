// What a restore did and did not do, item by item.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "WindowEngine/records/OwnIdentity.hpp"
#include "WindowEngine/support/Uuid.hpp"

namespace quillo {

/// Items about a whole run carry this program's own name and identifier.
struct RestoreReport {
    // Texts never hold a title, a path or an address; a window's title travels in Item.title.
    struct createdDesktops {
        std::int64_t count = 0;
        bool operator==(const createdDesktops&) const = default;
    };
    struct opened {
        std::int64_t count = 0;
        bool operator==(const opened&) const = default;
    };
    struct note {
        std::string text;
        bool operator==(const note&) const = default;
    };
    struct skipped {
        std::string reason;
        bool operator==(const skipped&) const = default;
    };
    struct failed {
        std::string reason;
        bool operator==(const failed&) const = default;
    };
    struct restored {
        bool operator==(const restored&) const = default;
    };
    struct adjusted {
        bool operator==(const adjusted&) const = default;
    };
    struct launched {
        bool operator==(const launched&) const = default;
    };
    using Status = std::variant<createdDesktops, opened, note, skipped, failed, restored, adjusted, launched>;

    struct Item {
        Uuid id = Uuid::random();
        std::string app;
        std::string bundleIdentifier;
        std::optional<std::string> title;  // the saved window's, where the item is about one window
        Status status;
        // Quillo's own addition for the command line and the panel: place of the saved window in its
        // application's list, where the item is about one window.
        std::optional<std::int64_t> savedIndex = std::nullopt;

        bool operator==(const Item&) const = default;
    };

    /// Totals over items. An adjusted window counts as restored; notes count nowhere.
    struct Totals {
        std::int64_t restored = 0, adjusted = 0, launched = 0, createdDesktops = 0, opened = 0, skipped = 0,
                     failed = 0;
        bool operator==(const Totals&) const = default;
    };
    Totals totals() const;

    std::vector<Item> items;  // in the order the run produced them
    double duration = 0;      // seconds of wall time
    bool cancelled = false;   // ended early; items so far are kept
};

}  // namespace quillo
