#include "ctl/AwaitedDesktop.hpp"

#include <algorithm>
#include <chrono>
#include <thread>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/support/Poll.hpp"
#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

constexpr Duration interval = std::chrono::milliseconds(250);

bool holdsDocuments(const Workspace& workspace) {
    return std::ranges::any_of(workspace.snapshot.applications, [](const ApplicationSnapshot& application) {
        return std::ranges::any_of(
            application.windows, [](const WindowSnapshot& window) { return window.documentURL.has_value(); });
    });
}

/// What is still missing, in words; empty when all is there.
std::string missing(const Platform& platform, bool wantsFolders) {
    if (Displays::current(platform.screens).empty()) return "no display is attached";
    return wantsFolders ? platform.accessibility.folders().reason() : "";
}

}  // namespace

Result<std::unique_ptr<DesktopConnection>, Failure> openAwaitedDesktop(CommandContext& context,
                                                                       const Workspace& workspace,
                                                                       Duration limit) {
    using Clock = std::chrono::steady_clock;  // there is no executor before there is a desktop
    const Clock::time_point deadline = Clock::now() + limit;
    auto desktop = openTrustedDesktop(context);
    while (!desktop && desktop.error().exit == Exit::permission && Clock::now() < deadline) {
        std::this_thread::sleep_for(interval);
        desktop = openTrustedDesktop(context);
    }
    if (!desktop) return desktop;
    const Platform& platform = (*desktop)->access().platform;
    const bool wantsFolders = holdsDocuments(workspace);
    const auto left = std::max<Duration>(std::chrono::duration_cast<Duration>(deadline - Clock::now()), {});
    const auto isThere = [&] { return missing(platform, wantsFolders).empty(); };
    const std::optional<bool> came = run(**desktop, pollUntil(isThere, interval, left));
    if (!came) return failure("cancelled", Exit::cancelled);
    if (!*came) context.output.complain("--wait: " + printable(missing(platform, wantsFolders)));
    return desktop;
}

}  // namespace quillo::ctl
