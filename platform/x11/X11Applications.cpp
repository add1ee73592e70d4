#include "platform/x11/X11Applications.hpp"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <map>

#include "WindowEngine/records/OwnIdentity.hpp"
#include "WindowEngine/support/Text.hpp"
#include "platform/linux/SecretKeepers.hpp"
#include "platform/linux/Terminals.hpp"
#include "platform/x11/WindowRequests.hpp"

namespace quillo::x11 {
namespace {

std::optional<RunningApplication> runningOf(const KnownApplication* application) {
    return application ? std::optional(application->running) : std::nullopt;
}

/// The window of the terminal this runs in, as terminals tell their children.
xcb_window_t terminalWindow() {
    const char* text = std::getenv("WINDOWID");
    xcb_window_t window = XCB_WINDOW_NONE;
    if (text) std::from_chars(text, text + std::char_traits<char>::length(text), window);
    return window;
}

/// The application of which another process runs the same program under the same name: a new terminal begins
/// with what it was told to run before its window manager has listed its window.
const KnownApplication* twinOf(ProcessID pid, const std::vector<KnownApplication>& applications) {
    const auto program = programOf(pid);
    if (!program) return nullptr;
    const auto isTwin = [&, name = nameOf(pid)](ProcessID other) {
        return programOf(other) == program && nameOf(other) == name;
    };
    const auto found = std::ranges::find_if(applications, [&](const KnownApplication& one) {
        return std::ranges::any_of(one.processes, isTwin);
    });
    return found == applications.end() ? nullptr : &*found;
}

}  // namespace

std::vector<RunningApplication> X11Applications::running() {
    std::vector<RunningApplication> all;
    std::ranges::transform(view_.applications(), std::back_inserter(all), &KnownApplication::running);
    return all;
}

std::optional<RunningApplication> X11Applications::running(ProcessID pid) {
    return runningOf(view_.applicationOf(pid));
}

std::optional<RunningApplication> X11Applications::running(std::string_view bundleIdentifier) {
    return runningOf(view_.applicationNamed(bundleIdentifier));
}

std::vector<std::string> X11Applications::ownIdentifiers() {
    std::vector<std::string> identifiers{std::string(ownBundleIdentifier)};
    const auto add = [&](const KnownApplication* application) {
        if (!application || !application->running.bundleIdentifier) return;
        const auto& identifier = *application->running.bundleIdentifier;
        if (std::ranges::find(identifiers, identifier) == identifiers.end())
            identifiers.push_back(identifier);
    };
    for (ProcessID pid = getpid(); pid > 1;) {
        const auto* application = view_.applicationOf(pid);
        add(application ? application : twinOf(pid, view_.applications()));
        const auto process = processInfo(pid);
        pid = process ? process->parent : 0;
    }
    // Under a terminal multiplexer the terminal is no ancestor, but its window is still named.
    if (const auto* window = view_.reading().find(terminalWindow())) add(view_.applicationOf(window->pid));
    return identifiers;
}

std::set<std::string> X11Applications::neverCaptured() {
    return SecretKeepers::identifiers();
}

std::set<WindowNumber> X11Applications::windowsOfAny(const std::set<std::string>& identifiers) {
    std::set<std::string> lowered;
    for (const auto& identifier : identifiers) lowered.insert(text::lowercase(identifier));
    std::set<WindowNumber> numbers;
    std::map<ProcessID, std::string> programs;  // each is read once
    for (const auto& window : view_.reading().windows) {
        const auto [program, isNew] = programs.try_emplace(window.pid);
        if (isNew) program->second = programOf(window.pid).value_or(std::string());
        if (ApplicationRegistry::mayBe(window, program->second, lowered)) numbers.insert(window.window);
    }
    return numbers;
}

std::int64_t X11Applications::remoteWindows() {
    return std::ranges::count_if(view_.reading().windows,
                                 [](const WindowReading& one) { return one.isRemote && one.isListed(); });
}

std::optional<std::int64_t> X11Applications::shells(std::string_view bundleIdentifier) {
    const auto* application = view_.applicationNamed(bundleIdentifier);
    if (!application || !application->opens.shells) return std::nullopt;
    std::int64_t count = 0;
    for (const ProcessID pid : application->processes) count += Terminals::shellCount(pid);
    return count;
}

std::optional<Url> X11Applications::location(std::string_view bundleIdentifier) {
    if (auto entry = view_.registry().location(bundleIdentifier)) return entry;
    return commands_.location(bundleIdentifier);
}

std::optional<std::string> X11Applications::identifierAt(const Url& location) {
    if (auto identifier = view_.registry().identifierAt(location)) return identifier;
    return commands_.identifierAt(location);
}

std::optional<std::string> X11Applications::name(std::string_view bundleIdentifier) {
    return view_.registry().name(bundleIdentifier);
}

Result<Url> X11Applications::openable(std::string_view bundleIdentifier, const Url& document) {
    auto opening = view_.registry().opening(bundleIdentifier, document);
    if (!opening) return std::unexpected(std::move(opening.error()));
    return std::move(opening->document);
}

/// The order's entry is the application's own, or the one that opens these documents for it.
Task<Result<void>> X11Applications::start(std::string identifier, ApplicationLauncher::Order order) {
    const auto pid = co_await launcher_.launch(std::move(order));
    view_.invalidate();
    if (!pid) co_return std::unexpected(pid.error());
    if (*pid) view_.registry().recordLaunch(**pid, std::move(identifier));
    co_return Result<void>();
}

/// Judges each document anew, whoever asked for it: one that may not be opened keeps all from it.
Task<Result<void>> X11Applications::startWith(std::string identifier, std::vector<Url> documents) {
    std::vector<ApplicationLauncher::Order> orders;
    for (const auto& document : documents) {
        auto opening = view_.registry().opening(identifier, document);
        if (!opening) co_return std::unexpected(std::move(opening.error()));
        // A terminal is started for each folder, other applications once for all that one entry opens.
        const auto same = std::ranges::find_if(orders, [&](const auto& order) {
            return !opening->folderOption && order.entry == opening->entry;
        });
        if (same != orders.end()) {
            same->documents.push_back(std::move(opening->document));
        } else {
            orders.push_back({.entry = opening->entry,
                              .documents = {std::move(opening->document)},
                              .folderOption = std::move(opening->folderOption)});
        }
    }
    for (auto& order : orders) {
        if (auto started = co_await start(identifier, std::move(order)); !started) co_return started;
    }
    co_return Result<void>();
}

Task<Result<void>> X11Applications::launch(Url location, std::vector<Url> documents) {
    const auto identifier = identifierAt(location);
    if (!identifier) co_return fail(ErrorKind::notFound, "the application is not installed");
    if (commands_.identifierAt(location)) co_return startRegistered(*identifier);
    if (!documents.empty()) co_return co_await startWith(*identifier, std::move(documents));
    const auto* application = view_.applicationNamed(*identifier);
    const auto windows = application ? listedWindows(*application) : std::vector<WindowReading>();
    if (!windows.empty()) {
        WindowRequests(view_).activate(windows.back().window);
        co_return Result<void>();
    }
    co_return co_await start(*identifier, {.entry = location.filePath().value()});
}

Task<Result<void>> X11Applications::open(std::string bundleIdentifier, std::vector<Url> documents) {
    const auto where = location(bundleIdentifier);
    if (!where) co_return fail(ErrorKind::notFound, "the application is not installed");
    if (commands_.identifierAt(*where)) co_return startRegistered(bundleIdentifier);
    if (!documents.empty()) co_return co_await startWith(std::move(bundleIdentifier), std::move(documents));
    co_return co_await start(std::move(bundleIdentifier), {.entry = where->filePath().value()});
}

/// Nothing is opened with it: it declares no documents.
Result<void> X11Applications::startRegistered(const std::string& identifier) {
    const auto* application = view_.applicationNamed(identifier);
    const auto windows = application ? listedWindows(*application) : std::vector<WindowReading>();
    if (!windows.empty()) {
        WindowRequests(view_).activate(windows.back().window);
        return {};
    }
    const auto pid = commands_.start(identifier, view_.connection().displayName());
    view_.invalidate();
    if (!pid) return std::unexpected(pid.error());
    view_.registry().recordLaunch(*pid, identifier);
    return {};
}

Task<Result<void>> X11Applications::requestWindow(std::string bundleIdentifier) {
    if (!view_.applicationNamed(bundleIdentifier))
        co_return fail(ErrorKind::notFound, "the application is not running");
    co_return co_await open(std::move(bundleIdentifier), {});
}

Capability X11Applications::openingWindows(std::string_view bundleIdentifier) {
    const auto action = view_.registry().newWindowAction(bundleIdentifier);
    return action ? Capability::available() : Capability::unavailable(action.error().text);
}

Task<Result<void>> X11Applications::openWindow(std::string bundleIdentifier) {
    auto action = view_.registry().newWindowAction(bundleIdentifier);
    if (!action) co_return std::unexpected(std::move(action.error()));
    if (!view_.applicationNamed(bundleIdentifier))
        co_return fail(ErrorKind::notFound, "the application is not running");
    const auto entry = location(bundleIdentifier)->filePath().value();
    co_return co_await start(std::move(bundleIdentifier), {.entry = entry, .action = *std::move(action)});
}

std::vector<WindowReading> X11Applications::listedWindows(const KnownApplication& application) {
    std::vector<WindowReading> windows;
    for (const auto index : application.windows) {
        const auto& window = view_.reading().windows[index];
        if (window.isListed()) windows.push_back(window);
    }
    return windows;
}

Capability X11Applications::hiding() {
    if (!view_.managedByI3()) return Capability::available();
    return Capability::unavailable("i3 minimizes no windows.");
}

bool X11Applications::hide(std::string_view bundleIdentifier) {
    const auto* application = view_.applicationNamed(bundleIdentifier);
    if (!application || !hiding()) return false;
    bool accepted = false;
    for (const auto& window : listedWindows(*application)) {
        accepted |= WindowRequests(view_).minimize(window.window) == codeDone;
    }
    return accepted;
}

std::vector<xcb_window_t> X11Applications::closable(std::span<const WindowReading> windows) {
    auto& connection = view_.connection();
    std::vector<xcb_get_property_cookie_t> cookies;
    for (const auto& window : windows) {
        cookies.push_back(connection.ask(window.window, connection.atoms().WM_PROTOCOLS, 32));
    }
    std::vector<xcb_window_t> dialogs, others;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const auto protocols = connection.take(cookies[i]);
        if (std::ranges::find(protocols.words(), connection.extra().deleteWindow) == protocols.words().end())
            continue;
        (windows[i].type == WindowType::dialog ? dialogs : others).push_back(windows[i].window);
    }
    // A dialog first: closing it cancels its question, whereas one that a closing window asks must stay.
    dialogs.insert(dialogs.end(), others.begin(), others.end());
    return dialogs;
}

bool X11Applications::terminate(std::string_view bundleIdentifier) {
    const auto* application = view_.applicationNamed(bundleIdentifier);
    if (!application) return false;
    bool accepted = false;
    for (const auto window : closable(listedWindows(*application))) {
        accepted |= WindowRequests(view_).close(window) == codeDone;
    }
    return accepted;
}

std::optional<ProcessID> X11Applications::serviceProcess(std::string_view bundleIdentifier) {
    const auto* application = view_.applicationNamed(bundleIdentifier);
    const bool isService = application && application->running.activationPolicy != ActivationPolicy::regular;
    return isService ? std::optional(application->running.pid) : std::nullopt;
}

}  // namespace quillo::x11
