// What keeps the program up to date: an update framework that the application bundle carries, or nothing of
// ours at all.
#pragma once
#include <functional>
#include <string>

#include "WindowEngine/services/Capability.hpp"

namespace quillo {

/// What the framework asks and tells. All calls come on the executor's thread.
class UpdaterDelegate {
  public:
    virtual ~UpdaterDelegate() = default;

    virtual bool supportsGentleScheduledUpdateReminders() const = 0;
    /// Whether the framework's own window may show an update that was found on schedule.
    virtual bool standardUserDriverShouldHandleShowingScheduledUpdate() const = 0;
    /// `handles`: the framework shows the update itself.
    virtual void standardUserDriverWillHandleShowingUpdate(bool handles,
                                                           const std::string& displayVersion) = 0;
    virtual void standardUserDriverWillFinishUpdateSession() = 0;
    /// `installNow` quits, installs and starts the new version. True: the delegate keeps it for later.
    virtual bool willInstallUpdateOnQuit(const std::string& displayVersion,
                                         std::function<void()> installNow) = 0;
    virtual void didAbortWithError() = 0;
    /// One of the readable flags below has changed.
    virtual void flagsChanged() = 0;
};

/// For the executor's thread.
class UpdaterService {
  public:
    virtual ~UpdaterService() = default;

    /// Not available where something else keeps the program up to date; the reason says what.
    virtual Capability capability() const = 0;
    /// The delegate must outlive the service's use, or be taken away with null.
    virtual void setDelegate(UpdaterDelegate* delegate) = 0;
    virtual void start() = 0;

    virtual bool canCheckForUpdates() const = 0;
    virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool value) = 0;
    virtual bool automaticallyDownloadsUpdates() const = 0;
    virtual void setAutomaticallyDownloadsUpdates(bool value) = 0;

    /// With the framework's own windows.
    virtual void checkForUpdates() = 0;
    virtual void checkForUpdatesInBackground() = 0;
};

}  // namespace quillo
