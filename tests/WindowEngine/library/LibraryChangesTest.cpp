#include <gtest/gtest.h>

#include "WindowEngine/library/LibraryChanges.hpp"

namespace quillo {
namespace {

TEST(LibraryChanges, EachIsToldOnceAndOnlyWhatHappened) {
    using enum LibraryChange::Kind;
    const Uuid one = Uuid::fromBytes({1}), two = Uuid::fromBytes({2});
    const auto at = [](int seconds) { return Instant(std::chrono::seconds(seconds)); };
    const LibraryEntry usual{one, "Work", at(1), at(1), at(1)}, other{two, "Desk", at(1), at(1), {}};
    const struct {
        const char* what;
        std::vector<LibraryEntry> before, after;
        std::vector<LibraryChange> changes;
    } cases[] = {
        {"nothing", {usual, other}, {other, usual}, {}},
        {"a new one", {usual}, {usual, other}, {{saved, two, "Desk", {}}}},
        {"gone", {usual, other}, {other}, {{deleted, one, "Work", {}}}},
        {"renamed", {usual}, {{one, "Play", at(2), at(1), at(1)}}, {{renamed, one, "Play", "Work"}}},
        {"captured anew", {usual}, {{one, "Work", at(2), at(2), at(1)}}, {{saved, one, "Work", {}}}},
        {"another icon", {usual}, {{one, "Work", at(2), at(1), at(1)}}, {{saved, one, "Work", {}}}},
        {"brought back", {usual}, {{one, "Work", at(1), at(1), at(2)}}, {{restored, one, "Work", {}}}},
        {"all at once",
         {usual, other},
         {{one, "Play", at(2), at(2), at(2)}},
         {{deleted, two, "Desk", {}},
          {renamed, one, "Play", "Work"},
          {saved, one, "Play", {}},
          {restored, one, "Play", {}}}},
    };
    for (const auto& c : cases) EXPECT_EQ(changesBetween(c.before, c.after), c.changes) << c.what;
}

}  // namespace
}  // namespace quillo
