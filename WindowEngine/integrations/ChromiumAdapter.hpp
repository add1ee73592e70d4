// The tabs of the Chromium family's windows: through scripts where there is an interpreter, else by the
// browser's session files and its own command. Incognito windows are left out of every capture and never
// touched by a restore.
#pragma once
#include "WindowEngine/integrations/AppleScript.hpp"
#include "WindowEngine/integrations/ContextAdapter.hpp"

namespace quillo {

class ChromiumAdapter final : public ContextAdapter {
  public:
    std::string id() const override { return "chromium"; }
    std::string name(const Platform& platform) const override;
    std::set<std::string> bundleIdentifiers() const override;
    std::string privacyNote(const Platform& platform) const override;
    Capability available(const Platform& platform) const override;

    Task<AdapterCaptureResult> capture(DesktopAccess& desktop, std::string bundleIdentifier) const override;
    std::vector<AdapterStep> plan(const AppContext& saved, const AppContext& current) const override;
    Task<std::optional<std::string>> awaitOwnWindows(DesktopAccess& desktop,
                                                     std::string bundleIdentifier) const override;
    /// By scripts it goes by the browser's own window identifiers, read afresh: places in its list change
    /// with every window that is made or brought to the front. Every script looks again that its window is no
    /// incognito one.
    Task<AdapterRestoreResult> restore(DesktopAccess& desktop, AppContext saved,
                                       std::optional<AppContext> current,
                                       std::string bundleIdentifier) const override;

    /// What the rows of ListTabs say, without identifiers. A window without a restorable address is left out;
    /// the others keep their places.
    static AdapterCaptureResult captured(const AppleScript::Rows& rows);
};

}  // namespace quillo
