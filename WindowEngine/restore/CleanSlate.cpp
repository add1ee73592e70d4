#include "WindowEngine/restore/CleanSlate.hpp"

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration quitAllowance = 3s;
constexpr Duration quitInterval = 100ms;

RestoreReport::Item itemAbout(const RunningApplication& application, RestoreReport::Status status) {
    return {.app = application.localizedName.value_or(*application.bundleIdentifier),
            .bundleIdentifier = *application.bundleIdentifier,
            .title = std::nullopt,
            .status = std::move(status)};
}

void hideAll(DesktopAccess& desktop, const std::vector<RunningApplication>& targets,
             const Restore::ItemSink& sink) {
    for (const RunningApplication& target : targets) {
        const bool hidden = desktop.platform.applications.hide(*target.bundleIdentifier);
        sink.add(itemAbout(target, hidden ? RestoreReport::Status(RestoreReport::note{"Hidden"})
                                          : RestoreReport::failed{"App refused to hide"}));
    }
}

/// An application that was asked to quit.
struct Leaving {
    RunningApplication application;
    TimePoint deadline;
};

/// Whether its fate is known, which is reported then.
bool settled(DesktopAccess& desktop, const Leaving& leaving, const Restore::ItemSink& sink) {
    // By its process: an application that was quit and started again by its person has quit.
    const auto still = desktop.platform.applications.running(leaving.application.pid);
    if (!still || still->bundleIdentifier != leaving.application.bundleIdentifier) {
        sink.add(itemAbout(leaving.application, RestoreReport::note{"Quit"}));
        return true;
    }
    if (desktop.platform.executor.now() < leaving.deadline) return false;
    sink.add(itemAbout(leaving.application,
                       RestoreReport::failed{"App is still running; it may need you to save changes"}));
    return true;
}

Task<void> quitAll(DesktopAccess& desktop, std::vector<RunningApplication> targets,
                   const Restore::ItemSink& sink) {
    const auto changes = desktop.platform.windowServer.watch(std::nullopt);
    std::vector<Leaving> leaving;
    for (RunningApplication& target : targets) {
        desktop.platform.applications.terminate(*target.bundleIdentifier);
        leaving.push_back({std::move(target), desktop.platform.executor.now() + quitAllowance});
    }
    for (;;) {
        std::vector<Leaving> waiting;
        for (Leaving& one : leaving) {
            if (!settled(desktop, one, sink)) waiting.push_back(std::move(one));
        }
        leaving = std::move(waiting);
        if (leaving.empty()) co_return;
        co_await changes->next(quitInterval);
    }
}

}  // namespace

bool CleanSlatePolicy::shouldAffect(std::string_view bundleIdentifier, bool isRegular,
                                    const std::set<std::string>& saved,
                                    const std::optional<std::string>& ownIdentifier) {
    return isRegular && !saved.contains(std::string(bundleIdentifier)) &&
           bundleIdentifier != "com.apple.finder" && bundleIdentifier != ownBundleIdentifier &&
           bundleIdentifier != ownIdentifier;
}

std::set<std::string> Restore::identifiersOf(const Workspace& workspace) {
    std::set<std::string> identifiers;
    for (const ApplicationSnapshot& application : workspace.snapshot.applications)
        identifiers.insert(application.bundleIdentifier);
    return identifiers;
}

std::vector<RunningApplication> Restore::cleanSlateTargets(Applications& applications,
                                                           const std::set<std::string>& held) {
    const std::vector<std::string> own = applications.ownIdentifiers();
    std::vector<RunningApplication> targets = applications.running();
    std::erase_if(targets, [&](const RunningApplication& application) {
        if (!application.bundleIdentifier) return true;
        const bool regular = application.activationPolicy == ActivationPolicy::regular;
        return !CleanSlatePolicy::shouldAffect(*application.bundleIdentifier, regular, held, std::nullopt) ||
               std::ranges::find(own, *application.bundleIdentifier) != own.end();
    });
    return targets;
}

Task<void> Restore::cleanSlate(DesktopAccess& desktop, const Workspace& workspace, const Options& options,
                               const ItemSink& sink) {
    const CleanSlateMode mode = options.cleanSlate.value_or(CleanSlateMode::keep);
    if (mode == CleanSlateMode::keep) co_return;
    co_await checkpoint();
    std::set<std::string> held = identifiersOf(workspace);
    held.insert(options.kept.begin(), options.kept.end());
    std::vector<RunningApplication> targets = cleanSlateTargets(desktop.platform.applications, held);
    if (mode == CleanSlateMode::hide) {
        hideAll(desktop, targets, sink);
    } else {
        co_await quitAll(desktop, std::move(targets), sink);
    }
}

}  // namespace quillo
