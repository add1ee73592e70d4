// Starts of the program as processes: one is the first, the others hand over.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <QProcess>
#include <filesystem>

#include "app/gui/ActivationToken.hpp"
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
    const char* const link = "QUILLO:restore?name=a%20b";
    for (const bool again : {false, true}) {  // the second time after one that was killed
        Start first(GetParam(), {});
        ASSERT_EQ(first.line(), "first") << again;
        for (const auto& [argument, told] : {std::pair{"", "open token"},
                                             {"--save", "save token"},
                                             {"--switcher", "switcher token"},
                                             {"--background", "service token"},
                                             {link, "QUILLO:restore?name=a%20b token"}}) {
            Start other(GetParam(), *argument ? QStringList{argument} : QStringList{}, "token");
            EXPECT_EQ(other.line(), "handed over");
            EXPECT_EQ(other.status(), 0);
            EXPECT_EQ(first.line(), told);
        }
        for (const QString& unusable : {QString(1025, 'x'), QString("to\nken"), QString("to\u202eken")}) {
            Start other(GetParam(), {"--save"}, unusable);
            EXPECT_EQ(other.line(), "handed over");
            EXPECT_EQ(first.line(), "save");
        }
    }
}

TEST(SingleInstance, ItsSocketIsForThePersonAloneWhateverTheUmask) {
    const std::string folder = qEnvironmentVariable("XDG_RUNTIME_DIR").toStdString() + "/quillo";
    for (const mode_t mask : {0u, 0777u}) {
        std::filesystem::remove_all(folder);
        const mode_t before = umask(mask);
        Start first(false, {});
        umask(before);
        ASSERT_EQ(first.line(), "first");
        using std::filesystem::perms, std::filesystem::status;
        EXPECT_EQ(status(folder).permissions(), perms::owner_all);
        EXPECT_EQ(status(folder + "/socket").permissions(), perms::owner_read | perms::owner_write);
    }
}

TEST(ActivationToken, IsUsedOnceAndStaysInNoEnvironment) {
    const QString most(1024, '~');
    for (const auto& [newer, older, taken, left] :
         {std::tuple{QString("new"), QString("old"), QString("new"), QString("old")},
          {"", most, most, most},
          {most + "~", "a b", "a b", "a b"},
          {"caf\u00e9", most + "~", "", ""}}) {
        qputenv("XDG_ACTIVATION_TOKEN", newer.toUtf8());
        qputenv("DESKTOP_STARTUP_ID", older.toUtf8());
        EXPECT_EQ(takeActivationToken(), taken);
        EXPECT_EQ(qEnvironmentVariable("DESKTOP_STARTUP_ID"), left) << "for Qt, which takes it";
        {
            EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
            const OfferedActivationToken offered(taken);
            EXPECT_EQ(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), taken);
        }
        for (const char* name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"})
            EXPECT_FALSE(qEnvironmentVariableIsSet(name)) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(With, SingleInstanceTest, testing::Values(true, false),
                         [](const auto& of) { return of.param ? "SessionBus" : "Socket"; });

TEST(LaunchRequest, WhatIsNoArgumentIsNamed) {
    for (const QStringList& arguments :
         {QStringList{"--help-me"}, {"--save", "--help-me"}, {"quillo:restore?name=a", "--help-me"}}) {
        Start start(true, arguments);
        EXPECT_EQ(start.line(), "unknown argument: --help-me");
        EXPECT_EQ(start.status(), 2);
    }
}

}  // namespace
}  // namespace quillo::x11test
