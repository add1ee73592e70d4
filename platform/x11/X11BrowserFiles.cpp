#include "platform/x11/X11BrowserFiles.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/posix/ChildProcess.hpp"

namespace quillo::x11 {
namespace {

using namespace std::chrono_literals;

/// Handing over takes a moment. A command that goes on for longer has become the browser itself, since that
/// ended meanwhile: it must not keep addresses among its arguments, which everybody can read.
constexpr Duration longestHandingOver = 10s;

ShownBrowserWindow shown(const WindowReading& window) {
    ShownBrowserWindow result{.number = window.window,
                              .title = window.title,
                              .frame = window.frame(),
                              .client = window.client,
                              .isPlain = !window.hidden && !window.fullscreen && !window.maximized};
    if (window.desktop && *window.desktop != everyDesktop) result.desktop = *window.desktop;
    return result;
}

}  // namespace

std::vector<ShownBrowserWindow> X11BrowserFiles::mainWindowsOf(ProcessID pid) {
    constexpr std::uint32_t roleWords = 16;
    const auto& connection = view_.connection();
    std::vector<std::pair<const WindowReading*, xcb_get_property_cookie_t>> asked;
    for (const auto& window : view_.reading().windows) {
        if (window.pid == pid && window.isListed())
            asked.emplace_back(&window,
                               connection.ask(window.window, connection.extra().windowRole, roleWords));
    }
    std::vector<ShownBrowserWindow> windows;
    for (const auto& [window, cookie] : asked) {
        if (connection.take(cookie).bytes() == "browser") windows.push_back(shown(*window));
    }
    return windows;
}

Task<Result<std::vector<BrowserProcess>>> X11BrowserFiles::read(std::string bundleIdentifier,
                                                                BrowserFamily family) {
    std::vector<BrowserProcess> processes;
    const auto* application = view_.applicationNamed(bundleIdentifier);
    if (!application) co_return processes;
    const std::vector<ProcessID> pids = application->processes;
    for (const ProcessID pid : pids) processes.push_back({mainWindowsOf(pid), {}});
    auto profiles = co_await reader_.read(pids, family);
    if (!profiles) co_return std::unexpected(std::move(profiles.error()));
    for (std::size_t i = 0; i < processes.size(); ++i) processes[i].profiles = std::move((*profiles)[i]);
    co_return processes;
}

Task<Result<void>> X11BrowserFiles::run(std::string bundleIdentifier, std::vector<std::string> arguments) {
    if (!view_.applicationNamed(bundleIdentifier))
        co_return fail(ErrorKind::notFound, "the browser has ended");
    std::vector<std::string> words = view_.registry().command(bundleIdentifier);
    if (words.empty()) co_return fail(ErrorKind::notFound, "the browser is not installed");
    // What a desktop gave this program for one window of its own is not theirs.
    ChildProcess::Arguments command{.program = "env",
                                    .arguments = {"-u", "XDG_ACTIVATION_TOKEN", "-u", "DESKTOP_STARTUP_ID",
                                                  "DISPLAY=" + view_.connection().displayName()}};
    std::ranges::move(words, std::back_inserter(command.arguments));
    std::ranges::move(arguments, std::back_inserter(command.arguments));
    const auto outcome = co_await ChildProcess::run(std::move(command), longestHandingOver);
    view_.invalidate();
    if (!outcome) co_return std::unexpected(outcome.error());
    if (outcome->exitStatus != 0) co_return fail(ErrorKind::refused, "the browser did not take it");
    co_return Result<void>();
}

}  // namespace quillo::x11
