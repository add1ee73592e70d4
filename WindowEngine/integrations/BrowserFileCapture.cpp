#include <chrono>
#include <utility>

#include "WindowEngine/integrations/BrowserFileTabs.hpp"
#include "WindowEngine/integrations/OpenBrowserTabs.hpp"

namespace quillo::BrowserFileTabs {
namespace {

using namespace std::chrono_literals;
using OpenBrowserTabs::Look;

/// Chromium writes 2.6 s after the first change that it has not written, and never puts that off.
constexpr Duration chromiumWrites = 2900ms;
constexpr Duration windowComes = 20s, lookingInterval = 500ms;

/// From the first window until the file tells of it, with as much again: Chromium 3 s, Firefox 22 s.
Duration firstWriting(BrowserFamily family) {
    return family == BrowserFamily::chromium ? Duration(8s) : Duration(40s);
}

Task<Result<Look>> look(BrowserFiles& files, const Browser& browser) {
    const auto processes = co_await files.read(browser.identifier, browser.family);
    if (!processes) co_return std::unexpected(processes.error());
    co_return OpenBrowserTabs::judge(*processes, browser.family);
}

/// Whether waiting for the next writing of the file may help.
bool mayChange(const Result<Look>& look) {
    return look ? !look->settled : look.error().kind == ErrorKind::invalidData;
}

Task<Result<Look>> settledLook(BrowserFiles& files, const Browser& browser) {
    auto first = co_await look(files, browser);
    // Firefox takes up to half a minute.
    if (browser.family == BrowserFamily::firefox || !mayChange(first)) co_return first;
    co_await sleepFor(chromiumWrites);
    auto second = co_await look(files, browser);
    if (first && second && first->shown != second->shown) {
        // The file is behind again. What it tells stands; which windows these are does not.
        second->surelyOrdinary.clear();
        for (ContextWindow& window : second->windows) window.sourceWindowID.reset();
    }
    co_return second;
}

}  // namespace

Task<AdapterCaptureResult> capture(DesktopAccess& desktop, Browser browser) {
    AdapterCaptureResult result;
    try {
        auto look = co_await settledLook(desktop.platform.browserFiles, browser);
        result.titledWindowIDs.emplace();
        if (look) {
            result.titledWindowIDs = std::move(look->surelyOrdinary);
            result.context = AppContext{std::move(browser.adapter), std::move(look->windows)};
        } else {
            result.failure = "Its tabs could not be read: " + look.error().text + ".";
        }
    } catch (const Cancelled&) {
        result.failure = "Browser capture was cancelled.";
    }
    co_return result;
}

Task<std::optional<std::string>> awaitOwnWindows(DesktopAccess& desktop, Browser browser) {
    const Executor& executor = desktop.platform.executor;
    TimePoint deadline = executor.timeAfter(windowComes);
    bool hasWindow = false;
    while (true) {
        const auto now = co_await look(desktop.platform.browserFiles, browser);
        if (now && now->told > 0 && now->told == now->shown.size() && !now->hasEmpty) co_return std::nullopt;
        const auto running = desktop.platform.applications.running(browser.identifier);
        const bool shows = running && !Accessibility::listedNumbers(desktop, running->pid).empty();
        if (shows && !std::exchange(hasWindow, true))
            deadline = executor.timeAfter(firstWriting(browser.family));
        if (executor.now() >= deadline) break;
        co_await sleepFor(lookingInterval);
    }
    co_return "The browser did not say in time which tabs it has; none were opened.";
}

}  // namespace quillo::BrowserFileTabs
