// The update framework's questions and what the interface shows of its answers.
#include <gtest/gtest.h>

#include "app/UpdateController.hpp"
#include "platform/simulated/SimulatedUpdater.hpp"

namespace quillo {
namespace {

using Text = std::optional<std::string>;
using Versions = std::vector<std::string>;

struct Updates : testing::Test {
    Updates() {
        QObject::connect(&*controller, &UpdateController::changed, [this] { ++told; });
    }
    /// What is shown: found, downloaded, whether it can be installed now.
    void expect(const Text& available, const Text& ready, int times) {
        EXPECT_EQ(controller->availableVersion(), available);
        EXPECT_EQ(controller->readyVersion(), ready);
        EXPECT_EQ(static_cast<bool>(controller->installAndRelaunch()), ready.has_value());
        EXPECT_EQ(std::exchange(told, 0), times);
    }

    SimulatedUpdater updater;
    std::optional<UpdateController> controller{std::in_place, updater};
    int told = 0;
};

TEST_F(Updates, AreFoundDownloadedAndInstalledWithoutTheFrameworksWindows) {
    EXPECT_EQ(updater.starts, 1);
    EXPECT_EQ(updater.backgroundChecks, 1);
    EXPECT_FALSE(updater.findUpdate("2.0"));
    expect("2.0", {}, 1);
    updater.finishUpdateSession();
    expect({}, {}, 1);
    updater.findUpdate("2.1");
    EXPECT_TRUE(updater.finishDownload("2.1"));
    expect({}, "2.1", 2);
    EXPECT_EQ(updater.installed, Versions());
    controller->installAndRelaunch()();
    EXPECT_EQ(updater.installed, Versions{"2.1"});
    updater.findUpdate("2.2");
    updater.abort();
    expect("2.2", {}, 2);
    controller->checkForUpdates();
    EXPECT_EQ(updater.checks, 1);
}

TEST_F(Updates, OneSwitchStandsForBothOfTheFrameworks) {
    for (const auto& [checks, downloads] :
         {std::pair{true, true}, {true, false}, {false, true}, {false, false}, {true, true}}) {
        updater.setAutomaticallyChecksForUpdates(checks);  // elsewhere
        updater.setAutomaticallyDownloadsUpdates(downloads);
        EXPECT_EQ(controller->automaticUpdates(), checks && downloads);
    }
    expect({}, {}, 2);
    for (const bool on : {false, true, true}) {
        controller->setAutomaticUpdates(on);
        EXPECT_EQ(updater.automaticallyChecksForUpdates(), on);
        EXPECT_EQ(updater.automaticallyDownloadsUpdates(), on);
        EXPECT_EQ(controller->automaticUpdates(), on);
    }
    expect({}, {}, 2);
    EXPECT_TRUE(controller->canCheckForUpdates());
    updater.setCanCheckForUpdates(false);
    EXPECT_FALSE(controller->canCheckForUpdates());
    expect({}, {}, 1);
}

TEST_F(Updates, NoCheckRunsAtTheStartWherePeopleSwitchedItOff) {
    updater.setAutomaticallyChecksForUpdates(false);
    controller.emplace(updater);
    EXPECT_EQ(updater.starts, 2);
    EXPECT_EQ(updater.backgroundChecks, 1);
    EXPECT_FALSE(controller->automaticUpdates());
}

TEST_F(Updates, WhatTheFrameworkSaysAfterTheControllersEndReachesNobody) {
    updater.finishDownload("2.0");
    const auto install = controller->installAndRelaunch();
    controller.reset();
    updater.findUpdate("3.0");
    updater.finishUpdateSession();
    EXPECT_FALSE(updater.finishDownload("3.0"));
    updater.abort();
    updater.setCanCheckForUpdates(false);
    EXPECT_EQ(told, 1);
    install();
    EXPECT_EQ(updater.installed, Versions{"2.0"});
}

TEST_F(Updates, AFrameworkMayAbortWhileItInstalls) {
    updater.installFails = true;
    updater.finishDownload("2.0");
    controller->installAndRelaunch()();
    EXPECT_EQ(updater.notInstalled, Versions{"2.0"});
    expect({}, {}, 2);
}

TEST(UpdateController, StartsNothingWhereSomethingElseKeepsTheProgramUpToDate) {
    SimulatedUpdater updater(Capability::unavailable("The store does it."));
    UpdateController controller(updater);
    controller.setAutomaticUpdates(false);
    controller.checkForUpdates();
    EXPECT_EQ(controller.capability().reason(), "The store does it.");
    EXPECT_FALSE(controller.canCheckForUpdates());
    EXPECT_FALSE(controller.automaticUpdates());
    EXPECT_FALSE(updater.hasDelegate());
    EXPECT_EQ(updater.starts + updater.checks + updater.backgroundChecks, 0);
    EXPECT_TRUE(updater.automaticallyChecksForUpdates());
}

}  // namespace
}  // namespace quillo
