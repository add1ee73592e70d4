#include "WindowEngine/integrations/FirefoxAdapter.hpp"

#include <utility>

#include "WindowEngine/integrations/BrowserFileTabs.hpp"
#include "WindowEngine/integrations/BrowserRestorePlan.hpp"
#include "WindowEngine/integrations/BrowserScripts.hpp"

namespace quillo {
namespace {

BrowserFileTabs::Browser firefoxCalled(std::string identifier) {
    return {std::move(identifier), BrowserFamily::firefox, "firefox"};
}

}  // namespace

/// As menu entries are called: of distributions, of the makers' own packages, of Flatpak and of Snap.
std::set<std::string> FirefoxAdapter::bundleIdentifiers() const {
    return {"firefox",
            "firefox-esr",
            "firefox-beta",
            "firefox-devedition",
            "firefox-nightly",
            "org.mozilla.firefox",
            "firefox_firefox",
            "librewolf",
            "io.gitlab.librewolf-community"};
}

Task<AdapterCaptureResult> FirefoxAdapter::capture(DesktopAccess& desktop,
                                                   std::string bundleIdentifier) const {
    return BrowserFileTabs::capture(desktop, firefoxCalled(std::move(bundleIdentifier)));
}

std::vector<AdapterStep> FirefoxAdapter::plan(const AppContext& saved, const AppContext& current) const {
    return BrowserRestorePlan::adapterSteps(saved, current);
}

Task<std::optional<std::string>> FirefoxAdapter::awaitOwnWindows(DesktopAccess& desktop,
                                                                 std::string bundleIdentifier) const {
    return BrowserFileTabs::awaitOwnWindows(desktop, firefoxCalled(std::move(bundleIdentifier)));
}

Task<AdapterRestoreResult> FirefoxAdapter::restore(DesktopAccess& desktop, AppContext saved,
                                                   std::optional<AppContext> current,
                                                   std::string bundleIdentifier) const {
    return BrowserFileTabs::restore(desktop, firefoxCalled(std::move(bundleIdentifier)), std::move(saved),
                                    std::move(current));
}

}  // namespace quillo
