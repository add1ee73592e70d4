#include "WindowEngine/integrations/SafariAdapter.hpp"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "WindowEngine/integrations/BrowserRestorePlan.hpp"
#include "WindowEngine/integrations/BrowserScripts.hpp"
#include "WindowEngine/integrations/SafariPrivacy.hpp"
#include "WindowEngine/integrations/TabReopening.hpp"

namespace quillo {
namespace {

constexpr std::string_view couldNotReopen = "Safari could not reopen saved tabs.";

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

/// Each script is preceded by a look whether its window is still a normal one.
Task<void> openTabs(TabReopening& reopening, WindowNumber window, std::span<const Url> urls,
                    bool intoCurrentTab, std::string_view unverified) {
    for (const auto portion : BrowserScripts::portions(urls)) {
        if (!verified(reopening.desktop).contains(window)) {
            reopening.fail(unverified);
            co_return;
        }
        ScriptRequest::OpenSafariTabs tabs{window, {portion.begin(), portion.end()}, intoCurrentTab};
        if (!co_await reopening.openTabs(asking(std::move(tabs)), portion.size())) co_return;
        intoCurrentTab = false;
    }
}

Task<void> openWindow(TabReopening& reopening, std::span<const Url> urls) {
    const auto printed = co_await reopening.makeWindow(asking(ScriptRequest::NewSafariWindow{urls.front()}));
    if (!printed) co_return;
    const auto window = windowNumber(*printed);
    if (!window) {
        reopening.fail("Safari did not identify its new window.");
        co_return;
    }
    co_await openTabs(reopening, *window, urls.subspan(1), false,
                      "Safari window privacy could not be verified; remaining tabs were skipped.");
}

Task<void> reopen(TabReopening& reopening, const AppContext& saved,
                  const std::optional<AppContext>& current) {
    std::vector<ContextWindow> live = current ? current->windows : std::vector<ContextWindow>{};
    std::erase_if(live, [](const ContextWindow& window) { return !window.sourceWindowID; });
    for (const auto& step : BrowserRestorePlan::make(saved.windows, live, current.has_value())) {
        if (reopening.givenUp) co_return;
        if (!step.index) {
            co_await openWindow(reopening, step.urls);
            continue;
        }
        const ContextWindow& window = live[static_cast<std::size_t>(*step.index)];
        co_await openTabs(reopening, *window.sourceWindowID, step.urls, window.urls.empty(),
                          "Safari window privacy changed; skipped saved tabs.");
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

Task<AdapterRestoreResult> SafariAdapter::restore(DesktopAccess& desktop, AppContext saved,
                                                  std::optional<AppContext> current, std::string) const {
    AdapterRestoreResult result;
    if (!runningSafari(desktop)) {
        result.failures.emplace_back("Safari is not running.");
        co_return result;
    }
    if (!BrowserScripts::allWeb(saved.windows)) result.failures.emplace_back(couldNotReopen);
    try {
        TabReopening reopening{desktop, result, couldNotReopen};
        co_await reopen(reopening, saved, current);
    } catch (const Cancelled&) {
        result.failures.emplace_back("Safari restore was cancelled.");
    }
    co_return result;
}

}  // namespace quillo
