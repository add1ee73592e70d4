// Sleep and shutdown over a bus: who is told, and how long the computer waits.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "WindowEngine/support/Loops.hpp"
#include "platform/linux/LoginSession.hpp"
#include "platform/linux/LogindPowerEvents.hpp"
#include "tests/platform/linux/session/MockedLogind.hpp"

namespace quillo::x11test {
namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

const Texts one{"sleep:shutdown/Quillo/delay"}, none{};

/// A lock is a pipe's end.
std::size_t openPipes() {
    std::error_code closedMeanwhile;
    return static_cast<std::size_t>(
        std::ranges::count_if(std::filesystem::directory_iterator("/proc/self/fd"), [&](const auto& entry) {
            return std::filesystem::read_symlink(entry, closedMeanwhile).string().starts_with("pipe:");
        }));
}

class LogindTest : public testing::Test {
  protected:
    void start() {
        power.emplace(executor);
        observer = power->observe([this](PowerEvent event, PowerHold hold) {
            if (event == PowerEvent::didWake) return void(++wakes);
            events.push_back(event);
            holds.push_back(std::move(hold));
        });
        ASSERT_TRUE(eventually([&] { return power->capability() && logind->inhibitors() == one; }));
    }
    bool eventually(const std::function<bool()>& condition) {
        return waitFor([&] {
            executor.runFor(Duration::zero());
            return condition();
        });
    }
    /// What was told by then of the events since the last call.
    std::vector<PowerEvent> told(std::size_t count) {
        EXPECT_TRUE(eventually([&] { return events.size() >= count; }));
        return std::exchange(events, {});
    }
    /// Buses and the mock keep descriptors of their own for a moment.
    bool locksBecome(const Texts& expected) {
        return eventually([&] { return logind->inhibitors() == expected; });
    }
    bool becomesUnavailable(const std::string& reason) {
        return eventually([&] { return power->capability().reason().starts_with(reason); });
    }

    SystemBus bus;
    std::optional<MockedLogind> logind{std::in_place, bus};
    VirtualExecutor executor;
    std::vector<PowerEvent> events;
    int wakes = 0;
    std::vector<PowerHold> holds;
    std::optional<LogindPowerEvents> power;
    std::unique_ptr<PowerObserver> observer;
};

TEST_F(LogindTest, TheComputerWaitsForTheLastHoldAndTheLockIsTakenAgain) {
    const auto pipes = openPipes();
    start();
    for (const auto& [signal, event] : {std::pair{"PrepareForSleep", PowerEvent::willSleep},
                                        {"PrepareForShutdown", PowerEvent::willPowerOff},
                                        {"PrepareForSleep", PowerEvent::willSleep}}) {
        SCOPED_TRACE(signal);
        logind->emit({{signal, true}});
        EXPECT_EQ(told(1), std::vector{event});
        PowerHold copy = holds.at(0);
        holds.clear();
        ASSERT_TRUE(copy);
        EXPECT_EQ(logind->inhibitors(), one);
        copy.reset();
        EXPECT_TRUE(locksBecome(none));
        logind->emit({{signal, false}});
        EXPECT_TRUE(locksBecome(one));
        EXPECT_TRUE(eventually([&] { return openPipes() == pipes + 1; })) << openPipes();
    }
    EXPECT_EQ(wakes, 2) << "of sleep only";
    power.reset();
    EXPECT_TRUE(locksBecome(none));
    EXPECT_TRUE(eventually([&] { return openPipes() == pipes; })) << openPipes();
}

TEST_F(LogindTest, NobodyIsWaitedForWhereNobodyListensAnyMore) {
    start();
    observer.reset();
    logind->emit({{"PrepareForSleep", true}});
    EXPECT_TRUE(locksBecome(none));
    EXPECT_TRUE(events.empty());
}

TEST_F(LogindTest, AnEventThatBeginsWhileTheLockIsAskedForGetsIt) {
    start();
    logind->emit({{"PrepareForSleep", true}});
    told(1);
    holds.clear();
    logind->emit({{"PrepareForSleep", false}, {"PrepareForShutdown", true}});
    EXPECT_EQ(told(1), std::vector{PowerEvent::willPowerOff});
    EXPECT_TRUE(holds.at(0));
    EXPECT_EQ(logind->inhibitors(), one);
    holds.clear();
    EXPECT_TRUE(locksBecome(none));
}

TEST_F(LogindTest, AHoldAndAnEventOnItsWayOutliveTheService) {
    start();
    logind->emit({{"PrepareForSleep", true}});
    told(1);
    logind->emit({{"PrepareForShutdown", true}});  // lies in the executor's queue, or never comes to it
    power.reset();
    observer.reset();
    executor.runFor(1s);
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(logind->inhibitors(), one);
    holds.clear();
    EXPECT_TRUE(locksBecome(none));
}

TEST_F(LogindTest, AServiceThatIsStartedAgainIsAskedAgain) {
    start();
    logind->kill();
    EXPECT_TRUE(becomesUnavailable("The system's login service does not run"));
    logind.emplace(bus);
    EXPECT_TRUE(eventually([&] { return power->capability() && logind->inhibitors() == one; }));
    logind->emit({{"PrepareForSleep", true}});
    EXPECT_EQ(told(1), std::vector{PowerEvent::willSleep});
    EXPECT_TRUE(holds.at(0));
    bus.end();
    EXPECT_TRUE(becomesUnavailable("The system bus has ended"));
}

TEST(LogindPowerEvents, WhereNoServiceAnswersTheReasonIsSaidAndNobodyHangs) {
    const auto folder = PrivateDesktop::home();
    const auto silent = silentBus(folder / "silent");
    const SystemBus empty;
    const std::string emptyBus = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    const struct {
        std::string address;
        std::chrono::milliseconds patience;
        std::string reason;
    } cases[] = {
        {"unix:path=" + (folder / "missing").string(), 1h, "No system bus answers"},
        {"no address at all", 1h, "No system bus answers"},
        {"unix:path=" + (folder / "silent").string(), 100ms, "No system bus answers"},
        {"unix:path=" + (folder / "silent").string(), 1h, "The system's login service has not answered"},
        {emptyBus, 1h, "The system's login service does not run"}};
    for (const auto& [address, patience, reason] : cases) {
        SCOPED_TRACE(address);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
        VirtualExecutor executor;
        std::optional<LogindPowerEvents> power(std::in_place, executor, patience);
        EXPECT_TRUE(waitFor([&] { return power->capability().reason().starts_with(reason); }))
            << power->capability().reason();
        const auto before = std::chrono::steady_clock::now();
        power.reset();
        EXPECT_LT(std::chrono::steady_clock::now() - before, 900ms);
    }
}

TEST_F(LogindTest, ALockedSessionIsTold) {
    LoginSession session(5s);
    EXPECT_FALSE(session.locked()) << "nobody knows of one";
    bus.call(
        "org.freedesktop.DBus.Mock", "AddObject",
        g_variant_new_parsed("('/org/freedesktop/login1/session/auto', 'org.freedesktop.login1.Session', "
                             "{'LockedHint': <true>}, @a(ssss) [])"));
    EXPECT_TRUE(session.locked());
    logind->kill();
    EXPECT_FALSE(session.locked()) << "as far as anybody knows";
}

TEST(LoginSessionTest, ABusThatHangsIsNotWaitedFor) {
    const std::string path = (PrivateDesktop::home() / "run/hanging-bus").string();
    const auto listener = silentBus(path);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
    const auto began = std::chrono::steady_clock::now();
    EXPECT_FALSE(LoginSession(50ms).locked());
    EXPECT_LT(std::chrono::steady_clock::now() - began, 2s);
}

}  // namespace
}  // namespace quillo::x11test
