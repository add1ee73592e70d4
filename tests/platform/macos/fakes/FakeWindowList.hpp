// The fake window server's public list of windows, over that of the simulated desktop.
#pragma once
#include "tests/platform/macos/fakes/FakeAnswer.hpp"
#include "tests/platform/macos/fakes/FakeMac.hpp"

namespace quillo::fakes {

class FakeWindowList {
  public:
    explicit FakeWindowList(FakeMac& mac) : mac_(mac) {}
    CFArrayRef copy();

    /// By the window's keys, and by "X" and the like of its bounds; "window" is each window's dictionary,
    /// "list" the whole.
    Substitutes instead;

  private:
    Value dictionaryOf(const WindowListEntry& entry) const;

    FakeMac& mac_;
};

}  // namespace quillo::fakes
