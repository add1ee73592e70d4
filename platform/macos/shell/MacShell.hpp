// The application's place on a Mac's desktop.
#pragma once
#include "platform/services/Shell.hpp"

namespace quillo {

/// Main thread; needs an application object.
class MacShell final : public Shell {
  public:
    void setActivationPolicy(ActivationPolicy policy) override;
    void setAppearance(Appearance appearance) override;
    Capability canOpenSystemSettings() const override { return Capability::available(); }
    void openSystemSettings(const std::string& page) override;
    /// Asks for the person's permission the first time; without it nothing is shown.
    void notify(const std::string& title, const std::string& text) override;
};

}  // namespace quillo
