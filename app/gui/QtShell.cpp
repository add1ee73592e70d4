#include "app/gui/QtShell.hpp"

namespace quillo {

QtShell::QtShell(Theme& theme, SystemAppearance& system, DesktopNotifier& notifier, QObject* parent)
    : QObject(parent), theme_(theme), system_(system), notifier_(notifier) {
    connect(&system_, &SystemAppearance::changed, this, &QtShell::apply);
    apply();
}

void QtShell::setAppearance(Appearance appearance) {
    appearance_ = appearance;
    apply();
}

void QtShell::apply() {
    theme_.setReducedMotion(system_.reducedMotion());
    theme_.setDark(appearance_ == Appearance::system ? system_.dark() : appearance_ == Appearance::dark);
}

Capability QtShell::canOpenSystemSettings() const {
    return Capability::unavailable(
        "This desktop has no settings page for it: window access comes with the X server and its window "
        "manager.");
}

void QtShell::openSystemSettings(const std::string&) {}

void QtShell::notify(const std::string& title, const std::string& text) {
    notifier_.notify(QString::fromStdString(title), QString::fromStdString(text));
}

}  // namespace quillo
