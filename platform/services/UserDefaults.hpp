// The person's defaults: small values under names, kept by the system or in one file.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "WindowEngine/support/Error.hpp"

namespace quillo {

/// For the executor's thread. Reading never fails: what cannot be read counts as not set.
class UserDefaults {
  public:
    virtual ~UserDefaults() = default;

    /// What the program notes for itself, apart from what the person has chosen where a person may damage
    /// that: what happens to one leaves the other. These same defaults where there is no difference. Lives as
    /// long as they do.
    virtual UserDefaults& notes() { return *this; }

    /// Where they are kept: a file, or what the system calls them.
    virtual std::string place() const = 0;
    /// Why they count as empty although there are some; for the person.
    virtual std::optional<std::string> trouble() const { return std::nullopt; }

    /// Moves what is behind trouble() to where nothing overwrites it, and says where that is; the rest counts
    /// from then on. On failure all is as before.
    virtual Result<std::string> keepAside() { return fail(ErrorKind::unavailable, "It cannot be moved"); }

    /// What other programs have set meanwhile is there from now on.
    virtual void refresh() {}

    /// Absent also where a value of another type stands under the key.
    virtual std::optional<std::string> data(std::string_view key) const = 0;
    /// Sets, or with no bytes removes. On failure the values are as before, here and in what is kept.
    virtual Result<void> setData(std::string_view key, std::optional<std::string> bytes) = 0;
    /// False where nothing is set.
    virtual bool boolean(std::string_view key) const = 0;
    virtual Result<void> setBoolean(std::string_view key, bool value) = 0;
};

}  // namespace quillo
