#include <algorithm>
#include <chrono>
#include <ranges>
#include <set>
#include <utility>

#include "WindowEngine/integrations/BrowserCommands.hpp"
#include "WindowEngine/integrations/BrowserFileTabs.hpp"
#include "WindowEngine/integrations/BrowserRestorePlan.hpp"
#include "WindowEngine/integrations/BrowserScripts.hpp"

namespace quillo::BrowserFileTabs {
namespace {

using namespace std::chrono_literals;

constexpr std::string_view couldNotReopen = "Browser could not reopen saved tabs.";
constexpr std::string_view notForward = "Tabs stayed closed whose window could not be brought forward.";
constexpr std::string_view tooLong = "A tab's address was too long to be opened.";
constexpr Duration newWindowComes = 15s, comesForward = 1s, often = 50ms;

/// One restore under way.
struct Reopening {
    DesktopAccess& desktop;
    const Browser& browser;
    std::vector<BrowserProfile> profiles;
    AdapterRestoreResult& result;

    void fail(std::string_view text) {
        if (std::ranges::find(result.failures, text) == result.failures.end())
            result.failures.emplace_back(text);
    }
    std::vector<WindowNumber> windows() const {
        const auto running = desktop.platform.applications.running(browser.identifier);
        return running ? Accessibility::listedNumbers(desktop, running->pid) : std::vector<WindowNumber>();
    }
};

/// The profile of that name, which a file may have made up; else one that is open.
const BrowserProfile* profileFor(const Reopening& reopening, const std::optional<std::string>& name) {
    const auto& all = reopening.profiles;
    const auto named = std::ranges::find_if(all, [&](const BrowserProfile& one) { return one.name == name; });
    if (named != all.end()) return &*named;
    const auto open = std::ranges::find(all, true, &BrowserProfile::isOpen);
    return open != all.end() ? &*open : nullptr;
}

/// Where the browser has ended meanwhile, its command would start it, with addresses that everybody on this
/// machine could read for as long as it runs.
Task<bool> run(Reopening& reopening, std::vector<std::string> arguments) {
    const Platform& platform = reopening.desktop.platform;
    if (!platform.applications.running(reopening.browser.identifier)) co_return false;
    const auto done = co_await platform.browserFiles.run(reopening.browser.identifier, std::move(arguments));
    co_return done.has_value();
}

bool isInFront(Reopening& reopening, WindowNumber window) {
    return reopening.desktop.platform.windowServer.windowInFront() == window;
}

Task<bool> raised(Reopening& reopening, WindowNumber window, Element element) {
    (void)reopening.desktop.platform.accessibility.perform(element, ax::raise);
    const Executor& executor = reopening.desktop.platform.executor;
    const TimePoint deadline = executor.timeAfter(comesForward);
    while (!isInFront(reopening, window) && executor.now() < deadline) co_await sleepFor(often);
    co_return isInFront(reopening, window);
}

Task<void> sendTabs(Reopening& reopening, const BrowserProfile& profile, std::span<const Url> urls) {
    for (const auto portion : BrowserCommands::portions(urls, reopening.browser.family)) {
        if (!co_await run(reopening, BrowserCommands::moreTabs(profile, reopening.browser.family, portion))) {
            reopening.fail(couldNotReopen);
            co_return;
        }
        reopening.result.opened += static_cast<std::int64_t>(portion.size());
    }
}

/// In a window that is on another desktop, or minimized, a browser opens nothing: it is brought here for
/// that.
Task<void> addTabs(Reopening& reopening, WindowNumber window, const BrowserProfile& profile,
                   std::span<const Url> urls) {
    AccessibilityService& accessibility = reopening.desktop.platform.accessibility;
    const auto running = reopening.desktop.platform.applications.running(reopening.browser.identifier);
    const auto live =
        running ? Accessibility::windows(reopening.desktop, running->pid, true) : std::vector<LiveWindow>();
    const auto own = std::ranges::find(live, std::optional(window), &LiveWindow::windowID);
    if (own == live.end()) {
        reopening.fail(notForward);
        co_return;
    }
    const Element element = own->element;
    if (co_await raised(reopening, window, element)) {
        co_await sendTabs(reopening, profile, urls);
        co_return;
    }
    std::exception_ptr interruption;
    try {
        const bool isHere =
            co_await accessibility.makeMovable(element) && co_await raised(reopening, window, element);
        if (isHere)
            co_await sendTabs(reopening, profile, urls);
        else
            reopening.fail(notForward);
    } catch (...) {
        interruption = std::current_exception();
    }
    co_await shielded(accessibility.settleInPlace(element));
    if (interruption) std::rethrow_exception(interruption);
}

/// Absent where none comes in time.
Task<std::optional<WindowNumber>> windowBeside(Reopening& reopening, std::set<WindowNumber> before) {
    const Executor& executor = reopening.desktop.platform.executor;
    const TimePoint deadline = executor.timeAfter(newWindowComes);
    while (true) {
        for (const WindowNumber number : reopening.windows())
            if (!before.contains(number)) co_return number;
        if (executor.now() >= deadline) co_return std::nullopt;
        co_await sleepFor(often);
    }
}

/// False: no further window is to be asked for, since nobody knows when the last one comes.
Task<bool> openWindow(Reopening& reopening, const BrowserProfile& profile, std::span<const Url> urls) {
    const std::size_t first = BrowserCommands::portions(urls, reopening.browser.family).front().size();
    const auto before = reopening.windows();
    auto command = BrowserCommands::newWindow(profile, reopening.browser.family, urls.first(first));
    const bool taken = co_await run(reopening, std::move(command));
    std::optional<WindowNumber> window;
    if (taken) window = co_await windowBeside(reopening, {before.begin(), before.end()});
    if (!window) {
        reopening.fail(couldNotReopen);
        co_return false;
    }
    reopening.result.opened += static_cast<std::int64_t>(first);
    ++reopening.result.newWindows;
    if (first < urls.size()) co_await addTabs(reopening, *window, profile, urls.subspan(first));
    co_return true;
}

/// What no window shows.
std::vector<Url> openNowhere(std::vector<Url> urls, const AppContext& current) {
    std::erase_if(urls, [&](const Url& url) {
        return std::ranges::any_of(current.windows, [&](const ContextWindow& window) {
            return std::ranges::find(window.urls, url) != window.urls.end();
        });
    });
    return urls;
}

Task<void> reopen(Reopening& reopening, const AppContext& saved, const AppContext& current) {
    for (auto& step : BrowserRestorePlan::make(saved.windows, current.windows, true)) {
        if (BrowserCommands::dropTooLong(step.urls, reopening.browser.family) > 0) reopening.fail(tooLong);
        const ContextWindow* live =
            step.index ? &current.windows[static_cast<std::size_t>(*step.index)] : nullptr;
        const BrowserProfile* profile =
            profileFor(reopening, live ? live->profile : saved.windows[step.saved].profile);
        if (!profile) {
            reopening.fail(couldNotReopen);
            co_return;
        }
        if (live && !live->sourceWindowID) step.urls = openNowhere(std::move(step.urls), current);
        if (step.urls.empty()) continue;
        if (live && live->sourceWindowID) {
            co_await addTabs(reopening, *live->sourceWindowID, *profile, step.urls);
        } else if (!co_await openWindow(reopening, *profile, step.urls)) {
            co_return;
        }
    }
}

}  // namespace

Task<AdapterRestoreResult> restore(DesktopAccess& desktop, Browser browser, AppContext saved,
                                   std::optional<AppContext> current) {
    AdapterRestoreResult result;
    if (!current || !BrowserScripts::allWeb(saved.windows)) result.failures.emplace_back(couldNotReopen);
    if (!current) co_return result;
    try {
        Reopening reopening{desktop, browser, {}, result};
        auto processes = co_await desktop.platform.browserFiles.read(browser.identifier, browser.family);
        if (processes) {
            for (BrowserProcess& process : *processes)
                std::ranges::move(process.profiles, std::back_inserter(reopening.profiles));
            co_await reopen(reopening, saved, *current);
        } else {
            reopening.fail(couldNotReopen);
        }
    } catch (const Cancelled&) {
        result.failures.emplace_back("Browser restore was cancelled.");
    }
    co_return result;
}

}  // namespace quillo::BrowserFileTabs
