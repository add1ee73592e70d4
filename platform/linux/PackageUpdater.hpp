// Updates where a package manager brings them: nothing of ours checks, downloads or installs anything.
#pragma once
#include "platform/services/UpdaterService.hpp"

namespace quillo {

class PackageUpdater final : public UpdaterService {
  public:
    Capability capability() const override {
        return Capability::unavailable("Updates of Quillo come with those of your system.");
    }
    void setDelegate(UpdaterDelegate*) override {}
    void start() override {}

    bool canCheckForUpdates() const override { return false; }
    bool automaticallyChecksForUpdates() const override { return false; }
    void setAutomaticallyChecksForUpdates(bool) override {}
    bool automaticallyDownloadsUpdates() const override { return false; }
    void setAutomaticallyDownloadsUpdates(bool) override {}

    void checkForUpdates() override {}
    void checkForUpdatesInBackground() override {}
};

}  // namespace quillo
