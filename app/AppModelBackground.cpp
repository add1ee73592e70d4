// What runs by itself: session snapshots, and the look at the permission once a second.
#include "WindowEngine/library/AutoSnapshotPolicy.hpp"
#include "app/AppModel.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr const char* privacyPage =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

}  // namespace

void AppModel::configureAutoSnapshot() {
    const std::int64_t minutes = settings_.autoSnapshotMinutes;
    if (scheduledMinutes_ == minutes) return;
    const bool atOnce = AutoSnapshotPolicy::captureImmediately(scheduledMinutes_, minutes);
    scheduledMinutes_ = minutes;
    autoSnapshotGeneration_ = Uuid::random();
    autoSnapshotTimer_.cancel();
    autoSnapshotTask_.cancel();
    setAutoSnapshotSkipped(std::nullopt);
    if (minutes >= 1) autoSnapshotTimer_.start(executor(), snapshotLoop(minutes, atOnce));
}

Task<> AppModel::snapshotLoop(std::int64_t minutes, bool atOnce) {
    if (atOnce) captureSession();
    while (true) {
        // One that was skipped is tried again soon: what was in its way passes.
        std::int64_t waited = 0;
        do co_await sleepFor(1min);
        while (++waited < minutes && !autoSnapshotSkipped_);
        captureSession();
    }
}

void AppModel::captureSession(const PowerHold& hold) {
    const AutoSnapshotPolicy::Situation situation{.minutes = settings_.autoSnapshotMinutes,
                                                  .onboarded = settings_.onboarded,
                                                  .trusted = true,  // else it is a flaw, and told
                                                  .busy = busy()};
    if (snapshotting() && hold) powerHold_ = hold;  // the system waits for the one that runs
    if (!AutoSnapshotPolicy::shouldCapture(situation)) return;
    if (const auto flaw = captureFlaw()) return setAutoSnapshotSkipped(CaptureHealth::words(*flaw));
    powerHold_ = hold;
    autoSnapshotTask_.start(executor(), captureAutomatically(autoSnapshotGeneration_, settings_),
                            [this] { snapshotEnded(); });
    Q_EMIT busyChanged();
}

void AppModel::snapshotEnded() {
    powerHold_.reset();
    Q_EMIT busyChanged();
    for (const auto& asked : std::exchange(afterSnapshot_, {})) asked();
}

Task<> AppModel::captureAutomatically(Uuid generation, AppSettings settings) {
    Capture::Options options = settings.captureOptions();
    options.asksPatiently = false;
    const WorkspaceSnapshot snapshot = co_await Capture::snapshot(services_.desktop, std::move(options));
    const bool stale = autoSnapshotGeneration_ != generation || settings_ != settings ||
                       !services_.desktop.platform.accessibility.trusted();
    if (stale) co_return;
    const auto flaw = captureFlaw(&snapshot.displays);
    setAutoSnapshotSkipped(flaw ? std::optional(CaptureHealth::words(*flaw)) : std::nullopt);
    if (!flaw) saveSession(snapshot);
}

void AppModel::saveSession(const WorkspaceSnapshot& snapshot) {
    if (const Result<bool> saved = quillo::saveSession(history_, known_, snapshot, wallNow()); !saved) {
        return setAutoSnapshotError("Couldn't save the last session: " + saved.error().text);
    }
    reloadSessions();
    setAutoSnapshotError(std::nullopt);
}

void AppModel::deleteSessionHistory() {
    autoSnapshotGeneration_ = Uuid::random();
    autoSnapshotTask_.cancel();
    if (const Result<void> deleted = history_.deleteAll(); !deleted) {
        return setAutoSnapshotError("Couldn't delete session history: " + deleted.error().text);
    }
    const bool had = !sessions_.empty();
    sessions_.clear();
    setAutoSnapshotError(std::nullopt);
    if (had) Q_EMIT sessionsChanged();
}

void AppModel::setAutoSnapshotError(std::optional<std::string> message) {
    if (std::exchange(autoSnapshotError_, std::move(message)) != autoSnapshotError_) {
        Q_EMIT autoSnapshotErrorChanged();
    }
}

void AppModel::startPermissionPolling() {
    permissionPoll_.start(executor(), pollPermission());
}

Task<> AppModel::pollPermission() {
    while (true) {
        co_await sleepFor(1s);
        const bool granted = services_.desktop.platform.accessibility.trusted();
        if (granted == accessibilityGranted_) continue;
        accessibilityGranted_ = granted;
        Q_EMIT accessibilityGrantedChanged();
    }
}

void AppModel::requestAccessibility() {
    if (promptedForAccessibility_) return services_.shell.openSystemSettings(privacyPage);
    promptedForAccessibility_ = true;
    services_.desktop.platform.accessibility.prompt();
}

}  // namespace quillo
