#include "WindowEngine/restore/ApplicationRestore.hpp"

#include "WindowEngine/integrations/SafariPrivacy.hpp"

namespace quillo::Restore {

std::vector<LiveWindow> liveWindows(DesktopAccess& desktop, const ApplicationSnapshot& application,
                                    bool recoverHidden, const PassedOver& passedOver) {
    const auto running = desktop.platform.applications.running(application.bundleIdentifier);
    if (!running) return {};
    auto windows = Accessibility::windows(desktop, running->pid, recoverHidden);
    SafariPrivacy::removeUnverified(desktop, application.bundleIdentifier, running->pid, windows);
    removeStandIns(passedOver, application, desktop.platform.screens, windows);
    return windows;
}

std::vector<LiveWindow> ApplicationRestore::live(bool recoverHidden) const {
    return liveWindows(desktop, application, recoverHidden, options.passedOver);
}

std::vector<LiveWindowInfo> infosOf(const std::vector<LiveWindow>& windows) {
    std::vector<LiveWindowInfo> infos;
    for (const LiveWindow& window : windows) infos.push_back(window.info);
    return infos;
}

std::optional<Url> locationOf(Applications& applications, const ApplicationSnapshot& application) {
    if (application.applicationURL &&
        applications.identifierAt(*application.applicationURL) == application.bundleIdentifier)
        return application.applicationURL;
    return applications.location(application.bundleIdentifier);
}

}  // namespace quillo::Restore
