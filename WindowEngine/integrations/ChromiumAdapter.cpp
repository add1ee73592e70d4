#include "WindowEngine/integrations/ChromiumAdapter.hpp"

#include <algorithm>
#include <utility>

#include "WindowEngine/integrations/BrowserFileTabs.hpp"
#include "WindowEngine/integrations/BrowserRestorePlan.hpp"
#include "WindowEngine/integrations/BrowserScripts.hpp"
#include "WindowEngine/integrations/TabReopening.hpp"
#include "WindowEngine/records/ChromiumURLCodec.hpp"

namespace quillo {
namespace {

constexpr std::string_view unsupported = "Unsupported Chromium browser.";
constexpr std::string_view couldNotReopen = "Browser could not reopen saved tabs.";

/// Those that answer scripts.
const std::set<std::string>& scripted() {
    static const std::set<std::string> identifiers{"com.google.Chrome", "com.brave.Browser",
                                                   "com.microsoft.edgemac", "company.thebrowser.Browser"};
    return identifiers;
}

/// As menu entries are called: of distributions, of the makers' own packages, of Flatpak and of Snap.
const std::set<std::string>& withFiles() {
    static const std::set<std::string> identifiers{"chromium",
                                                   "chromium-browser",
                                                   "org.chromium.Chromium",
                                                   "io.github.ungoogled_software.ungoogled_chromium",
                                                   "chromium_chromium",
                                                   "google-chrome",
                                                   "google-chrome-beta",
                                                   "google-chrome-unstable",
                                                   "com.google.Chrome",
                                                   "com.google.ChromeDev",
                                                   "brave-browser",
                                                   "brave-browser-beta",
                                                   "brave-browser-nightly",
                                                   "com.brave.Browser",
                                                   "brave_brave",
                                                   "microsoft-edge",
                                                   "microsoft-edge-beta",
                                                   "microsoft-edge-dev",
                                                   "com.microsoft.Edge",
                                                   "vivaldi-stable",
                                                   "vivaldi-snapshot",
                                                   "com.vivaldi.Vivaldi",
                                                   "vivaldi_vivaldi-stable",
                                                   "opera",
                                                   "opera-beta",
                                                   "com.opera.Opera",
                                                   "opera_opera"};
    return identifiers;
}

bool takesScripts(const Platform& platform, const std::string& identifier) {
    return platform.scripts.scripting() && scripted().contains(identifier);
}

bool readsFiles(const Platform& platform, const std::string& identifier) {
    return platform.browserFiles.reading() && !takesScripts(platform, identifier) &&
           withFiles().contains(identifier);
}

BrowserFileTabs::Browser browser(std::string identifier) {
    return {std::move(identifier), BrowserFamily::chromium, "chromium"};
}

bool isPrivate(const std::vector<std::string>& row) {
    return row.size() == 1 && row.front() == ScriptRequest::privateMarker;
}

/// A window that tabs may be opened in.
struct OpenWindow {
    std::string identifier;
    ContextWindow context;
};

/// As the family spells it; some run several together.
bool isNewTab(std::string_view field) {
    return field == "about:blank" || field == "missing value" || field.ends_with("://newtab/") ||
           field.ends_with("://new-tab-page/");
}

/// Not those that show only what is no web address (settings, a local file): they are not blank either.
std::vector<OpenWindow> openWindows(const AppleScript::Rows& rows) {
    std::vector<OpenWindow> windows;
    for (const auto& row : rows) {
        if (row.empty() || isPrivate(row)) continue;
        const auto fields = std::span(row).subspan(1);
        std::vector<Url> urls = ChromiumURLCodec::decode(fields);
        if (urls.empty() && !std::ranges::all_of(fields, isNewTab)) continue;
        OpenWindow& window = windows.emplace_back(OpenWindow{row.front(), {}});
        window.context.urls = std::move(urls);
    }
    return windows;
}

std::vector<ContextWindow> contexts(const std::vector<OpenWindow>& windows) {
    std::vector<ContextWindow> result;
    for (const OpenWindow& window : windows) result.push_back(window.context);
    return result;
}

struct Reopening {
    TabReopening tabs;
    std::string browser;  // by its identifier

    Script script(auto request) const { return {browser, std::move(request)}; }
};

Task<void> openTabs(Reopening& reopening, const std::string& window, std::span<const Url> urls,
                    bool intoActiveTab) {
    for (const auto portion : BrowserScripts::portions(urls)) {
        ScriptRequest::OpenTabs tabs{window, {portion.begin(), portion.end()}, intoActiveTab};
        if (!co_await reopening.tabs.openTabs(reopening.script(std::move(tabs)), portion.size())) co_return;
        intoActiveTab = false;
    }
}

Task<void> openWindow(Reopening& reopening, std::span<const Url> urls) {
    const auto window =
        co_await reopening.tabs.makeWindow(reopening.script(ScriptRequest::NewWindow{urls.front()}));
    if (!window || urls.size() == 1) co_return;
    if (window->empty()) {
        reopening.tabs.fail(couldNotReopen);
        co_return;
    }
    co_await openTabs(reopening, *window, urls.subspan(1), false);
}

Task<void> reopen(Reopening& reopening, const AppContext& saved) {
    const auto rows =
        co_await reopening.tabs.run(reopening.script(ScriptRequest::ListTabs{.identified = true}));
    if (!rows) co_return;
    const std::vector<OpenWindow> open = openWindows(*rows);
    for (const auto& step : BrowserRestorePlan::make(saved.windows, contexts(open), true)) {
        if (!step.index) {
            co_await openWindow(reopening, step.urls);
            continue;
        }
        const OpenWindow& window = open[static_cast<std::size_t>(*step.index)];
        co_await openTabs(reopening, window.identifier, step.urls, window.context.urls.empty());
    }
}

}  // namespace

std::string ChromiumAdapter::name(const Platform& platform) const {
    return platform.scripts.scripting() ? "Chrome, Brave, Edge, Arc"
                                        : "Chromium, Chrome, Brave, Edge, Vivaldi, Opera";
}

std::set<std::string> ChromiumAdapter::bundleIdentifiers() const {
    std::set<std::string> all = scripted();
    all.insert(withFiles().begin(), withFiles().end());
    return all;
}

std::string ChromiumAdapter::privacyNote(const Platform& platform) const {
    if (platform.scripts.scripting())
        return "Records open tab URLs. Incognito windows are excluded. Requires permission to control the "
               "browser.";
    return "Records open tab URLs. Reads the browser's own session file, which holds no private windows and "
           "may be up "
           "to 3 seconds old. Titles of windows that may be private are left out.";
}

Capability ChromiumAdapter::available(const Platform& platform) const {
    const Capability scripting = platform.scripts.scripting();
    return scripting || !platform.browserFiles.reading() ? scripting : Capability::available();
}

AdapterCaptureResult ChromiumAdapter::captured(const AppleScript::Rows& rows) {
    AdapterCaptureResult result;
    result.context = AppContext{"chromium", {}};
    result.windowCount = rows.size();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto index = static_cast<std::int64_t>(i);
        if (isPrivate(rows[i])) {
            result.excludedWindowIndices.insert(index);
            continue;
        }
        std::vector<Url> urls = ChromiumURLCodec::decode(rows[i]);
        if (!urls.empty()) result.context->windows.push_back({index, std::move(urls), std::nullopt});
    }
    return result;
}

Task<AdapterCaptureResult> ChromiumAdapter::capture(DesktopAccess& desktop,
                                                    std::string bundleIdentifier) const {
    AdapterCaptureResult result;
    if (readsFiles(desktop.platform, bundleIdentifier))
        co_return co_await BrowserFileTabs::capture(desktop, browser(std::move(bundleIdentifier)));
    if (!scripted().contains(bundleIdentifier)) {
        result.failure = unsupported;
        co_return result;
    }
    try {
        Script script{std::move(bundleIdentifier), ScriptRequest::ListTabs{.identified = false}};
        const auto rows =
            co_await AppleScript::run(desktop.platform.scripts, std::move(script), adapterScriptLimit);
        if (rows) co_return captured(*rows);
        result.failure = "Browser automation was unavailable.";
    } catch (const Cancelled&) {
        result.failure = "Browser capture was cancelled.";
    }
    co_return result;
}

std::vector<AdapterStep> ChromiumAdapter::plan(const AppContext& saved, const AppContext& current) const {
    return BrowserRestorePlan::adapterSteps(saved, current);
}

Task<std::optional<std::string>> ChromiumAdapter::awaitOwnWindows(DesktopAccess& desktop,
                                                                  std::string bundleIdentifier) const {
    if (!readsFiles(desktop.platform, bundleIdentifier)) co_return std::nullopt;
    co_return co_await BrowserFileTabs::awaitOwnWindows(desktop, browser(std::move(bundleIdentifier)));
}

Task<AdapterRestoreResult> ChromiumAdapter::restore(DesktopAccess& desktop, AppContext saved,
                                                    std::optional<AppContext> current,
                                                    std::string bundleIdentifier) const {
    AdapterRestoreResult result;
    if (readsFiles(desktop.platform, bundleIdentifier))
        co_return co_await BrowserFileTabs::restore(desktop, browser(std::move(bundleIdentifier)),
                                                    std::move(saved), std::move(current));
    if (!scripted().contains(bundleIdentifier)) {
        result.failures.emplace_back(unsupported);
        co_return result;
    }
    // Where nobody knows what is open, opening anything might open it twice.
    if (!current || !BrowserScripts::allWeb(saved.windows)) result.failures.emplace_back(couldNotReopen);
    if (!current) co_return result;
    try {
        Reopening reopening{{desktop, result, couldNotReopen}, std::move(bundleIdentifier)};
        co_await reopen(reopening, saved);
    } catch (const Cancelled&) {
        result.failures.emplace_back("Browser restore was cancelled.");
    }
    co_return result;
}

}  // namespace quillo
