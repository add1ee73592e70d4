#include "app/UpdateController.hpp"

#include <utility>

namespace quillo {

UpdateController::UpdateController(UpdaterService& service, QObject* parent)
    : QObject(parent), service_(service) {
    if (!capability()) return;
    service_.setDelegate(this);
    refresh();
    service_.start();
    if (service_.automaticallyChecksForUpdates()) service_.checkForUpdatesInBackground();
}

UpdateController::~UpdateController() {
    if (capability()) service_.setDelegate(nullptr);
}

void UpdateController::refresh() {
    canCheckForUpdates_ = service_.canCheckForUpdates();
    automaticUpdates_ = service_.automaticallyChecksForUpdates() && service_.automaticallyDownloadsUpdates();
}

void UpdateController::flagsChanged() {
    const auto before = std::pair(canCheckForUpdates_, automaticUpdates_);
    refresh();
    if (before != std::pair(canCheckForUpdates_, automaticUpdates_)) Q_EMIT changed();
}

void UpdateController::setAutomaticUpdates(bool on) {
    if (!capability()) return;
    service_.setAutomaticallyChecksForUpdates(on);
    service_.setAutomaticallyDownloadsUpdates(on);
    flagsChanged();  // also of a framework that does not tell of changes made by the program itself
}

void UpdateController::checkForUpdates() {
    if (capability()) service_.checkForUpdates();
}

bool UpdateController::supportsGentleScheduledUpdateReminders() const {
    return true;
}

bool UpdateController::standardUserDriverShouldHandleShowingScheduledUpdate() const {
    return false;  // a line in the menu instead of a window over the person's work
}

void UpdateController::standardUserDriverWillHandleShowingUpdate(bool handles,
                                                                 const std::string& displayVersion) {
    if (handles) return;
    availableVersion_ = displayVersion;
    Q_EMIT changed();
}

void UpdateController::standardUserDriverWillFinishUpdateSession() {
    availableVersion_.reset();
    Q_EMIT changed();
}

bool UpdateController::willInstallUpdateOnQuit(const std::string& displayVersion,
                                               std::function<void()> installNow) {
    readyVersion_ = displayVersion;
    availableVersion_.reset();
    installAndRelaunch_ = std::move(installNow);
    Q_EMIT changed();
    return true;
}

void UpdateController::didAbortWithError() {
    readyVersion_.reset();
    installAndRelaunch_ = nullptr;
    Q_EMIT changed();
}

}  // namespace quillo
