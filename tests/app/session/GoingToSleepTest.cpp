// The model with the real power events over a mocked login service: what the computer waits for.
#include "platform/linux/LogindPowerEvents.hpp"
#include "tests/app/ModelFixture.hpp"
#include "tests/platform/linux/session/MockedLogind.hpp"

namespace quillo::x11test {
namespace {

using namespace std::chrono_literals;

class GoingToSleep : public testing::Test {
  protected:
    GoingToSleep() {
        model.powerEvents = &power;
        model.start();
        model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 60; });
        model.run(1s);
        model->deleteSessionHistory();
        EXPECT_TRUE(eventually([&] { return power.capability() && waits(); }));
    }
    ~GoingToSleep() override { model.model.reset(); }  // its power events end before the rest of the fixture

    bool waits() { return !logind.inhibitors().empty(); }
    /// The virtual clock goes on only as the real one does.
    bool eventually(const std::function<bool()>& condition) {
        return waitFor([&] {
            model.run(10ms);
            return condition();
        });
    }
    /// Until the computer has waited for us, if it did.
    void prepare(const char* signal) {
        logind.emit({{signal, true}});
        EXPECT_TRUE(eventually([&] { return !waits(); }));
    }
    void wakeUp(const char* signal) {
        logind.emit({{signal, false}});
        EXPECT_TRUE(eventually([&] { return waits(); }));
    }

    SystemBus bus;
    MockedLogind logind{bus};
    samples::Model model;
    LogindPowerEvents power{model.desktop.executor()};
};

TEST_F(GoingToSleep, TheSessionIsSavedBeforeTheComputerNeedsNotWaitAnyMore) {
    int saved = 0;
    QObject::connect(&*model.model, &AppModel::sessionsChanged, [&] {
        if (model->sessions().empty()) return;
        ++saved;
        EXPECT_TRUE(waits());
        EXPECT_EQ(model.history.list().size(), 1U);
    });
    for (const auto* signal : {"PrepareForSleep", "PrepareForShutdown", "PrepareForSleep"}) {
        prepare(signal);
        EXPECT_EQ(std::exchange(saved, 0), 1) << signal;
        model->deleteSessionHistory();
        wakeUp(signal);
    }
}

TEST_F(GoingToSleep, NothingIsSavedOrWaitedForWithAReviewOpenOrSnapshotsOff) {
    model->beginCapture();
    model.review();
    for (const auto* signal : {"PrepareForSleep", "PrepareForShutdown"}) {
        prepare(signal);
        EXPECT_TRUE(model->sessions().empty()) << signal;
        wakeUp(signal);
        model->dismissDraft();
        model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 0; });
    }
    EXPECT_TRUE(model.history.list().empty());
}

}  // namespace
}  // namespace quillo::x11test
