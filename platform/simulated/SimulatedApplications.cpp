#include <fmt/format.h>

#include <chrono>

#include "WindowEngine/restore/DocumentSafety.hpp"
#include "platform/simulated/SimulatedServices.hpp"

namespace quillo::simulated {
namespace {

using namespace std::chrono_literals;

Url bundleURL(const Application& application) {
    return Url::file("/Applications/" + application.scene.identifier + ".app", true);
}

RunningApplication described(const Application& application) {
    return {.pid = application.pid,
            .bundleIdentifier = application.scene.identifier,
            .localizedName = application.scene.name,
            .activationPolicy = application.scene.policy,
            .bundleURL = bundleURL(application),
            .launchDate = application.launchDate,
            .isHidden = application.hidden};
}

std::optional<RunningApplication> describedIfRunning(const Application* application) {
    return application && application->running ? std::optional(described(*application)) : std::nullopt;
}

}  // namespace

std::vector<RunningApplication> ApplicationList::running() {
    world_.advance();
    std::vector<RunningApplication> result;
    for (const Application& application : world_.applications()) {
        if (application.running) result.push_back(described(application));
    }
    return result;
}

std::optional<RunningApplication> ApplicationList::running(ProcessID pid) {
    world_.advance();
    return describedIfRunning(world_.application(pid));
}

std::optional<RunningApplication> ApplicationList::running(std::string_view bundleIdentifier) {
    world_.advance();
    return describedIfRunning(world_.application(bundleIdentifier));
}

std::optional<Url> ApplicationList::location(std::string_view bundleIdentifier) {
    const Application* application = world_.application(bundleIdentifier);
    return application && application->scene.installed ? std::optional(bundleURL(*application))
                                                       : std::nullopt;
}

std::optional<std::string> ApplicationList::identifierAt(const Url& location) {
    for (const Application& application : world_.applications()) {
        if (application.scene.installed && bundleURL(application).standardized() == location.standardized())
            return application.scene.identifier;
    }
    return std::nullopt;
}

std::optional<std::string> ApplicationList::name(std::string_view bundleIdentifier) {
    const Application* application = world_.application(bundleIdentifier);
    return application && application->scene.installed ? std::optional(application->scene.name)
                                                       : std::nullopt;
}

std::vector<InstalledApplication> ApplicationList::installed() {
    std::vector<InstalledApplication> applications;
    for (const Application& one : world_.applications())
        if (one.scene.installed)
            applications.push_back({one.scene.identifier, one.scene.name, bundleURL(one)});
    return applications;
}

std::string ApplicationList::notInstalled() {
    return world_.likeX11() ? "no menu entry starts it" : Applications::notInstalled();
}

Task<Result<void>> ApplicationList::launch(Url location, std::vector<Url> documents) {
    co_await sleepFor(50ms);
    world_.advance();
    const std::optional<std::string> identifier = identifierAt(location);
    if (!identifier) co_return fail(ErrorKind::notFound, "the application is not there");
    if (world_.fault(FaultKind::launchRefused, *identifier))
        co_return fail(ErrorKind::refused, "the system refused to open the application");
    world_.start(*world_.application(*identifier));
    // The system reports success once the process runs, not when it was asked.
    while (world_.application(*identifier)->starting) {
        co_await sleepFor(50ms);
        world_.advance();
    }
    Application& application = *world_.application(*identifier);
    if (application.running) world_.openDocuments(application, documents);
    co_return Result<void>{};
}

Task<Result<void>> ApplicationList::open(std::string bundleIdentifier, std::vector<Url> documents) {
    co_await sleepFor(50ms);
    world_.advance();
    Application* application = world_.application(bundleIdentifier);
    if (!application || !application->running)
        co_return fail(ErrorKind::notFound, "the application has ended");
    world_.openDocuments(*application, documents);
    for (const Url& document : documents) {
        if (world_.fault(FaultKind::documentRefused, bundleIdentifier, World::documentTitle(document)))
            co_return fail(ErrorKind::refused, "the system refused to open the document");
    }
    co_return Result<void>{};
}

Result<Url> ApplicationList::openable(std::string_view, const Url& document) {
    if (auto reason = world_.refusal(document)) return fail(ErrorKind::refused, *std::move(reason));
    const auto path = document.filePath();
    if (!path) return fail(ErrorKind::refused, "its address is not one of a file on this computer");
    if (DocumentSafety::isProgramFile(*path) || DocumentSafety::isProgramFolder(*path))
        return fail(ErrorKind::refused, "opening it could run a program");
    return document.standardized();
}

Task<Result<void>> ApplicationList::requestWindow(std::string bundleIdentifier) {
    co_await sleepFor(50ms);
    world_.advance();
    Application* application = world_.application(bundleIdentifier);
    if (!application || !application->running)
        co_return fail(ErrorKind::notFound, "the application has ended");
    if (world_.fault(FaultKind::requestWindowRefused, bundleIdentifier))
        co_return fail(ErrorKind::refused, "the application did not open a window");
    world_.openInFront(*application, world_.newWindow(*application, "Untitled"));
    co_return Result<void>{};
}

Capability ApplicationList::openingWindows(std::string_view bundleIdentifier) {
    return world_.opensWindows(bundleIdentifier) ? Capability::available()
                                                 : Applications::openingWindows(bundleIdentifier);
}

Task<Result<void>> ApplicationList::openWindow(std::string bundleIdentifier) {
    co_await sleepFor(50ms);
    world_.advance();
    Application* application = world_.application(bundleIdentifier);
    if (!application || !application->running)
        co_return fail(ErrorKind::notFound, "the application has ended");
    if (const Capability able = openingWindows(bundleIdentifier); !able)
        co_return fail(ErrorKind::unavailable, able.reason());
    if (world_.fault(FaultKind::openWindowRefused, bundleIdentifier))
        co_return fail(ErrorKind::refused, "the application did not open a window");
    world_.openAnother(*application);
    co_return Result<void>{};
}

bool ApplicationList::hide(std::string_view bundleIdentifier) {
    world_.advance();
    Application* application = world_.application(bundleIdentifier);
    if (!application || !application->running || world_.fault(FaultKind::hideRefused, bundleIdentifier))
        return false;
    application->hidden = true;
    return true;
}

bool ApplicationList::show(std::string_view bundleIdentifier) {
    world_.advance();
    Application* application = world_.application(bundleIdentifier);
    if (!application || !application->running) return false;
    application->hidden = false;
    return true;
}

bool ApplicationList::terminate(std::string_view bundleIdentifier) {
    world_.advance();
    Application* application = world_.application(bundleIdentifier);
    if (!application || !application->running) return false;
    world_.requestQuit(*application);
    return true;  // asking is always accepted; whether it ends is another matter
}

std::optional<ProcessID> ApplicationList::serviceProcess(std::string_view bundleIdentifier) {
    if (bundleIdentifier == Dock::identifier) return Dock::pid;
    const Application* application = world_.application(bundleIdentifier);
    const bool service =
        application && application->running && application->scene.policy != ActivationPolicy::regular;
    return service ? std::optional(application->pid) : std::nullopt;
}

}  // namespace quillo::simulated
