// Windows that a restore waited for in vain, placed when they turn up after all.
#pragma once
#include <deque>
#include <map>
#include <optional>
#include <vector>

#include "WindowEngine/restore/DesktopTargets.hpp"
#include "WindowEngine/restore/ItemSink.hpp"
#include "WindowEngine/restore/PassedOver.hpp"

namespace quillo::Restore {

/// What of one application has no window yet, as the run found it.
struct LateApplication {
    ApplicationSnapshot application;
    std::vector<std::int64_t> missing;     // places of saved windows
    std::vector<WindowNumber> known = {};  // windows that were there: they are not late
    bool fresh = false;  // launched by the run: any first window of it is one that is missing
};

/// Lives longer than the run that tells it what to expect, and than its own task. A window is placed once, as
/// soon as it has settled, a moment after it came; never one that was moved since then, for only a person
/// does that, and never so that it takes the keyboard. For the executor's thread.
class LateWindows {
  public:
    /// `onItem` is told what became of each, with the seconds after the run's end (Item::late).
    LateWindows(DesktopAccess& desktop, OnItem onItem) : desktop_(desktop), onItem_(std::move(onItem)) {}
    LateWindows(const LateWindows&) = delete;
    LateWindows& operator=(const LateWindows&) = delete;

    // For the run.
    void setPlaces(std::vector<DisplaySnapshot> savedDisplays, DesktopTargets desktops,
                   PassedOver passedOver);
    void expect(LateApplication application);
    /// From now on they are waited for so long.
    void runEnded(Duration limit);

    /// How many saved windows are waited for.
    std::int64_t awaited() const;
    /// To be begun with the run: a window that comes while it goes on is noticed then. Ends when none is
    /// awaited any more, or the time is over. Cancellation throws; what is placed stays.
    Task<void> place();

  private:
    /// One that came, and is left alone until it has stood still for a moment.
    struct Arrival {
        Rect frame;
        TimePoint since, rests;  // since when it is there, and stands at `frame`
        TimePoint seen;          // when it was last looked at
        bool settled = false;    // whoever moves it now is a person
    };
    struct Waiting {
        LateApplication expected;
        std::map<WindowNumber, Arrival> arrivals = {};
        bool seen = false;  // looked at once
    };

    struct Pair {
        LiveWindow window;
        std::int64_t savedIndex = 0;
    };

    Task<void> look();
    Task<void> look(Waiting& waiting);
    void notice(Waiting& waiting, const LiveWindow& window);
    void giveUp(Waiting& waiting, const LiveWindow& window);
    static bool isFirst(const Waiting& waiting);
    /// Which of the settled windows is placed now, and as which; nothing where none is surely meant yet.
    std::optional<Pair> next(const Waiting& waiting, const std::vector<LiveWindow>& live) const;
    Task<void> placeOne(Waiting& waiting, Pair pair);
    std::vector<WindowSnapshot> missingWindows(const Waiting& waiting) const;
    void report(RestoreReport::Item item) const;
    void skip(const Waiting& waiting, std::int64_t savedIndex, std::string reason) const;
    Duration pause() const;
    bool isOver() const;
    TimePoint now() const { return desktop_.platform.executor.now(); }

    DesktopAccess& desktop_;
    OnItem onItem_;
    std::vector<DisplaySnapshot> savedDisplays_;
    DesktopTargets desktops_;
    PassedOver passedOver_;        // no window of these is a late one
    std::deque<Waiting> waiting_;  // more come while one is looked at
    std::optional<std::uint64_t> stamp_;
    std::optional<TimePoint> ended_;  // the run
    TimePoint deadline_ = TimePoint::max();
};

}  // namespace quillo::Restore
