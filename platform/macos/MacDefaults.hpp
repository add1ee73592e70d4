// The person's defaults as the system keeps them for each application.
#pragma once
#include <set>
#include <string>

#include "platform/macos/CFRef.hpp"
#include "platform/services/UserDefaults.hpp"

namespace quillo {

/// Under the application's identifier, whichever program of ours asks: the command line has the same ones.
/// Data and flags stand as the system's own data and booleans. What another program wrote comes with the next
/// set or refresh, and otherwise when the system passes it on.
class MacDefaults final : public UserDefaults {
  public:
    static constexpr std::string_view usualApplication = "app.quillo.Quillo";

    /// The identifier is valid UTF-8.
    explicit MacDefaults(std::string_view application = usualApplication);

    std::string place() const override;
    /// Names the keys that were asked for and hold a value of another type.
    std::optional<std::string> trouble() const override;
    /// Each value of another type, under its key followed by ".damaged".
    Result<std::string> keepAside() override;
    void refresh() override;

    std::optional<std::string> data(std::string_view key) const override;
    Result<void> setData(std::string_view key, std::optional<std::string> bytes) override;
    bool boolean(std::string_view key) const override;
    Result<void> setBoolean(std::string_view key, bool value) override;

  private:
    CFRef<CFTypeRef> value(CFStringRef key) const;
    template <class Value>
    std::optional<Value> read(std::string_view key, std::optional<Value> (*as)(CFTypeRef)) const;
    Result<void> set(std::string_view key, CFTypeRef value);

    CFRef<CFStringRef> application_;
    mutable std::set<std::string, std::less<>> misplaced_;  // keys with values of another type
};

}  // namespace quillo
