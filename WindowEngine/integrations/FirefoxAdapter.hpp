// The tabs of Firefox's windows and of its kin, where session files can be read: no script speaks to them.
// Private windows are in no file.
#pragma once
#include "WindowEngine/integrations/ContextAdapter.hpp"

namespace quillo {

class FirefoxAdapter final : public ContextAdapter {
  public:
    std::string id() const override { return "firefox"; }
    std::string name(const Platform&) const override { return "Firefox, LibreWolf"; }
    std::set<std::string> bundleIdentifiers() const override;
    std::string privacyNote(const Platform&) const override {
        return "Records open tab URLs. Reads the browser's own session file, which holds no private windows "
               "and may be "
               "up to 30 seconds old. Titles of windows that may be private are left out.";
    }
    Capability available(const Platform& platform) const override { return platform.browserFiles.reading(); }

    Task<AdapterCaptureResult> capture(DesktopAccess& desktop, std::string bundleIdentifier) const override;
    std::vector<AdapterStep> plan(const AppContext& saved, const AppContext& current) const override;
    Task<std::optional<std::string>> awaitOwnWindows(DesktopAccess& desktop,
                                                     std::string bundleIdentifier) const override;
    Task<AdapterRestoreResult> restore(DesktopAccess& desktop, AppContext saved,
                                       std::optional<AppContext> current,
                                       std::string bundleIdentifier) const override;
};

}  // namespace quillo
