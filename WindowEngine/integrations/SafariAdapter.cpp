#include "WindowEngine/integrations/SafariAdapter.hpp"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <iterator>
#include <utility>

#include "WindowEngine/integrations/BrowserRestorePlan.hpp"
#include "WindowEngine/integrations/BrowserScripts.hpp"
#include "WindowEngine/integrations/SafariPrivacy.hpp"
#include "WindowEngine/integrations/TabReopening.hpp"
#include "WindowEngine/support/Poll.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr std::string_view safariCouldNotReopen = "Safari could not reopen saved tabs.";
constexpr Duration toolbarInterval = 100ms, toolbarPatience = 400ms;

Script asking(auto request) {
    return {std::string(SafariPrivacy::safari), std::move(request)};
}

std::optional<ProcessID> runningSafari(DesktopAccess& desktop) {
    const auto running = desktop.platform.applications.running(SafariPrivacy::safari);
    return running ? std::optional(running->pid) : std::nullopt;
}

std::set<WindowNumber> verified(DesktopAccess& desktop) {
    const auto pid = runningSafari(desktop);
    return pid ? SafariPrivacy::normalWindowIDs(desktop, *pid) : std::set<WindowNumber>{};
}

std::size_t windowCount(DesktopAccess& desktop) {
    const auto pid = runningSafari(desktop);
    return pid ? Accessibility::windows(desktop, *pid, false).size() : 0;
}

/// What a tab says that shows nothing of anybody's, in Safari's own words for the start page and its kin.
bool isBlank(std::string_view field) {
    return field == "missing value" || field == "about:blank" || field == "favorites://" ||
           field == "topsites://";
}

std::optional<WindowNumber> windowNumber(std::string_view text) {
    WindowNumber number = 0;
    const auto [end, trouble] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (trouble != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

Task<AdapterCaptureResult> captureVerified(DesktopAccess& desktop, std::set<WindowNumber> before) {
    AdapterCaptureResult result;
    if (before.empty()) {
        result.notes.emplace_back(
            "Safari: no windows could be verified as normal browsing; nothing captured.");
        result.includedWindowIDs.emplace();
        co_return result;
    }
    const auto rows = co_await AppleScript::run(
        desktop.platform.scripts, asking(ScriptRequest::ListSafariTabs{before}), adapterScriptLimit);
    if (!rows) {
        result.notes.emplace_back("Safari automation was unavailable; no Safari windows were captured.");
        result.includedWindowIDs.emplace();
        co_return result;
    }
    // One that turned private meanwhile is dropped.
    const std::set<WindowNumber> after = verified(desktop);
    std::set<WindowNumber> kept;
    std::ranges::set_intersection(before, after, std::inserter(kept, kept.end()));
    if (kept.size() < std::max(before.size(), windowCount(desktop)))
        result.notes.emplace_back("Safari: private and unverified windows were excluded.");
    result.context = SafariAdapter::context(*rows, kept);
    result.includedWindowIDs = std::move(kept);
    co_return result;
}

/// A window that has just opened shows its toolbar a moment later. `window` absent: any.
Task<bool> verifiedSoon(DesktopAccess& desktop, std::optional<WindowNumber> window) {
    const auto isVerified = [&desktop, window] {
        const std::set<WindowNumber> numbers = verified(desktop);
        return window ? numbers.contains(*window) : !numbers.empty();
    };
    co_return co_await pollUntil(isVerified, toolbarInterval, toolbarPatience);
}

struct Target {
    WindowNumber number = 0;
    bool isNew = false;
};

/// Whether the window is still a normal one; where it is not, that is said.
Task<bool> mayBeTouched(TabReopening& reopening, Target window) {
    if (window.isNew) {
        if (co_await verifiedSoon(reopening.desktop, window.number)) co_return true;
        reopening.fail("Safari window privacy could not be verified; remaining tabs were skipped.");
    } else {
        if (verified(reopening.desktop).contains(window.number)) co_return true;
        reopening.fail("Safari window privacy changed; skipped saved tabs.");
    }
    co_return false;
}

/// Each script is preceded by a look at its window. False when it might not be touched.
Task<bool> openTabs(TabReopening& reopening, Target window, std::span<const Url> urls, bool intoCurrentTab) {
    for (const auto portion : BrowserScripts::portions(urls)) {
        if (!co_await mayBeTouched(reopening, window)) co_return false;
        ScriptRequest::OpenSafariTabs tabs{window.number, {portion.begin(), portion.end()}, intoCurrentTab};
        if (!co_await reopening.openTabs(asking(std::move(tabs)), portion.size())) break;
        intoCurrentTab = false;
    }
    co_return true;
}

/// False when nothing more may be opened: where one new window cannot be verified no other could, and
/// whatever is opened in such a one, the next restore would open again.
Task<bool> openWindow(TabReopening& reopening, std::span<const Url> urls, bool isLast) {
    const auto printed = co_await reopening.makeWindow(asking(ScriptRequest::NewSafariWindow{urls.front()}));
    if (!printed) co_return true;
    const auto number = windowNumber(*printed);
    if (!number) {
        reopening.fail("Safari did not identify its new window.");
        co_return false;
    }
    const Target window{*number, true};
    if (urls.size() > 1) co_return co_await openTabs(reopening, window, urls.subspan(1), false);
    if (isLast) co_return true;  // not `isLast || co_await`, of which g++ 16 evaluates both
    co_return co_await mayBeTouched(reopening, window);
}

Task<void> reopen(TabReopening& reopening, const AppContext& saved,
                  const std::optional<AppContext>& current) {
    std::vector<ContextWindow> live = current ? current->windows : std::vector<ContextWindow>{};
    std::erase_if(live, [](const ContextWindow& window) { return !window.sourceWindowID; });
    const auto steps = BrowserRestorePlan::make(saved.windows, live, current.has_value());
    for (const auto& step : steps) {
        if (step.index) {
            const ContextWindow& window = live[static_cast<std::size_t>(*step.index)];
            co_await openTabs(reopening, {*window.sourceWindowID}, step.urls, window.urls.empty());
        } else if (!co_await openWindow(reopening, step.urls, &step == &steps.back())) {
            co_return;
        }
    }
}

}  // namespace

std::set<std::string> SafariAdapter::bundleIdentifiers() const {
    return {std::string(SafariPrivacy::safari)};
}

AppContext SafariAdapter::context(const AppleScript::Rows& rows, const std::set<WindowNumber>& kept) {
    AppContext context{"safari", {}};
    for (const auto& row : rows) {
        const auto number = row.empty() ? std::nullopt : windowNumber(row.front());
        if (!number || !kept.contains(*number)) continue;
        const auto fields = std::span(row).subspan(1);
        ContextWindow window{.sourceWindowIndex = std::nullopt, .urls = {}, .sourceWindowID = *number};
        for (const std::string& field : fields) {
            auto url = Url::parse(field);
            if (url && url->isWeb()) window.urls.push_back(*std::move(url));
        }
        if (!window.urls.empty() || std::ranges::all_of(fields, isBlank))
            context.windows.push_back(std::move(window));
    }
    return context;
}

Task<AdapterCaptureResult> SafariAdapter::capture(DesktopAccess& desktop, std::string) const {
    try {
        co_return co_await captureVerified(desktop, verified(desktop));
    } catch (const Cancelled&) {
    }
    AdapterCaptureResult cancelled;
    cancelled.notes.emplace_back("Safari automation was unavailable; no Safari windows were captured.");
    cancelled.includedWindowIDs.emplace();
    co_return cancelled;
}

std::vector<AdapterStep> SafariAdapter::plan(const AppContext& saved, const AppContext& current) const {
    return BrowserRestorePlan::adapterSteps(saved, current);
}

std::optional<std::string> SafariAdapter::obstacle(DesktopAccess& desktop,
                                                   const std::optional<AppContext>& current) const {
    const auto pid = runningSafari(desktop);
    const bool known = current && !current->windows.empty();
    if (known || !pid || SafariPrivacy::hasNoWindow(desktop, *pid)) return std::nullopt;
    if (verified(desktop).empty())
        return "Safari: no windows could be verified as normal browsing; nothing reopened.";
    if (!current) return std::string(safariCouldNotReopen);
    return std::nullopt;
}

Task<AdapterRestoreResult> SafariAdapter::restore(DesktopAccess& desktop, AppContext saved,
                                                  std::optional<AppContext> current, std::string) const {
    AdapterRestoreResult result;
    if (!runningSafari(desktop)) {
        result.failures.emplace_back("Safari is not running.");
        co_return result;
    }
    if (!BrowserScripts::allWeb(saved.windows)) result.failures.emplace_back(safariCouldNotReopen);
    if (plan(saved, current.value_or(AppContext{})).empty()) co_return result;
    try {
        if (obstacle(desktop, current)) {
            // As when it was only just launched.
            co_await verifiedSoon(desktop, std::nullopt);
            current = (co_await captureVerified(desktop, verified(desktop))).context;
        }
        if (auto trouble = obstacle(desktop, current)) {
            result.failures.push_back(*std::move(trouble));
            co_return result;
        }
        TabReopening reopening{desktop, result, safariCouldNotReopen};
        co_await reopen(reopening, saved, current);
    } catch (const Cancelled&) {
        result.failures.emplace_back("Safari restore was cancelled.");
    }
    co_return result;
}

}  // namespace quillo
