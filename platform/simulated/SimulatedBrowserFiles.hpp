// Session files that browsers write some seconds late, and the commands that they hand over. Internal to this
// layer.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "WindowEngine/services/BrowserFiles.hpp"
#include "platform/simulated/World.hpp"

namespace quillo::simulated {

class SessionFiles final : public BrowserFiles {
  public:
    SessionFiles(World& world, VirtualExecutor& executor);

    Capability reading() override { return Capability::available(); }
    /// Ordinary windows as they were some seconds ago, of each application as its one profile.
    Task<Result<std::vector<BrowserProcess>>> read(std::string bundleIdentifier,
                                                   BrowserFamily family) override;
    /// New windows come in front; tabs go to the foremost window that is not private.
    Task<Result<void>> run(std::string bundleIdentifier, std::vector<std::string> arguments) override;

  private:
    struct Change {
        TimePoint at;
        BrowserSession session;
    };
    void note(const Application& application);
    BrowserProfile profileOf(const Application& application, Duration late);
    void openWindow(Application& application, const std::vector<std::string>& tabs);

    World& world_;
    VirtualExecutor& executor_;
    std::map<ProcessID, std::vector<Change>>
        changes_;  // as they were seen, the first one written at once or long ago
};

}  // namespace quillo::simulated
