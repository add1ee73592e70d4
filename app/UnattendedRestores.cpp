#include "app/UnattendedRestores.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

#include "WindowEngine/restore/DisplayTwins.hpp"
#include "WindowEngine/support/Poll.hpp"
#include "app/Schedule.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

/// What was slept through is made up for no longer than this: nobody wants the morning's windows at noon.
constexpr Duration longestDelay = 1h;
/// The clock may be set, and another zone hold, while no timer tells of it.
constexpr Duration longestSleep = 10min;
/// After login the window manager, panels and other programs come first.
constexpr Duration loginPatience = 60s, loginInterval = 500ms, loginRest = 2s;

Instant lastUsed(const Workspace& workspace) {
    return std::max(workspace.updatedAt, workspace.lastRestoredAt.value_or(workspace.updatedAt));
}

}  // namespace

UnattendedRestores::UnattendedRestores(AppModel& model, const SystemServices& services, Zone zone,
                                       QObject* parent)
    : QObject(parent),
      model_(model),
      services_(services),
      zone_(std::move(zone)),
      settled_(services.desktop.platform.executor.wallNow()) {
    connect(&model, &AppModel::settingsChanged, this, [this] {
        settled_ = services_.desktop.platform.executor.wallNow();  // a time that is past is tomorrow's
        follow();
    });
    connect(&model, &AppModel::workspacesChanged, this, &UnattendedRestores::follow);
    connect(&model, &AppModel::displaysCame, this, &UnattendedRestores::displaysCame);
    powerObserver_ = services_.power.observe([this](PowerEvent event, const PowerHold&) {
        if (event == PowerEvent::didWake) follow();  // timers stood still meanwhile
    });
    follow();
}

void UnattendedRestores::follow() {
    reckon();
    if (next_)
        timer_.start(services_.desktop.platform.executor, awaitDue());
    else
        timer_.cancel();
}

/// A clock that was set back by little brings nothing once more; one that was far ahead had settled nothing.
void UnattendedRestores::reckon() {
    const Instant now = services_.desktop.platform.executor.wallNow();
    if (settled_ > now + longestDelay) settled_ = now;
    next_ = nextAfter(settled_);
}

/// Of several at the same time the one that was saved last.
std::optional<UnattendedRestores::Due> UnattendedRestores::nextAfter(Instant after) const {
    std::optional<Due> next;
    const QTimeZone zone = zone_();
    for (const Workspace& workspace : model_.workspaces()) {
        const auto at = nextDue(model_.settings().automationOf(workspace.id), after, zone);
        if (at && (!next || *at < next->at)) next = Due{*at, workspace.id};
    }
    return next;
}

/// Of several that were slept through only the last is of use.
Task<> UnattendedRestores::awaitDue() {
    Executor& executor = services_.desktop.platform.executor;
    while (next_) {
        const Duration left = next_->at - executor.wallNow();
        if (left > Duration::zero()) {
            co_await sleepFor(std::min(left, longestSleep));
            reckon();
            continue;
        }
        const Due due = *next_;
        settled_ = due.at;
        next_ = nextAfter(settled_);
        const bool superseded = next_ && next_->at <= executor.wallNow();
        if (!superseded && executor.wallNow() - due.at <= longestDelay)
            model_.restoreFromLibrary(due.workspace, Asker::itself);
    }
}

void UnattendedRestores::loggedIn() {
    for (const Workspace& workspace : model_.workspaces()) {
        if (!model_.settings().automationOf(workspace.id).atLogin) continue;
        return login_.start(services_.desktop.platform.executor, awaitDesktop(workspace.id));
    }
}

Task<> UnattendedRestores::awaitDesktop(Uuid workspace) {
    const auto isThere = [this] {
        return services_.desktop.platform.accessibility.trusted() &&
               !services_.desktop.platform.screens.screens().empty();
    };
    co_await pollUntil(isThere, loginInterval, loginPatience);
    co_await sleepFor(loginRest);
    model_.restoreFromLibrary(workspace,
                              Asker::itself);  // where windows cannot be placed, that is said there
}

void UnattendedRestores::displaysCame(const std::vector<DisplaySnapshot>& displays) {
    const Workspace* latest = nullptr;
    for (const Workspace& workspace : model_.workspaces()) {
        const bool theirs = model_.settings().automationOf(workspace.id).atDisplays &&
                            DisplayTwins::sameSet(workspace.snapshot.displays, displays);
        if (theirs && (!latest || lastUsed(*latest) < lastUsed(workspace))) latest = &workspace;
    }
    if (latest) model_.restoreFromLibrary(Uuid(latest->id), Asker::itself);
}

}  // namespace quillo
