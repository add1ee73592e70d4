#include "app/DisplayFollower.hpp"

#include <chrono>
#include <utility>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/DisplayTwins.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration displaysInterval = 2s, restTime = 3s;

}  // namespace

DisplayFollower::DisplayFollower(Executor& executor, Screens& screens, Came came)
    : screens_(screens), came_(std::move(came)) {
    following_.start(executor, follow());
}

Task<> DisplayFollower::follow() {
    std::uint64_t stamp = screens_.stamp();
    std::vector<DisplaySnapshot> known = Displays::current(screens_);
    while (true) {
        co_await sleepFor(displaysInterval);
        if (screens_.stamp() == stamp) continue;
        changing_ = true;
        while (stamp != screens_.stamp()) {
            stamp = screens_.stamp();
            co_await sleepFor(restTime);
        }
        changing_ = false;
        std::vector<DisplaySnapshot> now = Displays::current(screens_);
        if (now.empty()) continue;
        const bool others = !DisplayTwins::sameSet(known, now);
        known = now;
        if (others) came_(known);
    }
}

}  // namespace quillo
