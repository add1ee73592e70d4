// A login item in memory, whose state and failures a test sets.
#pragma once
#include <optional>
#include <utility>

#include "platform/services/LoginItemService.hpp"

namespace quillo {

class SimulatedLoginItem final : public LoginItemService {
  public:
    explicit SimulatedLoginItem(LoginItemStatus status = LoginItemStatus::notRegistered) : current(status) {}

    Capability capability() const override { return able; }
    LoginItemStatus status() const override { return current; }
    Result<void> registerItem() override { return change(registrations, registerFailure, afterRegistering); }
    Result<void> unregisterItem() override {
        return change(unregistrations, unregisterFailure, LoginItemStatus::notRegistered);
    }
    void openSystemSettings() override { ++settingsOpened; }

    Capability able = Capability::available();
    LoginItemStatus current;  // also changes "in the system's settings"
    LoginItemStatus afterRegistering = LoginItemStatus::enabled;
    std::optional<Error> registerFailure{}, unregisterFailure{};
    int registrations = 0, unregistrations = 0, settingsOpened = 0;  // failed ones count

  private:
    Result<void> change(int& calls, const std::optional<Error>& failure, LoginItemStatus becomes) {
        ++calls;
        if (failure) return std::unexpected(*failure);
        current = becomes;
        return {};
    }
};

}  // namespace quillo
