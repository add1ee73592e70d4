// The application itself as a login item.
#pragma once
#include "platform/services/LoginItemService.hpp"

namespace quillo {

class MacLoginItem final : public LoginItemService {
  public:
    LoginItemStatus status() const override;
    Result<void> registerItem() override;
    Result<void> unregisterItem() override;
    void openSystemSettings() override;
};

}  // namespace quillo
