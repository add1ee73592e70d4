// Settings that cannot be read: kept aside before anything takes their place, and said.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "platform/services/UserDefaults.hpp"

namespace quillo {

/// What it found is kept in the defaults, so that a restart says it too, until the person has dealt with it.
/// For the executor's thread; the defaults must outlive it.
class SettingsRescue {
  public:
    static constexpr std::string_view defaultsKey = "settingsTrouble";

    explicit SettingsRescue(UserDefaults& defaults);

    /// Before settings are loaded or saved. Where they cannot be read, what is there is kept aside and the
    /// usual ones are stored; where that fails, nothing is changed. True when that is news.
    bool look();
    /// For the person: in the first line what it means to them, in the second one what was damaged and where
    /// it is kept. Absent where there was none, or it was dismissed.
    const std::optional<std::string>& trouble() const { return trouble_; }
    void dismiss();

  private:
    Result<std::string> keepSettingsAside(std::string stored);

    UserDefaults* defaults_;
    std::optional<std::string> trouble_;
};

}  // namespace quillo
