#include "platform/simulated/SimulatedBrowserFiles.hpp"

#include <algorithm>
#include <chrono>
#include <ranges>
#include <utility>

#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
namespace {

using namespace std::chrono_literals;

constexpr Duration readingTakes = 20ms, handingOverTakes = 100ms, longestReading = 5s;

/// Measured with Chromium 156 and Firefox 153.
Duration lateness(BrowserFamily family) {
    return family == BrowserFamily::chromium ? Duration(2500ms) : Duration(17s);
}

bool isFirefox(std::string_view identifier) {
    return identifier.starts_with("firefox");
}

bool isPlain(const Window& window) {
    return !window.state.minimized && !window.state.fullscreen;
}

/// In the order in which they were made.
std::vector<Window*> mainWindows(World& world, std::string_view identifier) {
    std::vector<Window*> windows = world.windowsOf(identifier);
    std::erase_if(windows, [](const Window* window) { return window->state.subrole != ax::standardWindow; });
    std::ranges::sort(windows, {}, &Window::number);
    return windows;
}

BrowserSession sessionOf(World& world, std::string_view identifier) {
    BrowserSession session;
    for (const Window* window : mainWindows(world, identifier)) {
        if (window->state.privateBrowsing) continue;
        BrowserWindow& told = session.windows.emplace_back(BrowserWindow{
            .frame = window->state.frame, .isPlain = isPlain(*window), .order = window->number});
        for (const std::string& tab : window->state.tabs) told.tabs.push_back({tab, {}});
        if (told.tabs.empty()) told.tabs.push_back({"about:blank", {}});
        told.tabs.front().title = window->state.title.value_or("");
    }
    return session;
}

}  // namespace

SessionFiles::SessionFiles(World& world, VirtualExecutor& executor) : world_(world), executor_(executor) {
    for (const Application& application : world_.applications()) {
        if (application.running) changes_[application.pid].push_back({TimePoint::min(), {}});
    }
}

/// What is open now is written later, unless it has been open ever since.
void SessionFiles::note(const Application& application) {
    BrowserSession now = sessionOf(world_, application.scene.identifier);
    std::vector<Change>& changes = changes_[application.pid];
    const bool isFirstLook = changes.size() == 1 && changes.front().at == TimePoint::min();
    if (isFirstLook && changes.front().session.windows.empty()) {
        changes.front().session = std::move(now);
    } else if (changes.empty() || changes.back().session != now) {
        changes.push_back({executor_.now(), std::move(now)});
    }
}

BrowserProfile SessionFiles::profileOf(const Application& application, Duration late) {
    BrowserProfile profile{.name = "Default", .arguments = {"--profile-directory=Default"}, .isOpen = true};
    const std::vector<Change>& changes = changes_[application.pid];
    const TimePoint now = executor_.now();
    const auto written = std::ranges::find_if(changes | std::views::reverse, [&](const Change& change) {
        return change.at == TimePoint::min() || change.at + late <= now;
    });
    if (world_.fault(FaultKind::automationRefused, application.scene.identifier)) {
        profile.session = fail(ErrorKind::unavailable, "its session file is encrypted");
    } else if (written == changes.rend()) {
        profile.session = fail(ErrorKind::invalidData, "its session file is not written yet");
    } else {
        profile.session = written->session;
        profile.age = written->at == TimePoint::min() ? Duration(1h) : now - written->at - late;
    }
    return profile;
}

Task<Result<std::vector<BrowserProcess>>> SessionFiles::read(std::string bundleIdentifier,
                                                             BrowserFamily family) {
    world_.advance();
    const Application* application = world_.application(bundleIdentifier);
    if (!application || !application->running) co_return std::vector<BrowserProcess>();
    BrowserProcess process;
    for (const Window* window : mainWindows(world_, bundleIdentifier))
        process.windows.push_back({.number = window->number,
                                   .title = window->state.title.value_or(""),
                                   .frame = window->state.frame,
                                   .client = window->state.frame,
                                   .isPlain = isPlain(*window)});
    note(*application);
    const Fault* slow = world_.fault(FaultKind::automationSlow, bundleIdentifier);
    const Duration takes = slow ? toDuration(slow->seconds) : readingTakes;
    co_await sleepFor(std::min(takes, longestReading));
    if (takes > longestReading)
        co_return fail(ErrorKind::timedOut, "its session file cannot be read in time");
    world_.advance();
    application = world_.application(bundleIdentifier);
    if (!application->running) co_return std::vector<BrowserProcess>();
    process.profiles.push_back(profileOf(*application, lateness(family)));
    co_return std::vector{std::move(process)};
}

void SessionFiles::openWindow(Application& application, const std::vector<std::string>& tabs) {
    SceneWindow window = world_.newWindow(application, World::pageTitle(application, tabs.front()));
    window.tabs = tabs;
    world_.openInFront(application, window);
}

Task<Result<void>> SessionFiles::run(std::string bundleIdentifier, std::vector<std::string> arguments) {
    co_await sleepFor(handingOverTakes);
    world_.advance();
    Application* application = world_.application(bundleIdentifier);
    if (!application || !application->running) co_return fail(ErrorKind::notFound, "the browser has ended");
    if (world_.fault(FaultKind::launchRefused, bundleIdentifier))
        co_return fail(ErrorKind::refused, "the browser did not take it");
    note(*application);
    const auto has = [&](const char* word) { return std::ranges::find(arguments, word) != arguments.end(); };
    const bool newWindow = has("--new-window"), firefox = isFirefox(bundleIdentifier);
    const bool newTabs = has("--new-tab");
    std::erase_if(arguments, [](const std::string& word) { return word.starts_with("--"); });
    if (firefox && newWindow) {  // a window for each
        for (const std::string& address : arguments) openWindow(*application, {address});
    } else if (newWindow || (firefox && !newTabs)) {
        openWindow(*application, arguments);
    } else {
        const auto windows = world_.windowsOf(bundleIdentifier);
        const auto ordinary = std::ranges::find_if(
            windows, [](const Window* window) { return !window->state.privateBrowsing; });
        if (ordinary == windows.end()) {
            openWindow(*application, arguments);
        } else {
            std::ranges::copy(arguments, std::back_inserter((*ordinary)->state.tabs));
        }
    }
    note(*application);
    co_return Result<void>();
}

}  // namespace quillo::simulated
