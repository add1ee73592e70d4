// Whether the system opens this program when the person logs in.
#pragma once
#include <cstdint>

#include "WindowEngine/services/Capability.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo {

/// The numbers are the system's own.
enum class LoginItemStatus : std::uint8_t {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2,  // registered, and switched off in the system's own settings
    notFound = 3,          // this program is not installed where the system could open it
};

/// For the executor's thread.
class LoginItemService {
  public:
    virtual ~LoginItemService() = default;

    /// Whether this program can be a login item at all.
    virtual Capability capability() const { return Capability::available(); }
    virtual LoginItemStatus status() const = 0;
    virtual Result<void> registerItem() = 0;
    virtual Result<void> unregisterItem() = 0;
    /// Whether openSystemSettings() has something to open.
    virtual bool hasSystemSettings() const { return true; }
    /// Opens the system's own list of login items, where there is one.
    virtual void openSystemSettings() = 0;
};

}  // namespace quillo
