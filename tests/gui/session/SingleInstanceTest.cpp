// Starts of the program as processes: one is the first, the others hand over.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>

#include "tests/gui/session/MockedService.hpp"

namespace quillo::x11test {
namespace {

class Start {
  public:
    Start(bool bus, const QStringList& arguments, const QString& token = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!bus) environment.insert("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        environment.insert("DESKTOP_STARTUP_ID", token);
        process_.setProcessEnvironment(environment);
        process_.start(QCoreApplication::applicationFilePath(), QStringList{"--start"} + arguments);
    }
    ~Start() {
        process_.kill();
        process_.waitForFinished();
    }
    /// What it says next.
    std::string line() {
        untilQt([this] { return process_.canReadLine(); });
        return QString::fromUtf8(process_.readLine()).trimmed().toStdString();
    }
    int status() {
        untilQt([this] { return process_.state() == QProcess::NotRunning; });
        return process_.exitCode();
    }

  private:
    QProcess process_;
};

class SingleInstanceTest : public testing::TestWithParam<bool> {};

TEST_P(SingleInstanceTest, OtherStartsHandOverUntilTheFirstIsGone) {
    for (const bool again : {false, true}) {  // the second time after one that was killed
        Start first(GetParam(), {});
        ASSERT_EQ(first.line(), "first") << again;
        for (const auto& [argument, told] :
             {std::pair{"", "open token"}, {"--save", "save token"}, {"--switcher", "switcher token"}}) {
            Start other(GetParam(), *argument ? QStringList{argument} : QStringList{}, "token");
            EXPECT_EQ(other.line(), "handed over");
            EXPECT_EQ(other.status(), 0);
            EXPECT_EQ(first.line(), told);
        }
    }
}
INSTANTIATE_TEST_SUITE_P(With, SingleInstanceTest, testing::Values(true, false),
                         [](const auto& of) { return of.param ? "SessionBus" : "Socket"; });

TEST(LaunchRequest, WhatIsNoArgumentIsNamed) {
    for (const QStringList& arguments : {QStringList{"--help-me"}, {"--save", "--help-me"}}) {
        Start start(true, arguments);
        EXPECT_EQ(start.line(), "unknown argument: --help-me");
        EXPECT_EQ(start.status(), 2);
    }
}

}  // namespace
}  // namespace quillo::x11test
