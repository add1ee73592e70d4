// The tabs of Safari's windows, of those only that are verified as normal browsing (SafariPrivacy), before
// and after every look and before every touch.
#pragma once
#include "WindowEngine/integrations/AppleScript.hpp"
#include "WindowEngine/integrations/ContextAdapter.hpp"

namespace quillo {

class SafariAdapter final : public ContextAdapter {
  public:
    std::string id() const override { return "safari"; }
    std::string name(const Platform&) const override { return "Safari"; }
    std::set<std::string> bundleIdentifiers() const override;
    std::string privacyNote(const Platform&) const override {
        return "Records tabs only in windows verified as normal browsing. Private, locked, hidden-toolbar "
               "and "
               "unrecognized-language windows are skipped. Currently supports English Safari.";
    }

    /// A Safari that does not run has no windows to verify. Only web addresses are kept: no other could be
    /// opened again.
    Task<AdapterCaptureResult> capture(DesktopAccess& desktop, std::string bundleIdentifier) const override;
    std::vector<AdapterStep> plan(const AppContext& saved, const AppContext& current) const override;
    /// It has windows of which none can be verified, or does not tell what they show.
    std::optional<std::string> obstacle(DesktopAccess& desktop,
                                        const std::optional<AppContext>& current) const override;
    /// Ends with the first new window that cannot be verified.
    Task<AdapterRestoreResult> restore(DesktopAccess& desktop, AppContext saved,
                                       std::optional<AppContext> current,
                                       std::string bundleIdentifier) const override;

    /// One context window per row, which begins with the window's number; rows of windows that are not among
    /// `kept` are ignored, and those that show only what is no web address (a local file): there is nothing
    /// to bring back, and a window without addresses counts as blank.
    static AppContext context(const AppleScript::Rows& rows, const std::set<WindowNumber>& kept);
};

}  // namespace quillo
