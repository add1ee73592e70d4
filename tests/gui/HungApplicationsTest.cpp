// Applications that hang while the interface captures and restores: each holds the thread up for its
// messaging timeout at most, and what is typed meanwhile is served between two of them.
#include "tests/gui/InterfaceFixture.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using samples::FaultKind;

constexpr Duration messagingTimeout = 1s;
const char* const names[] = {"org.a", "org.b", "org.c", "org.d", "org.e"};

samples::Scene busyDesk() {
    std::vector<samples::SceneApplication> applications;
    for (const char* name : names) {
        applications.push_back(
            samples::sceneApplication(name, {samples::sceneWindow("One", {10, 40, 400, 300}),
                                             samples::sceneWindow("Two", {500, 40, 400, 300})}));
    }
    return samples::scene(applications);
}

struct Hang {
    const char* name;
    std::size_t applications;
    bool restores, onWrite = false;
    double after = 0;  // seconds
};

class HungApplicationsTest : public samples::InterfaceTest, public testing::WithParamInterface<Hang> {
  protected:
    HungApplicationsTest() : InterfaceTest(busyDesk()) {}

    /// Runs turn by turn, and types a letter into the switcher whenever the clock has moved on by half a
    /// second.
    void runTyping(const std::function<bool()>& over) {
        model->toggleSwitcher();
        QQuickWindow* switcher = interface.windows().panelWindow(PanelID::switcher);
        switcher->requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(switcher));
        settle();
        QQuickItem* field = switcher->activeFocusItem();
        ASSERT_TRUE(field);
        VirtualExecutor& executor = desk.desktop.executor();
        TimePoint last = executor.now();
        int letters = 0;
        const auto typeNow = [&] {
            if (executor.now() - last < 500ms) return;
            last = executor.now();
            QTest::keyClick(switcher, Qt::Key_X);
            EXPECT_EQ(field->property("text").toString().size(), ++letters);
        };
        EXPECT_TRUE(executor.runUntil(
            [&] {
                typeNow();
                return over();
            },
            5min));
        EXPECT_GT(letters, 0);
        QTest::keyClick(switcher, Qt::Key_Escape);
        EXPECT_FALSE(interface.windows().panelVisible(PanelID::switcher));
    }
};

TEST_P(HungApplicationsTest, HoldTheInterfaceUpForOneMessagingTimeoutAtATime) {
    const Hang& hang = GetParam();
    model->beginCapture();
    ASSERT_TRUE(until([&] { return model->draft() != nullptr; }));
    Workspace workspace = model->workspaces().front();
    workspace.snapshot = model->draft()->snapshot();
    for (ApplicationSnapshot& application : workspace.snapshot.applications) {
        for (WindowSnapshot& window : application.windows) window.frame.x += 300;
    }
    model->dismissDraft();
    EXPECT_EQ(desk.desktop.executor().longestTurn(), 0s) << "nobody hangs yet";

    for (std::size_t i = 0; i < hang.applications; ++i) {
        auto fault = samples::fault(FaultKind::applicationHangs, names[i], desk.seconds() + hang.after, 30);
        fault.onWrite = hang.onWrite;
        desk.desktop.world().add(fault);
    }
    if (hang.restores) {
        ASSERT_TRUE(desk.known.savedHere(workspace));
        model->restore(workspace, {});
        runTyping([&] { return !model->restoreRunning(); });
        EXPECT_GE(model->restoreRun()->report()->items.size(), 5U);
    } else {
        model->beginCapture();
        runTyping([&] { return model->draft() != nullptr; });
        EXPECT_EQ(model->draft()->snapshot().applications.size(), 5U) << "those that hang, too";
    }
    EXPECT_EQ(desk.desktop.executor().longestTurn(), messagingTimeout);
}

INSTANTIATE_TEST_SUITE_P(Hangs, HungApplicationsTest,
                         testing::Values(Hang{"oneInACapture", 1, false}, Hang{"severalInACapture", 4, false},
                                         Hang{"allInACapture", 5, false}, Hang{"oneInARestore", 1, true},
                                         Hang{"severalInARestore", 4, true},
                                         Hang{"severalLaterInARestore", 4, true, false, 0.2},
                                         Hang{"oneAtTheFirstWrite", 1, true, true},
                                         Hang{"allAtTheFirstWrite", 5, true, true}),
                         [](const auto& hang) { return std::string(hang.param.name); });

}  // namespace
}  // namespace quillo
