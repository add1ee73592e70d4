#include "tests/platform/macos/fakes/FakeWorkspace.hpp"

#include <algorithm>

#include "platform/simulated/SimulatedDock.hpp"

namespace quillo::fakes {
namespace {

WorkspaceProcess processOf(const RunningApplication& application) {
    return {.pid = application.pid,
            .identifier = application.bundleIdentifier,
            .name = application.localizedName,
            .policy = application.activationPolicy,
            .location = application.bundleURL,
            .launchDate = application.launchDate,
            .terminated = false,
            .hidden = application.isHidden};
}

/// As the system says it: what the person hears is the layer's own text.
WorkspaceError errorOf(const Error& error) {
    const long code = error.kind == ErrorKind::notFound ? -10814 : -10810;
    return {{{"NSCocoaErrorDomain", 256}, {"NSOSStatusErrorDomain", code}}};
}

}  // namespace

std::vector<WorkspaceProcess> FakeWorkspace::processes() {
    std::vector<WorkspaceProcess> all = more;
    std::ranges::transform(applications().running(), std::back_inserter(all), processOf);
    if (const auto dock = applications().serviceProcess(simulated::Dock::identifier)) {
        all.push_back({.pid = *dock,
                       .identifier = std::string(simulated::Dock::identifier),
                       .name = "Dock",
                       .policy = ActivationPolicy::accessory,
                       .location = std::nullopt,
                       .launchDate = std::nullopt,
                       .terminated = false});
    }
    return all;
}

std::optional<ProcessID> FakeWorkspace::parent(ProcessID pid) {
    const auto known = parents.find(pid);
    return known == parents.end() ? std::nullopt : std::optional(known->second);
}

std::vector<Url> FakeWorkspace::locations(std::string_view identifier) {
    if (const auto known = unpacked.find(identifier); known != unpacked.end()) return {known->second};
    const auto location = applications().location(identifier);
    return location ? std::vector{*location} : std::vector<Url>();
}

std::optional<std::string> FakeWorkspace::identifierAt(const Url& location) {
    const auto stranger = strangers.find(location.filePath().value_or(""));
    return stranger != strangers.end() ? std::optional(stranger->second)
                                       : applications().identifierAt(location);
}

std::optional<std::string> FakeWorkspace::name(const Url& location) {
    const auto identifier = identifierAt(location);
    return identifier ? applications().name(*identifier) : std::nullopt;
}

std::vector<Url> FakeWorkspace::openers(const Url& document) {
    const auto only = onlyOpener.find(document.filePath().value_or(""));
    if (only != onlyOpener.end()) return locations(only->second);
    std::vector<Url> all;
    for (const auto& application : desktop_.world().applications())
        std::ranges::move(locations(application.scene.identifier), std::back_inserter(all));
    return all;
}

std::optional<DocumentFacts> FakeWorkspace::facts(const Url& document) {
    const auto known = documents.find(document.filePath().value_or(""));
    return known == documents.end() ? std::nullopt : std::optional(known->second);
}

Task<Result<void>> FakeWorkspace::opened(Url location, std::vector<Url> given) {
    const auto identifier = applications().identifierAt(location);
    const bool runs = identifier && applications().running(*identifier);
    if (!runs) co_return co_await applications().launch(std::move(location), std::move(given));
    if (given.empty()) co_return co_await applications().requestWindow(*identifier);
    co_return co_await applications().open(*identifier, std::move(given));
}

Task<void> FakeWorkspace::answer(Url location, std::vector<Url> given, Answered answered) {
    const auto result = co_await opened(std::move(location), std::move(given));
    answered(result ? std::nullopt : std::optional(errorOf(result.error())));
}

void FakeWorkspace::open(const Url& location, const std::vector<Url>& given, Answered answered) {
    if (dropsAnswers) return;
    if (refusal) return answered(refusal);
    jobs_.emplace_back(desktop_.executor(), answer(location, given, std::move(answered)));
}

std::optional<std::string> FakeWorkspace::identifierOf(ProcessID pid) {
    const auto application = applications().running(pid);
    return application ? application->bundleIdentifier : std::nullopt;
}

bool FakeWorkspace::isMore(ProcessID pid, std::string_view what) {
    if (std::ranges::find(more, pid, &WorkspaceProcess::pid) == more.end()) return false;
    asked.emplace_back(what, pid);
    return true;
}

bool FakeWorkspace::activate(ProcessID pid) {
    return isMore(pid, "activate") || applications().running(pid);
}

bool FakeWorkspace::hide(ProcessID pid) {
    const auto identifier = identifierOf(pid);
    return isMore(pid, "hide") || (identifier && applications().hide(*identifier));
}

bool FakeWorkspace::show(ProcessID pid) {
    const auto identifier = identifierOf(pid);
    return isMore(pid, "show") || (identifier && applications().show(*identifier));
}

bool FakeWorkspace::terminate(ProcessID pid) {
    const auto identifier = identifierOf(pid);
    return isMore(pid, "terminate") || (identifier && applications().terminate(*identifier));
}

}  // namespace quillo::fakes
