#include "app/gui/QtShell.hpp"

#include <QDesktopServices>
#include <QUrl>
#include <utility>

namespace quillo {

QtShell::QtShell(Theme& theme, SystemAppearance& system, DesktopNotifier& notifier, Shell* native,
                 QObject* parent)
    : QObject(parent), theme_(theme), system_(system), notifier_(notifier), native_(native) {
    connect(&system_, &SystemAppearance::changed, this, &QtShell::apply);
    const auto clicked = [this] {
        if (messageClicked) messageClicked();
    };
    notifier_.clicked = clicked;
    if (native_) {
        native_->messageClicked = clicked;
        native_->reducedMotionChanged = [this] { apply(); };
    }
    apply();
}

QtShell::~QtShell() {
    notifier_.clicked = nullptr;
    if (native_) native_->messageClicked = native_->reducedMotionChanged = nullptr;
}

bool QtShell::reducedMotion() const {
    return system_.reducedMotion() || (native_ && native_->reducedMotion());
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
    theme_.setReducedMotion(reducedMotion());
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

bool QtShell::showFolder(const std::filesystem::path& folder) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(folder.string())));
}

void QtShell::notify(const std::string& title, const std::string& text) {
    if (native_) return native_->notify(title, text);
    notifier_.notify(QString::fromStdString(title), QString::fromStdString(text));
}

void QtShell::offer(const std::string& title, const std::string& text, const std::string& button,
                    std::function<void()> taken) {
    if (native_) return native_->offer(title, text, button, std::move(taken));
    notifier_.offer(QString::fromStdString(title), QString::fromStdString(text),
                    QString::fromStdString(button), std::move(taken));
}

}  // namespace quillo
