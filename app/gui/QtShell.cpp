#include "app/gui/QtShell.hpp"

namespace quillo {

QtShell::QtShell(Theme& theme, SystemAppearance& system, DesktopNotifier& notifier, Shell* native,
                 QObject* parent)
    : QObject(parent), theme_(theme), system_(system), notifier_(notifier), native_(native) {
    connect(&system_, &SystemAppearance::changed, this, &QtShell::apply);
    apply();
}

void QtShell::setActivationPolicy(ActivationPolicy policy) {
    policy_ = policy;
    if (native_) native_->setActivationPolicy(policy);
}

void QtShell::setAppearance(Appearance appearance) {
    if (native_) native_->setAppearance(appearance);
    appearance_ = appearance;
    apply();
}

void QtShell::apply() {
    theme_.setReducedMotion(system_.reducedMotion());
    theme_.setDark(appearance_ == Appearance::system ? system_.dark() : appearance_ == Appearance::dark);
}

Capability QtShell::canOpenSystemSettings() const {
    if (native_) return native_->canOpenSystemSettings();
    return Capability::unavailable(
        "This desktop has no settings page for it: window access comes with the X server and its window "
        "manager.");
}

void QtShell::openSystemSettings(const std::string& page) {
    if (native_) native_->openSystemSettings(page);
}

void QtShell::notify(const std::string& title, const std::string& text) {
    if (native_) return native_->notify(title, text);
    notifier_.notify(QString::fromStdString(title), QString::fromStdString(text));
}

}  // namespace quillo
