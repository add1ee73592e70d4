// An update framework in memory: a test says what it finds, and it asks and tells its delegate as the real
// one does.
#pragma once
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/services/UpdaterService.hpp"

namespace quillo {

class SimulatedUpdater final : public UpdaterService {
  public:
    explicit SimulatedUpdater(Capability capability = Capability::available())
        : capability_(std::move(capability)) {}

    Capability capability() const override { return capability_; }
    void setDelegate(UpdaterDelegate* delegate) override { delegate_ = delegate; }
    void start() override;

    bool canCheckForUpdates() const override { return canCheck_; }
    bool automaticallyChecksForUpdates() const override { return checks_; }
    void setAutomaticallyChecksForUpdates(bool value) override { setFlag(checks_, value); }
    bool automaticallyDownloadsUpdates() const override { return downloads_; }
    void setAutomaticallyDownloadsUpdates(bool value) override { setFlag(downloads_, value); }
    void checkForUpdates() override { ++checks; }
    void checkForUpdatesInBackground() override { ++backgroundChecks; }

    // What happens inside it. Without a delegate, nobody is told.

    /// As while a check runs.
    void setCanCheckForUpdates(bool value) { setFlag(canCheck_, value); }
    /// An update is found on schedule. True: the framework shows it in a window of its own.
    bool findUpdate(const std::string& displayVersion);
    void finishUpdateSession();
    /// The update is downloaded. True: it waits for the delegate's word, else for the program to quit.
    bool finishDownload(const std::string& displayVersion);
    void abort();

    bool hasDelegate() const { return delegate_ != nullptr; }
    int starts = 0, checks = 0, backgroundChecks = 0;
    std::vector<std::string> installed{}, notInstalled{};  // versions, through `installNow`
    bool installFails = false;                             // it aborts first

  private:
    void setFlag(bool& flag, bool value);

    Capability capability_;
    UpdaterDelegate* delegate_ = nullptr;
    bool canCheck_ = false;  // until it is started
    bool checks_ = true, downloads_ = true;
};

}  // namespace quillo
