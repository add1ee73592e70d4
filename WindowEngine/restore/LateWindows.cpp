#include "WindowEngine/restore/LateWindows.hpp"

#include <algorithm>
#include <chrono>
#include <ranges>
#include <utility>
#include <variant>

#include "WindowEngine/desktop/Accessibility.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/ApplicationRestore.hpp"
#include "WindowEngine/restore/DisplayMapper.hpp"
#include "WindowEngine/restore/RestorePlan.hpp"
#include "WindowEngine/restore/WindowPlacement.hpp"

namespace quillo::Restore {
namespace {

using namespace std::chrono_literals;

/// New windows move themselves, and get their titles, within this time; nobody drags one as soon.
constexpr Duration restTime = 300ms;
constexpr Duration interval = 1s;  // between looks where nothing is told
/// For a fresh application to give its first windows the titles that they were saved with.
constexpr Duration titlePatience = 2s;
/// A window that has stood for so long gets no other title as a rule: it is looked at again when something
/// has changed, and not at each interval.
constexpr Duration newness = 30s;

constexpr const char* movedReason = "it was moved before it could be placed, and stays there";

bool contains(const auto& range, const auto& value) {
    return std::ranges::find(range, value) != range.end();
}

/// Whether a plain window stands neither where it stood nor where it was to be put: somebody else moves it.
bool isElsewhere(DesktopAccess& desktop, const LiveWindow& before, const WindowSnapshot& saved,
                 const std::vector<DisplaySnapshot>& savedDisplays,
                 const std::vector<DisplaySnapshot>& displays) {
    const auto now = Accessibility::readWindow(desktop, before.element, before.pid, before.info.index);
    const auto placement = DisplayMapper::place(saved, savedDisplays, displays);
    if (!now || !placement || before.info.isFullscreen || saved.isFullscreen) return false;
    return !standsAt(now->info.frame, before.info.frame) &&
           !Accessibility::compare(now, placement->frame, saved.isMinimized).positionSet;
}

}  // namespace

void LateWindows::setPlaces(std::vector<DisplaySnapshot> savedDisplays, DesktopTargets desktops,
                            PassedOver passedOver) {
    savedDisplays_ = std::move(savedDisplays);
    desktops_ = std::move(desktops);
    passedOver_ = std::move(passedOver);
}

void LateWindows::expect(LateApplication application) {
    if (!application.missing.empty()) waiting_.push_back({std::move(application), {}});
}

void LateWindows::runEnded(Duration limit) {
    ended_ = now();
    deadline_ = *ended_ + limit;
}

std::int64_t LateWindows::awaited() const {
    std::int64_t count = 0;
    for (const Waiting& waiting : waiting_) count += std::ssize(waiting.expected.missing);
    return count;
}

bool LateWindows::isOver() const {
    return ended_ && (awaited() == 0 || now() >= deadline_);
}

Duration LateWindows::pause() const {
    Duration pause =
        std::min<Duration>(interval, deadline_ == TimePoint::max() ? interval : deadline_ - now());
    for (const Waiting& waiting : waiting_) {
        for (const auto& [number, arrival] : waiting.arrivals)
            if (!arrival.settled) pause = std::min(pause, arrival.rests + restTime - now());
    }
    return std::max<Duration>(pause, 10ms);
}

Task<void> LateWindows::place() {
    const auto changes = desktop_.platform.windowServer.watch(std::nullopt);
    while (!isOver()) {
        if (awaited() > 0) co_await look();
        if (isOver()) co_return;
        co_await changes->next(pause());
    }
}

Task<void> LateWindows::look() {
    // While nothing has changed a look costs a glance at the stamp.
    const std::uint64_t stamp = desktop_.platform.windowServer.stamp();
    const bool changed = std::exchange(stamp_, stamp) != stamp;
    for (std::size_t i = 0; i < waiting_.size(); ++i) {  // the run adds to them while one is looked at
        Waiting& waiting = waiting_[i];
        const bool someAreNew = std::ranges::any_of(
            waiting.arrivals, [this](const auto& arrival) { return now() - arrival.second.since < newness; });
        if (changed || someAreNew || !waiting.seen) co_await look(waiting);
    }
    std::erase_if(waiting_, [](const Waiting& waiting) { return waiting.expected.missing.empty(); });
}

Task<void> LateWindows::look(Waiting& waiting) {
    for (;;) {
        waiting.seen = true;
        const std::vector<LiveWindow> live =
            liveWindows(desktop_, waiting.expected.application, false, passedOver_);
        std::erase_if(waiting.arrivals, [&](const auto& arrival) {
            return !contains(std::views::transform(live, &LiveWindow::windowID),
                             std::optional(arrival.first));
        });
        for (const LiveWindow& window : live) notice(waiting, window);
        std::optional<Pair> pair = next(waiting, live);
        if (!pair) co_return;
        co_await placeOne(waiting, *std::move(pair));
    }
}

void LateWindows::notice(Waiting& waiting, const LiveWindow& window) {
    if (!window.windowID || contains(waiting.expected.known, *window.windowID)) return;
    Arrival& arrival =
        waiting.arrivals.try_emplace(*window.windowID, Arrival{window.info.frame, now(), now(), now()})
            .first->second;
    if (!standsAt(window.info.frame, arrival.frame)) {
        // It moved after the last look: by then it had had its time.
        if (arrival.seen - arrival.since >= restTime) return giveUp(waiting, window);
        arrival.frame = window.info.frame;
        arrival.rests = now();
    }
    arrival.seen = now();
    arrival.settled = now() - arrival.rests >= restTime;
}

std::vector<WindowSnapshot> LateWindows::missingWindows(const Waiting& waiting) const {
    std::vector<WindowSnapshot> windows;
    for (const std::int64_t index : waiting.expected.missing)
        windows.push_back(waiting.expected.application.windows[static_cast<std::size_t>(index)]);
    return windows;
}

/// Of a fresh application.
bool LateWindows::isFirst(const Waiting& waiting) {
    return waiting.expected.fresh && waiting.expected.known.empty();
}

/// Its person has a place for it. That it is one of those missing is said only where it surely is.
void LateWindows::giveUp(Waiting& waiting, const LiveWindow& window) {
    const bool isTheOne = isFirst(waiting) && waiting.expected.missing.size() == 1;
    waiting.arrivals.erase(*window.windowID);
    waiting.expected.known.push_back(*window.windowID);
    const auto matches = WindowMatcher::match(missingWindows(waiting), {&window.info, 1});
    if (matches.empty()) return;
    if (matches.front().confidence() == WindowMatcher::Confidence::low && !isTheOne) return;
    const auto place = waiting.expected.missing.begin() + matches.front().savedIndex;
    skip(waiting, *place, movedReason);
    waiting.expected.missing.erase(place);
}

std::optional<LateWindows::Pair> LateWindows::next(const Waiting& waiting,
                                                   const std::vector<LiveWindow>& live) const {
    std::vector<LiveWindow> settled;
    std::vector<LiveWindowInfo> infos;
    for (const LiveWindow& window : live) {
        const auto arrival =
            window.windowID ? waiting.arrivals.find(*window.windowID) : waiting.arrivals.end();
        if (arrival == waiting.arrivals.end() || !arrival->second.settled) continue;
        settled.push_back(window);
        infos.push_back(window.info);
    }
    const std::vector<DisplaySnapshot> displays = Displays::current(desktop_.platform.screens);
    if (displays.empty()) return std::nullopt;
    for (const WindowPlan& plan : planWindows(missingWindows(waiting), infos, savedDisplays_, displays)) {
        if (!plan.liveIndex) continue;
        const LiveWindow& window = settled[static_cast<std::size_t>(*plan.liveIndex)];
        const WindowMatcher::Match match{.score = plan.score};
        const bool isMeant = match.confidence() != WindowMatcher::Confidence::low;
        const TimePoint since = waiting.arrivals.at(*window.windowID).since;
        if (isMeant || (isFirst(waiting) && now() - since >= titlePatience))
            return Pair{window, waiting.expected.missing[static_cast<std::size_t>(plan.savedIndex)]};
    }
    return std::nullopt;
}

Task<void> LateWindows::placeOne(Waiting& waiting, Pair pair) {
    const ApplicationSnapshot& application = waiting.expected.application;
    const WindowSnapshot& saved = application.windows[static_cast<std::size_t>(pair.savedIndex)];
    const WindowNumber number = *pair.window.windowID;
    waiting.arrivals.erase(number);
    waiting.expected.known.push_back(number);
    std::erase(waiting.expected.missing, pair.savedIndex);
    if (saved.isFullscreen && desktop_.platform.windowServer.windowInFront() != number) {
        skip(waiting, pair.savedIndex, "it opened late, and full screen would take the keyboard");
        co_return;
    }
    if (pair.window.info.isMinimized && !saved.isMinimized) {
        skip(waiting, pair.savedIndex,
             "it opened late and minimized, and showing it would take the keyboard");
        co_return;
    }
    const std::vector<DisplaySnapshot> displays = Displays::current(desktop_.platform.screens);
    WindowPlan plan;
    plan.savedIndex = pair.savedIndex;
    plan.liveIndex = 0;
    RestoreReport report;
    const ItemSink sink(report, {});
    std::vector<Element> back;
    const LiveWindow before = pair.window;
    co_await placeWindows(desktop_, application, {std::move(pair.window)}, std::vector{plan},
                          {savedDisplays_, displays, desktops_}, sink, back);
    for (RestoreReport::Item& item : report.items) {
        if (std::holds_alternative<RestoreReport::failed>(item.status) &&
            isElsewhere(desktop_, before, saved, savedDisplays_,
                        Displays::current(desktop_.platform.screens)))
            item.status = RestoreReport::skipped{movedReason};
        this->report(std::move(item));
    }
}

void LateWindows::report(RestoreReport::Item item) const {
    item.late = ended_ ? std::chrono::duration<double>(now() - *ended_).count() : 0;
    if (onItem_) onItem_(item);
}

void LateWindows::skip(const Waiting& waiting, std::int64_t savedIndex, std::string reason) const {
    RestoreReport told;
    ItemSink(told, {}).add(waiting.expected.application, savedIndex,
                           RestoreReport::skipped{std::move(reason)});
    report(std::move(told.items.front()));
}

}  // namespace quillo::Restore
