// Workspaces that come back by themselves, on a clock that jumps. It begins on Friday 2025-03-14, 09:26:53
// UTC.
#include "app/Schedule.hpp"
#include "app/UnattendedRestores.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo {
namespace {

TEST(Schedule, IsTheNextTimeThatClocksShow) {
    const struct {
        const char* zone;
        Days days;
        std::int64_t minute;
        const char *after, *due;  // none: never
    } cases[] = {
        {"UTC", Days::daily, 570, "2025-03-14T09:26:53Z", "2025-03-14T09:30:00Z"},
        {"UTC", Days::daily, 570, "2025-03-14T09:30:00Z", "2025-03-15T09:30:00Z"},
        {"UTC", Days::weekdays, 570, "2025-03-14T09:30:00Z", "2025-03-17T09:30:00Z"},
        {"UTC", Days::weekdays, 0, "2025-03-15T00:00:00Z", "2025-03-17T00:00:00Z"},
        {"Asia/Tokyo", Days::weekdays, 540, "2025-03-13T23:59:00Z", "2025-03-14T00:00:00Z"},
        {"America/New_York", Days::daily, 150, "2025-03-09T05:00:00Z", "2025-03-09T07:30:00Z"},  // left out
        {"Europe/Berlin", Days::daily, 540, "2025-03-29T09:00:00Z", "2025-03-30T07:00:00Z"},
        {"UTC", Days::never, 570, "2025-03-14T09:26:53Z", nullptr},
        {"UTC", Days::daily, minutesOfDay, "2025-03-14T09:26:53Z", nullptr},
    };
    for (const auto& c : cases) {
        const auto due =
            nextDue({.days = c.days, .minute = c.minute}, *parseInstant(c.after), QTimeZone(c.zone));
        EXPECT_EQ(due ? formatInstant(*due) : "", c.due ? c.due : "") << c.zone << " " << c.after;
    }
}

class UnattendedTest : public testing::Test {
  protected:
    UnattendedTest() {
        for (const char* name : {"Work", "Play"}) model.save(name);
    }
    /// Of the restore that ran since, if any.
    std::string resumed() {
        model.finishRestore();
        const RestoreRun* const run = model->restoreRun();
        const std::string name = run && run != seen ? run->workspace().name : "";
        seen = run;
        return name;
    }
    std::string after(Duration duration) {
        model.run(duration);
        return resumed();
    }
    void choose(const char* name, const WorkspaceAutomation& chosen) {
        model->setAutomation(model.named(name).id, chosen);
    }

    samples::Model model;
    UnattendedRestores unattended{*model.model, model.services(model.desktop.access, model.disk),
                                  [] { return QTimeZone::utc(); }};
    const RestoreRun* seen = nullptr;
};

TEST_F(UnattendedTest, ComesAtItsTimeAndNotAgain) {
    choose("Work", {.days = Days::weekdays, .minute = 9 * 60 + 31});
    choose("Play", {.days = Days::daily, .minute = 9 * 60});  // past already: tomorrow's
    EXPECT_EQ(after(std::chrono::minutes(4)), "");
    EXPECT_EQ(after(std::chrono::minutes(1)), "Work");
    EXPECT_EQ(after(std::chrono::hours(23)), "");
    EXPECT_EQ(after(std::chrono::minutes(30)), "Play");
    choose("Play", {});
    EXPECT_EQ(after(std::chrono::hours(47)), "") << "the weekend";
    EXPECT_EQ(after(std::chrono::minutes(90)), "Work");
    model->deleteWorkspace(model.named("Work"));
    EXPECT_EQ(after(std::chrono::hours(48)), "");
}

TEST_F(UnattendedTest, WhatWasSleptThroughIsMadeUpForSoonOrNotAtAll) {
    choose("Work", {.days = Days::daily, .minute = 10 * 60});
    choose("Play", {.days = Days::daily, .minute = 10 * 60 + 15});
    model.desktop.executor().burn(std::chrono::minutes(60));  // until 10:26
    model.power.emit(PowerEvent::didWake);
    EXPECT_EQ(after(std::chrono::seconds(1)), "Play") << "only the last of them";
    model.desktop.executor().burn(std::chrono::hours(26));  // until 12:26 of the next day
    model.power.emit(PowerEvent::didWake);
    EXPECT_EQ(after(std::chrono::seconds(1)), "");
    model->beginCapture();
    EXPECT_EQ(after(std::chrono::hours(22)), "");
    EXPECT_TRUE(model->draft()) << "nobody is interrupted";
    model->dismissDraft();
    model->openPreview(model.named("Play"), {});
    EXPECT_EQ(after(std::chrono::hours(24)), "");
    EXPECT_TRUE(model->preview());
}

TEST_F(UnattendedTest, ComesAfterLoginOnceWindowsCanBePlaced) {
    choose("Work", {.atLogin = true});
    model.setTrusted(false);
    unattended.loggedIn();
    EXPECT_EQ(after(std::chrono::seconds(20)), "");
    model.setTrusted(true);
    EXPECT_EQ(after(std::chrono::seconds(3)), "Work");
}

TEST_F(UnattendedTest, ComesWithExactlyItsDisplays) {
    choose("Work", {.atDisplays = true});
    choose("Play", {.atDisplays = true});
    const auto change = [&](bool plugged) {
        if (plugged)
            model.desktop.world().plug(
                {.id = "other", .frame = {1600, 0, 1000, 800}, .visibleFrame = {1600, 0, 1000, 800}});
        else
            model.desktop.world().unplug("other");
    };
    change(true);
    EXPECT_EQ(after(std::chrono::seconds(10)), "") << "one too many";
    model->restoreFromLibrary(model.named("Work").id);
    resumed();
    change(false);
    EXPECT_EQ(after(std::chrono::seconds(1)), "") << "they may not be all yet";
    EXPECT_EQ(after(std::chrono::seconds(5)), "Work") << "the one that was used last";
}

}  // namespace
}  // namespace quillo
