// Whether a capture made now shows the desktop as the person has it.
#include <algorithm>
#include <chrono>
#include <utility>

#include "WindowEngine/desktop/Displays.hpp"
#include "app/AppModel.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration tallyInterval = 30s;  // where the window server tells of nothing
constexpr Duration betweenTallies = 2s;  // a session that ends closes one window after the other

std::int64_t ordinaryWindows(WindowServer& server) {
    return std::ranges::count(server.windowList(), 0, &WindowListEntry::layer);
}

}  // namespace

Task<> AppModel::tallyWindows() {
    WindowServer& server = services_.desktop.platform.windowServer;
    const std::unique_ptr<ChangeWatch> changes = server.watch(std::nullopt);
    while (true) {
        windowTally_.note(executor().now(), ordinaryWindows(server));
        if (co_await changes->next(tallyInterval)) co_await sleepFor(betweenTallies);
    }
}

std::optional<CaptureHealth::Flaw> AppModel::captureFlaw(const std::vector<DisplaySnapshot>* displays) const {
    const Platform& platform = services_.desktop.platform;
    const std::vector<DisplaySnapshot> now = Displays::current(platform.screens);
    return CaptureHealth::flawOf(
        {.access = platform.accessibility.trusted(),
         .screen = platform.screens.state(),
         .hasDisplay = !now.empty(),
         .displaysChanging = displayFollower_.changing() || (displays && *displays != now),
         .windowsBefore = windowTally_.most(executor().now()),
         .windows = ordinaryWindows(platform.windowServer)});
}

void AppModel::setAutoSnapshotSkipped(std::optional<std::string> why) {
    if (std::exchange(autoSnapshotSkipped_, std::move(why)) != autoSnapshotSkipped_)
        Q_EMIT autoSnapshotSkippedChanged();
}

}  // namespace quillo
