// The application's place in the desktop, as Qt has it.
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
    /// All must outlive it. `native`: the system's own, told of all that Qt cannot do there; null on a free
    /// desktop, where task lists show whichever windows are open and messages go over the session bus.
    QtShell(Theme& theme, SystemAppearance& system, DesktopNotifier& notifier, Shell* native = nullptr,
            QObject* parent = nullptr);
    ~QtShell() override;

    void setActivationPolicy(ActivationPolicy policy) override;
    ActivationPolicy activationPolicy() const { return policy_; }
    /// Tells the theme, and follows the desktop where it is to be as the desktop is.
    void setAppearance(Appearance appearance) override;
    Capability canOpenSystemSettings() const override;
    void openSystemSettings(const std::string& page) override;
    bool showFolder(const std::filesystem::path& folder) override;
    void notify(const std::string& title, const std::string& text) override;
    void offer(const std::string& title, const std::string& text, const std::string& button,
               std::function<void()> taken) override;
    bool reducedMotion() const override;

  private:
    void apply();

    Theme& theme_;
    SystemAppearance& system_;
    DesktopNotifier& notifier_;
    Shell* native_;
    Appearance appearance_ = Appearance::system;
    ActivationPolicy policy_ = ActivationPolicy::accessory;
};

}  // namespace quillo
