// What a restore did and did not do, item by item.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "WindowEngine/records/OwnIdentity.hpp"
#include "WindowEngine/restore/WindowChange.hpp"
#include "WindowEngine/support/Uuid.hpp"

namespace quillo {

/// Sums over items. What is back but differs counts as restored too.
struct RestoreTotals {
    std::int64_t restored = 0, adjusted = 0, launched = 0, createdDesktops = 0, opened = 0, skipped = 0,
                 failed = 0;
    bool operator==(const RestoreTotals&) const = default;
};

/// What an outcome means to the person. Whoever shows outcomes has one look for each of these.
enum class Verdict : std::uint8_t {
    remark,   // nothing was to come back
    done,     // something beside a window is there
    back,     // as it was saved
    differs,  // back, but otherwise than it was saved
    leftOut,  // not back; said of an application, none of its windows can come
    failed,
};

/// How one case of RestoreReport::Status is named, judged, counted and worded. Only what makes items names
/// the cases, everybody else asks their rows: a further case is a further row, and at most a picture in a
/// view.
struct RestoreOutcome {
    std::string_view name;  // of the item and of its total, in JSON; views know pictures by it
    Verdict verdict;
    std::int64_t RestoreTotals::* total = nullptr;  // null: counted nowhere
    int place = 0;                                  // of the total in a summary, rising; no two alike
    std::string_view word = name;                   // of an item, and behind the number in a summary
    std::string_view reason{};                      // behind the word, where it is always the same
    std::string_view noun{};                        // of what an item's count counts
    bool nounInSummary = false;                     // where number and word alone would not tell

    /// Something that was saved is not back.
    constexpr bool trouble() const { return verdict == Verdict::leftOut || verdict == Verdict::failed; }
};

/// Items about a whole run carry this program's own name and identifier.
struct RestoreReport {
    // The cases, in the order of their totals in JSON, each with its row and at most one of a count, a text
    // and a reason. Texts never hold a title, a path or an address; a window's title travels in Item.title.
    struct restored {
        static constexpr RestoreOutcome outcome{"restored", Verdict::back, &RestoreTotals::restored, 0};
        bool operator==(const restored&) const = default;
    };
    struct adjusted {
        static constexpr RestoreOutcome outcome{.name = "adjusted",
                                                .verdict = Verdict::differs,
                                                .total = &RestoreTotals::adjusted,
                                                .place = 1,
                                                .reason = "back, but its place or size had to differ"};
        bool operator==(const adjusted&) const = default;
    };
    struct launched {
        static constexpr RestoreOutcome outcome{"launched", Verdict::done, &RestoreTotals::launched, 3};
        bool operator==(const launched&) const = default;
    };
    struct createdDesktops {
        static constexpr RestoreOutcome outcome{.name = "createdDesktops",
                                                .verdict = Verdict::done,
                                                .total = &RestoreTotals::createdDesktops,
                                                .place = 2,
                                                .word = "created",
                                                .noun = "desktop",
                                                .nounInSummary = true};
        std::int64_t count = 0;
        bool operator==(const createdDesktops&) const = default;
    };
    struct opened {
        static constexpr RestoreOutcome outcome{.name = "opened",
                                                .verdict = Verdict::done,
                                                .total = &RestoreTotals::opened,
                                                .place = 4,
                                                .word = "reopened",
                                                .noun = "item"};
        std::int64_t count = 0;
        bool operator==(const opened&) const = default;
    };
    struct note {
        static constexpr RestoreOutcome outcome{.name = "note", .verdict = Verdict::remark, .word = ""};
        std::string text;
        bool operator==(const note&) const = default;
    };
    struct skipped {
        static constexpr RestoreOutcome outcome{"skipped", Verdict::leftOut, &RestoreTotals::skipped, 5};
        std::string reason;
        bool operator==(const skipped&) const = default;
    };
    struct failed {
        static constexpr RestoreOutcome outcome{"failed", Verdict::failed, &RestoreTotals::failed, 6};
        std::string reason;
        bool operator==(const failed&) const = default;
    };
    using Status = std::variant<restored, adjusted, launched, createdDesktops, opened, note, skipped, failed>;

    struct Item {
        Uuid id = Uuid::random();
        std::string app;
        std::string bundleIdentifier;
        std::optional<std::string> title;  // the saved window's, where the item is about one window
        Status status;
        // Quillo's own addition for the command line and the panel: place of the saved window in its
        // application's list, where the item is about one window.
        std::optional<std::int64_t> savedIndex = std::nullopt;
        /// What differed before, of a window that is back; nothing where it stood right already.
        std::optional<WindowChange> change = std::nullopt;
        /// Seconds after the end of the run, of a window that turned up late (LateWindows).
        std::optional<double> late = std::nullopt;

        bool operator==(const Item&) const = default;
    };

    using Totals = RestoreTotals;
    Totals totals() const;
    /// Nothing failed, nothing was skipped, and nobody stopped it.
    bool clean() const;
    /// What became of a window late takes the place, and the identifier, of what was said of it before.
    void amend(Item item);

    std::vector<Item> items;  // in the order the run produced them
    double duration = 0;      // seconds of wall time
    bool cancelled = false;   // ended early; items so far are kept
};

/// The rows of all cases, in their order.
inline constexpr auto restoreOutcomes = []<class... Case>(std::type_identity<std::variant<Case...>>) {
    return std::array{Case::outcome...};
}(std::type_identity<RestoreReport::Status>());

/// Whether no row was forgotten half-way: what is no remark is counted, each total at a place of its own.
constexpr bool countsEachOutcome() {
    for (const RestoreOutcome& one : restoreOutcomes) {
        if (!one.total && one.verdict != Verdict::remark) return false;
        for (const RestoreOutcome& other : restoreOutcomes) {
            const bool different = one.name != other.name;
            if (different && one.total && other.total &&
                (one.place == other.place || one.total == other.total))
                return false;
        }
    }
    return true;
}
static_assert(countsEachOutcome());

const RestoreOutcome& outcomeOf(const RestoreReport::Status& status);

/// What an item holds beside its outcome: a count, or a text, or neither.
struct RestoreDetail {
    std::optional<std::int64_t> count;
    std::string_view textName;  // "text" or "reason", as in JSON; empty where there is no text
    std::string_view text;      // the status's own
};
RestoreDetail detailOf(const RestoreReport::Status& status);

}  // namespace quillo
