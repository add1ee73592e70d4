// The tabs of the Chromium family's windows. Incognito windows are left out of every capture and never
// touched by a restore.
#pragma once
#include <span>
#include <string_view>

#include "WindowEngine/integrations/AppleScript.hpp"
#include "WindowEngine/integrations/ContextAdapter.hpp"

namespace quillo {

class ChromiumAdapter final : public ContextAdapter {
  public:
    /// Stands in a script's output for a window whose addresses are nobody's business.
    static constexpr std::string_view privateMarker = "__QUILLO_PRIVATE_WINDOW__";

    std::string id() const override { return "chromium"; }
    std::string name() const override { return "Chrome, Brave, Edge, Arc"; }
    std::set<std::string> bundleIdentifiers() const override;
    std::string privacyNote() const override {
        return "Records open tab URLs. Incognito windows are excluded. Requires permission to control the "
               "browser.";
    }

    Task<AdapterCaptureResult> capture(DesktopAccess& desktop, std::string bundleIdentifier) const override;
    std::vector<AdapterStep> plan(const AppContext& saved, const AppContext& current) const override;
    /// Goes by the browser's own window identifiers, read afresh: places in its list change with every window
    /// that is made or brought to the front. Every script looks again that its window is no incognito one.
    Task<AdapterRestoreResult> restore(DesktopAccess& desktop, AppContext saved,
                                       std::optional<AppContext> current,
                                       std::string bundleIdentifier) const override;

    /// What the rows of captureScript() say. A window without a restorable address is left out; the others
    /// keep their places.
    static AdapterCaptureResult captured(const AppleScript::Rows& rows);

    // `application` is the name the browser goes by in scripts.
    static std::string captureScript(std::string_view application);
    /// As captureScript(), each row beginning with the window's identifier.
    static std::string identifyScript(std::string_view application);
    /// Makes a window that shows `first`; prints its identifier.
    static std::string newWindowScript(std::string_view application, const Url& first);
    /// Opens tabs in the window with this identifier; fails where there is no such window or it is an
    /// incognito one. `intoActiveTab`: the first address goes into the tab in front, which is empty.
    static std::string tabsScript(std::string_view application, std::string_view window,
                                  std::span<const Url> urls, bool intoActiveTab);
};

}  // namespace quillo
