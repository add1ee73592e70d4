// Updates through the framework that the application bundle carries, where it does.
#pragma once
#include <memory>

#include "platform/services/UpdaterService.hpp"

namespace quillo {

class MacUpdater final : public UpdaterService {
  public:
    /// Loads the framework. Main thread, as all else.
    MacUpdater();
    MacUpdater(const MacUpdater&) = delete;
    MacUpdater& operator=(const MacUpdater&) = delete;
    ~MacUpdater() override;

    Capability capability() const override;
    void setDelegate(UpdaterDelegate* delegate) override;
    void start() override;

    bool canCheckForUpdates() const override;
    bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool value) override;
    bool automaticallyDownloadsUpdates() const override;
    void setAutomaticallyDownloadsUpdates(bool value) override;

    void checkForUpdates() override;
    void checkForUpdatesInBackground() override;

  private:
    struct Framework;
    std::unique_ptr<Framework> framework_;
};

}  // namespace quillo
