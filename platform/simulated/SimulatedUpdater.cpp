#include "platform/simulated/SimulatedUpdater.hpp"

namespace quillo {

void SimulatedUpdater::setFlag(bool& flag, bool value) {
    if (std::exchange(flag, value) != value && delegate_) delegate_->flagsChanged();
}

void SimulatedUpdater::start() {
    ++starts;
    setFlag(canCheck_, true);
}

bool SimulatedUpdater::findUpdate(const std::string& displayVersion) {
    if (!delegate_) return true;
    // A program that knows nothing of reminders is not asked either.
    const bool handles = !delegate_->supportsGentleScheduledUpdateReminders() ||
                         delegate_->standardUserDriverShouldHandleShowingScheduledUpdate();
    delegate_->standardUserDriverWillHandleShowingUpdate(handles, displayVersion);
    return handles;
}

void SimulatedUpdater::finishUpdateSession() {
    if (delegate_) delegate_->standardUserDriverWillFinishUpdateSession();
}

bool SimulatedUpdater::finishDownload(const std::string& displayVersion) {
    if (!delegate_) return false;
    return delegate_->willInstallUpdateOnQuit(displayVersion, [this, displayVersion] {
        if (installFails) abort();
        (installFails ? notInstalled : installed).push_back(displayVersion);
    });
}

void SimulatedUpdater::abort() {
    if (delegate_) delegate_->didAbortWithError();
}

}  // namespace quillo
