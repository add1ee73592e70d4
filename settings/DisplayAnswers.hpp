// What the person said of identical displays that nothing tells apart: which of those attached is which of
// those saved.
#pragma once
#include <string_view>

#include "WindowEngine/restore/DisplayTwins.hpp"
#include "WindowEngine/support/Error.hpp"
#include "platform/services/UserDefaults.hpp"

namespace quillo {

/// Kept in the defaults, for each pair of sets of displays. What cannot be read counts as never said, and
/// what cannot be written leaves all as it was. For the executor's thread.
class DisplayAnswers {
  public:
    static constexpr std::string_view defaultsKey = "displayAnswers";
    /// Beyond this many pairs of sets all are forgotten: the person is asked once more.
    static constexpr std::size_t mostKept = 100;

    explicit DisplayAnswers(UserDefaults& defaults) : defaults_(&defaults) {}

    /// Empty where nothing was said of these.
    DisplayTwins::Pairs find(DisplayMapper::DisplayList saved, DisplayMapper::DisplayList present) const;
    Result<void> remember(DisplayMapper::DisplayList saved, DisplayMapper::DisplayList present,
                          const DisplayTwins::Pairs& pairs);

  private:
    using All = std::map<std::string, DisplayTwins::Pairs>;
    All read() const;

    UserDefaults* defaults_;
};

}  // namespace quillo
