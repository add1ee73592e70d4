#include "WindowEngine/restore/RestorePreview.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <utility>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/integrations/SafariPrivacy.hpp"
#include "WindowEngine/records/NativeTabs.hpp"
#include "WindowEngine/restore/ApplicationRestore.hpp"
#include "WindowEngine/restore/CleanSlate.hpp"
#include "WindowEngine/restore/ContextRestore.hpp"
#include "WindowEngine/restore/DesktopCreation.hpp"
#include "WindowEngine/restore/MissingWindows.hpp"

namespace quillo {
namespace {

PlannedApplication presenceOf(Applications& applications, const ApplicationSnapshot& saved) {
    PlannedApplication planned{.saved = &saved};
    if (const auto running = applications.running(saved.bundleIdentifier)) {
        planned.presence = Presence::running;
        planned.pid = running->pid;
    } else if (Restore::locationOf(applications, saved)) {
        planned.presence = Presence::installed;
    }
    return planned;
}

/// The live windows of all running applications, in one batch.
void readLive(DesktopAccess& desktop, std::vector<PlannedApplication>& planned,
              const Restore::PassedOver& passedOver) {
    std::vector<ProcessID> pids;
    for (const PlannedApplication& application : planned) {
        if (application.presence == Presence::running) pids.push_back(application.pid);
    }
    const bool tabsAreListed = desktop.platform.accessibility.listsTabsAsWindows();
    std::vector<Accessibility::Enumeration> lists = Accessibility::enumerate(desktop, pids, true);
    auto list = lists.begin();
    for (PlannedApplication& application : planned) {
        if (application.presence != Presence::running) continue;
        // As a restore sees them: private windows stand for nothing.
        SafariPrivacy::removeUnverified(desktop, application.saved->bundleIdentifier, application.pid,
                                        list->windows);
        Restore::removeStandIns(passedOver, *application.saved, desktop.platform.screens, list->windows);
        application.live = std::move(list->windows);
        const bool tabbed =
            tabsAreListed && NativeTabs::applications().contains(application.saved->bundleIdentifier);
        application.liveSpaces = DesktopSpaces::spacesOf(desktop, application.live, tabbed);
        application.hangs = list++->timedOut;
    }
}

/// Where windows that are yet to open will be put.
void placeUnopened(PlannedApplication& application, DisplayMapper::DisplayList saved,
                   DisplayMapper::DisplayList current, const DesktopTargets& desktops) {
    for (WindowPlan& plan : application.windows) {
        if (plan.liveIndex) continue;
        const WindowSnapshot& window = application.saved->windows[static_cast<std::size_t>(plan.savedIndex)];
        plan.placement = DisplayMapper::place(window, saved, current);
        if (const auto* display = DisplayMapper::targetDisplay(window.displayID, saved, current)) {
            plan.displayID = display->id;
        }
        plan.desktop = targetDesktop(window, desktops);
    }
}

DesktopPlan planDesktops(DesktopAccess& desktop, const WorkspaceSnapshot& snapshot,
                         DisplayMapper::DisplayList displays, bool arrangesOnly) {
    if (!snapshot.desktops) return {};
    DesktopList present = DesktopSpaces::read(desktop);
    if (!arrangesOnly) return DesktopSpaces::plan(*snapshot.desktops, snapshot.displays, displays, present);
    DesktopPlan plan;
    plan.desktops = std::move(present.desktops);
    plan.targets =
        DesktopSpaces::resolveTargets(*snapshot.desktops, plan.desktops, snapshot.displays, displays);
    return plan;
}

/// Windows whose place is not to be set are left where they are.
void leaveUnplaceable(AccessibilityService& accessibility, PlannedApplication& application) {
    for (WindowPlan& plan : application.windows) {
        if (!plan.liveIndex || !plan.write) continue;
        const LiveWindow& live = application.live[static_cast<std::size_t>(*plan.liveIndex)];
        const Capability placement = accessibility.placement(live.element);
        if (placement) continue;
        plan.write = plan.unminimize = false;
        plan.skipReason = placement.reason();
    }
}

RestorePreview windowsOf(DesktopAccess& desktop, std::shared_ptr<const Restore::RestoreScope> scope,
                         const Restore::Options& options) {
    const WorkspaceSnapshot& snapshot = scope->snapshot;
    const std::vector<DisplaySnapshot> displays = Displays::current(desktop.platform.screens);
    RestorePreview plan{std::move(scope),
                        planDesktops(desktop, snapshot, displays, options.arrangesOnly),
                        {},
                        displays,
                        options.kept};
    for (const ApplicationSnapshot& saved : snapshot.applications) {
        plan.applications.push_back(presenceOf(desktop.platform.applications, saved));
    }
    readLive(desktop, plan.applications, options.passedOver);
    for (PlannedApplication& application : plan.applications) {
        application.windows = planWindows(application.saved->windows, Restore::infosOf(application.live),
                                          snapshot.displays, displays, plan.desktops.targets,
                                          application.liveSpaces, desktop.platform.windowServer.noWindows());
        leaveUnplaceable(desktop.platform.accessibility, application);
        if (application.live.empty() && application.presence != Presence::missing) {
            placeUnopened(application, snapshot.displays, displays, plan.desktops.targets);
        }
    }
    return plan;
}

Task<void> planContext(DesktopAccess& desktop, const ApplicationSnapshot& application, bool isRunning,
                       const std::set<std::string>& enabledAdapters, ReopeningPlan& plan) {
    if (!application.context) co_return;
    const ContextAdapter* adapter = Restore::contextAdapter(desktop.platform, application, enabledAdapters);
    if (!adapter) {
        plan.contextTrouble = Restore::unavailableIntegration(desktop.platform, *application.context);
        co_return;
    }
    AdapterCaptureResult now;
    if (isRunning) now = co_await adapter->capture(desktop, application.bundleIdentifier);
    if (now.failure) {
        plan.contextTrouble = *now.failure;
        co_return;
    }
    plan.steps = adapter->plan(*application.context, now.context.value_or(AppContext{}));
    if (!isRunning || plan.steps.empty()) co_return;
    if (auto trouble = adapter->obstacle(desktop, now.context)) {
        plan.contextTrouble = *std::move(trouble);
        plan.steps.clear();
    }
}

/// The windows that an application will have before it is asked for more: those there are, one for each
/// document and each new window of an integration, and the one that a launch without documents brings.
std::vector<LiveWindowInfo> expectedWindows(const DesktopAccess& desktop,
                                            const PlannedApplication& application) {
    const ReopeningPlan& plan = application.reopening;
    std::vector<LiveWindowInfo> expected = Restore::infosOf(application.live);
    const auto expect = [&expected](std::optional<std::string> title, std::optional<Url> document) {
        LiveWindowInfo& window = expected.emplace_back();
        window.title = std::move(title);
        window.subrole = std::string(ax::standardWindow);
        window.documentURL = std::move(document);
    };
    for (const SavedDocument& document : plan.documents.open) expect(document.title, document.url);
    for (const AdapterStep& step : plan.steps) {
        if (step.newWindow) expect(std::nullopt, std::nullopt);
    }
    const bool launchBringsOne =
        application.presence == Presence::installed &&
        (plan.documents.open.empty() || !desktop.platform.applications.documentsTravelWithLaunch());
    if (launchBringsOne || (plan.askedForWindow && application.live.empty()))
        expect(std::nullopt, std::nullopt);
    return expected;
}

Task<void> planReopening(DesktopAccess& desktop, PlannedApplication& application,
                         const Restore::Options& options) {
    const ApplicationSnapshot& saved = *application.saved;
    const bool isRunning = application.presence == Presence::running;
    ReopeningPlan& plan = application.reopening;
    plan.documents =
        Restore::planDocuments(desktop.platform, saved, options, Restore::infosOf(application.live));
    plan.askedForWindow =
        isRunning && Restore::bareWindows(desktop.platform, saved, options.enabledAdapters) > 0;
    co_await planContext(desktop, saved, isRunning, options.enabledAdapters, plan);
    if (!application.hangs)
        plan.moreWindows =
            Restore::missingWindows(desktop.platform, saved, options, expectedWindows(desktop, application))
                .size();
}

/// In one spelling: a path may be written in many ways that hide what it is, and an address may begin with a
/// name that is not its host's.
std::string location(const Url& url) {
    const Url canonical = url.standardized();
    if (const auto path = canonical.filePath()) return *path;
    const auto host = url.isWeb() ? url.asciiHost() : std::nullopt;
    return host ? *host + ": " + url.string() : url.string();
}

/// With what cannot be told of it now, and with all windows that it may be asked for: a yes holds for every
/// later time.
std::string launching(Applications& applications, const PlannedApplication& application) {
    const ApplicationSnapshot& saved = *application.saved;
    std::vector<std::string> remarks;
    if (application.presence == Presence::missing) remarks.emplace_back("not installed now");
    if (saved.windows.size() > 1 && applications.openingWindows(saved.bundleIdentifier))
        remarks.push_back(fmt::format("up to {} windows", saved.windows.size()));
    return remarks.empty() ? saved.name : fmt::format("{} ({})", saved.name, fmt::join(remarks, ", "));
}

/// All that were saved, whether they are there, may be opened or are open at the moment.
void addDocuments(Consequences& all, const PlannedApplication& application) {
    const std::vector<SavedDocument>& planned = application.reopening.documents.open;
    for (const SavedDocument& document : SavedDocuments::of(*application.saved, {})) {
        const auto judged = std::ranges::find(planned, document.url, &SavedDocument::url);
        const Url& shown = judged != planned.end() && judged->target ? *judged->target : document.url;
        all.opened.push_back({location(shown), application.saved->name});
    }
}

void addContext(Consequences& all, const ApplicationSnapshot& application) {
    if (!application.context) return;
    for (const ContextWindow& window : application.context->windows)
        for (const Url& url : window.urls) all.opened.push_back({location(url), application.name});
}

bool opensSomething(const ReopeningPlan& reopening) {
    return !reopening.documents.open.empty() || !reopening.steps.empty();
}

void addWindows(PlanTotals& totals, const PlannedApplication& application) {
    for (const WindowPlan& window : application.windows) {
        switch (Restore::prospectOf(application, window)) {
            case Prospect::inPlace:
                ++totals.inPlace;
                break;
            case Prospect::changed:
                ++totals.changed;
                break;
            case Prospect::awaited:
                ++totals.awaited;
                break;
            case Prospect::skipped:
                ++totals.skipped;
                break;
        }
    }
}

}  // namespace

bool PlanTotals::nothingToDo() const {
    return changed + awaited + launched + createdDesktops + opened + skipped + failed == 0;
}

Prospect Restore::prospectOf(const PlannedApplication& application, const WindowPlan& plan) {
    if (application.presence == Presence::missing) return Prospect::skipped;
    if (application.presence == Presence::installed) return Prospect::awaited;
    if (plan.liveIndex) {
        if (plan.standsRight()) return Prospect::inPlace;
        return plan.displayID && plan.skipReason.empty() ? Prospect::changed : Prospect::skipped;
    }
    const bool asked = application.live.empty() && application.reopening.askedForWindow;
    const bool mayCome = application.hangs || asked || opensSomething(application.reopening) ||
                         application.reopening.moreWindows > 0;
    return mayCome ? Prospect::awaited : Prospect::skipped;
}

WindowChange Restore::changeOf(const RestorePreview& preview, const PlannedApplication& application,
                               const WindowPlan& plan) {
    if (!plan.liveIndex) return {};
    const auto live = static_cast<std::size_t>(*plan.liveIndex);
    const auto spaces = application.liveSpaces.empty()
                            ? std::span<const SpaceID>{}
                            : std::span<const SpaceID>(application.liveSpaces[live]);
    return quillo::changeOf(plan, application.live[live].info, spaces, preview.desktops.desktops);
}

PlanTotals Restore::totalsOf(const RestorePreview& preview) {
    PlanTotals totals;
    for (const RestoreReport::Item& item : preview.scope->leftOut)
        ++(outcomeOf(item.status).verdict == Verdict::failed ? totals.failed : totals.skipped);
    for (const DesktopPlan::Creation& creation : preview.desktops.creations)
        totals.createdDesktops += creation.wanted - creation.existing;
    totals.failed += static_cast<std::int64_t>(preview.desktops.failures.size());
    for (const PlannedApplication& application : preview.applications) {
        if (application.presence == Presence::missing) {
            ++totals.skipped;  // all of it, as one
            continue;
        }
        if (application.presence == Presence::installed) ++totals.launched;
        const ReopeningPlan& reopening = application.reopening;
        totals.opened += static_cast<std::int64_t>(reopening.documents.open.size());
        for (const AdapterStep& step : reopening.steps)
            totals.opened += static_cast<std::int64_t>(step.urls.size());
        totals.failed += static_cast<std::int64_t>(reopening.documents.refused.size());
        addWindows(totals, application);
    }
    return totals;
}

Task<RestorePreview> Restore::preview(DesktopAccess& desktop, WorkspaceSnapshot snapshot, Options options) {
    snapshot = fitted(std::move(snapshot), options.passedOver, Displays::current(desktop.platform.screens),
                      options.displays);
    const auto scope = std::make_shared<RestoreScope>(scopeOf(std::move(snapshot), options.limited));
    giveShownNames(desktop.platform.applications, *scope);
    RestorePreview preview = windowsOf(desktop, scope, options);
    for (PlannedApplication& application : preview.applications) {
        if (application.presence == Presence::missing || options.arrangesOnly) continue;
        co_await planReopening(desktop, application, options);
    }
    co_return preview;
}

Consequences Restore::consequences(Applications& applications, const RestorePreview& preview,
                                   const Workspace& workspace, CleanSlateMode mode) {
    Consequences all;
    all.others = mode;
    if (mode != CleanSlateMode::keep) {
        std::set<std::string> held = identifiersOf(workspace);
        held.insert(preview.kept.begin(), preview.kept.end());
        for (const RunningApplication& target : cleanSlateTargets(applications, held)) {
            auto& names = mode == CleanSlateMode::hide ? all.hidden : all.quit;
            names.push_back(target.localizedName.value_or(*target.bundleIdentifier));
        }
    }
    for (const PlannedApplication& application : preview.applications) {
        auto& launched = application.presence == Presence::running ? all.launchedLater : all.launched;
        launched.push_back(launching(applications, application));
        addDocuments(all, application);
    }
    // After the documents of all: there may be any number of addresses.
    for (const PlannedApplication& application : preview.applications) addContext(all, *application.saved);
    for (const DesktopPlan::Creation& creation : preview.desktops.creations)
        all.desktops += creation.wanted - creation.existing;
    return all;
}

}  // namespace quillo
