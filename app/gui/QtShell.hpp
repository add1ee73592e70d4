// The application's place in a free desktop.
#pragma once
#include <QObject>

#include "app/gui/DesktopNotifier.hpp"
#include "app/gui/SystemAppearance.hpp"
#include "app/gui/Theme.hpp"
#include "platform/services/Shell.hpp"

namespace quillo {

class QtShell final : public QObject, public Shell {
    Q_OBJECT

  public:
    /// All must outlive it.
    QtShell(Theme& theme, SystemAppearance& system, DesktopNotifier& notifier, QObject* parent = nullptr);

    /// Task lists show whichever windows are open: there is nothing to do, and it is only remembered.
    void setActivationPolicy(ActivationPolicy policy) override { policy_ = policy; }
    ActivationPolicy activationPolicy() const { return policy_; }
    /// Tells the theme, and follows the desktop where it is to be as the desktop is.
    void setAppearance(Appearance appearance) override;
    Capability canOpenSystemSettings() const override;
    void openSystemSettings(const std::string& page) override;
    void notify(const std::string& title, const std::string& text) override;

  private:
    void apply();

    Theme& theme_;
    SystemAppearance& system_;
    DesktopNotifier& notifier_;
    Appearance appearance_ = Appearance::system;
    ActivationPolicy policy_ = ActivationPolicy::accessory;
};

}  // namespace quillo
