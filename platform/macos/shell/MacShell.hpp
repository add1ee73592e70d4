// The application's place on a Mac's desktop.
#pragma once
#include <memory>

#include "platform/services/Shell.hpp"

namespace quillo {

/// Main thread; needs an application object. Before the application's loop starts, or the click that started
/// the application is not heard.
class MacShell final : public Shell {
  public:
    MacShell();
    ~MacShell() override;
    void setActivationPolicy(ActivationPolicy policy) override;
    void setAppearance(Appearance appearance) override;
    Capability canOpenSystemSettings() const override { return Capability::available(); }
    void openSystemSettings(const std::string& page) override;
    /// Asks for the person's permission the first time; without it nothing is shown.
    void notify(const std::string& title, const std::string& text) override;
    void offer(const std::string& title, const std::string& text, const std::string& button,
               std::function<void()> taken) override;
    bool reducedMotion() const override;

  private:
    struct Registrations;
    std::unique_ptr<Registrations> registrations_;
};

}  // namespace quillo
