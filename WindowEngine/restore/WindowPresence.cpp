#include "WindowEngine/restore/WindowPresence.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillo::Restore {
namespace {

using namespace std::chrono_literals;

constexpr Duration presenceInterval = 150ms;
constexpr Duration settleInterval = 250ms;
/// Applications that ask within this time of each other share one reading; each alone asks less often.
constexpr Duration sharing = 100ms;
/// All of them hear of a change at once, and the first one's look serves the others.
constexpr Duration burst = 10ms;

/// Seconds. One that launches may be too busy to answer at once; it is asked again, and the others are not
/// kept.
constexpr double countingTimeout = 0.1;

/// When an application's window count last changed.
struct WindowSettleState {
    std::size_t count = 0;
    TimePoint changedAt;
};

}  // namespace

/// While it lives, its application is counted whenever one is.
class WindowPresence::Membership {
  public:
    Membership(WindowPresence& presence, const std::string& bundleIdentifier)
        : waiting_(presence.waiting_), entry_(waiting_.try_emplace(bundleIdentifier).first) {
        ++entry_->second.tasks;
    }
    Membership(const Membership&) = delete;
    Membership& operator=(const Membership&) = delete;
    ~Membership() {
        if (--entry_->second.tasks == 0) waiting_.erase(entry_);
    }

  private:
    std::map<std::string, Waiting>& waiting_;
    std::map<std::string, Waiting>::iterator entry_;
};

Task<void> WindowPresence::wait(std::string bundleIdentifier, Patience patience) {
    const Membership membership(*this, bundleIdentifier);
    const TimePoint deadline = now() + patience.timeout;
    // A look may cost another application's messaging timeout: not in one turn with what comes before or
    // after.
    co_await sleepFor(0s);
    co_await waitUntilPresent(bundleIdentifier, deadline);
    if (patience.settle > 0s) co_await waitUntilSettled(bundleIdentifier, deadline, patience.settle);
    co_await sleepFor(0s);
}

Task<void> WindowPresence::waitUntilPresent(const std::string& bundleIdentifier, TimePoint deadline) {
    const auto changes = desktop_.platform.windowServer.watch(std::nullopt);
    while ((co_await count(bundleIdentifier)).value_or(0) == 0 && now() < deadline) {
        const bool told = co_await changes->next(presenceInterval);
        if (told && now() - countedAt_ >= burst) countedAt_ = now() - sharing;
    }
}

Task<void> WindowPresence::waitUntilSettled(const std::string& bundleIdentifier, TimePoint deadline,
                                            Duration settle) {
    const Count before = co_await count(bundleIdentifier);
    WindowSettleState state{before.value_or(0), now()};
    while (now() < deadline) {
        co_await sleepFor(settleInterval);
        const Count counted = co_await count(bundleIdentifier);
        if (!counted) continue;  // one that does not answer may be busy opening windows
        if (*counted != state.count) {
            state = {*counted, now()};
        } else if (now() - state.changedAt >= settle) {
            co_return;
        }
    }
}

Task<WindowPresence::Count> WindowPresence::count(std::string bundleIdentifier) {
    const Waiting& waiting = waiting_.at(bundleIdentifier);
    if (!waiting.counted || now() - countedAt_ >= sharing) countAll();
    // Where one application let its time pass, nobody after it was asked. That one rests now.
    while (waiting.unasked) {
        co_await sleepFor(0s);
        if (waiting.unasked) countAll();
    }
    co_return waiting.count;
}

void WindowPresence::countAll() {
    countAnswers();
    countedAt_ = now();
}

void WindowPresence::countAnswers() {
    std::vector<ProcessID> pids;
    std::vector<Waiting*> counted;
    for (auto& [bundleIdentifier, waiting] : waiting_) {
        waiting = {.tasks = waiting.tasks, .counted = true, .unasked = false, .count = 0};
        // Resolved anew each time: launchers fork, and the process that stays is another one.
        const auto application = desktop_.platform.applications.running(bundleIdentifier);
        if (!application) continue;
        pids.push_back(application->pid);
        counted.push_back(&waiting);
    }
    const auto seen = Accessibility::enumerate(desktop_, pids, false, countingTimeout);
    for (std::size_t i = 0; i < seen.size(); ++i) {
        counted[i]->count = seen[i].timedOut ? std::nullopt : Count(seen[i].windows.size());
        counted[i]->unasked = seen[i].timedOut && !desktop_.handles.unresponsive.resting(pids[i], now());
    }
    // Windows on other desktops may be known to the window server only: they are there.
    if (std::ranges::none_of(counted, [](const Waiting* waiting) { return waiting->count == 0; })) return;
    const WindowServerReading server = Accessibility::readWindowServer(desktop_);
    for (std::size_t i = 0; i < seen.size(); ++i) {
        if (counted[i]->count == 0)
            counted[i]->count = Accessibility::hiddenWindows(server, pids[i], {}).size();
    }
}

}  // namespace quillo::Restore
