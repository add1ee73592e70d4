// What the interface shows of updates and asks of the update framework.
#pragma once
#include <QObject>
#include <functional>
#include <optional>
#include <string>

#include "platform/services/UpdaterService.hpp"

namespace quillo {

class UpdateController final : public QObject, private UpdaterDelegate {
    Q_OBJECT

  public:
    /// Starts the updater; where it checks by itself, one background check runs at once. Where something else
    /// keeps the program up to date (capability()), nothing is started. The service must outlive it.
    explicit UpdateController(UpdaterService& service, QObject* parent = nullptr);
    ~UpdateController() override;

    Capability capability() const { return service_.capability(); }
    bool canCheckForUpdates() const { return canCheckForUpdates_; }
    /// Downloaded and waiting to be installed.
    const std::optional<std::string>& readyVersion() const { return readyVersion_; }
    /// Found, not yet downloaded.
    const std::optional<std::string>& availableVersion() const { return availableVersion_; }
    /// Checks and downloads both happen by themselves.
    bool automaticUpdates() const { return automaticUpdates_; }
    void setAutomaticUpdates(bool on);

    /// With the framework's own windows.
    void checkForUpdates();
    /// Quits, installs and starts the new version; empty while none is ready. Whether it may be called now is
    /// AppModel::canRelaunchForUpdate. A copy, so that the framework may abort while it runs.
    std::function<void()> installAndRelaunch() const { return installAndRelaunch_; }

  Q_SIGNALS:
    void changed();

  private:
    bool supportsGentleScheduledUpdateReminders() const override;
    bool standardUserDriverShouldHandleShowingScheduledUpdate() const override;
    void standardUserDriverWillHandleShowingUpdate(bool handles, const std::string& displayVersion) override;
    void standardUserDriverWillFinishUpdateSession() override;
    bool willInstallUpdateOnQuit(const std::string& displayVersion,
                                 std::function<void()> installNow) override;
    void didAbortWithError() override;
    void flagsChanged() override;
    void refresh();

    UpdaterService& service_;
    bool canCheckForUpdates_ = false;
    bool automaticUpdates_ = false;
    std::optional<std::string> readyVersion_, availableVersion_;
    std::function<void()> installAndRelaunch_;
};

}  // namespace quillo
