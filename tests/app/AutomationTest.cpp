// What other programs may ask for and hear: names, identifiers and counts.
#include <fmt/format.h>

#include "app/Automation.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo {
namespace {

class AutomationTest : public testing::Test {
  protected:
    AutomationTest() {
        QObject::connect(&automation, &Automation::restoreStarted,
                         [&](const Uuid&, const std::string& name, std::int64_t windows) {
                             heard.push_back(fmt::format("{} started, {}", name, windows));
                         });
        QObject::connect(&automation, &Automation::restoreProgressed,
                         [&](const Uuid&, std::int64_t done, std::int64_t windows) {
                             heard.push_back(fmt::format("{} of {}", done, windows));
                         });
        QObject::connect(
            &automation, &Automation::restoreEnded,
            [&](const Uuid&, const std::string& name, const Automation::Counts& totals, bool cancelled) {
                heard.push_back(fmt::format("{} ended, {} {}{}", name, totals[0].first, totals[0].second,
                                            cancelled ? ", cancelled" : ""));
            });
        QObject::connect(&automation, &Automation::libraryChanged, [&](const LibraryChange& change) {
            heard.push_back(fmt::format("{} {}", change.name, static_cast<int>(change.kind)));
        });
    }
    Result<Uuid> save(const std::string& name) {
        std::optional<Result<Uuid>> answer;
        automation.save(name, [&](const Result<Uuid>& given) { answer = given; });
        model.desktop.executor().runUntil([&] { return answer.has_value(); }, std::chrono::minutes(1));
        return answer.value();
    }

    samples::Model model;
    Automation automation{*model.model};
    std::vector<std::string> heard;
    using Lines = std::vector<std::string>;
};

TEST_F(AutomationTest, SavesPlansAndRestoresAndTellsOfIt) {
    const Result<Uuid> saved = save("  Desk ");
    ASSERT_TRUE(saved);
    EXPECT_NE(save("Desk").value(), *saved);
    EXPECT_EQ(model.names(), (Lines{"Desk", "Desk 2"}));
    EXPECT_TRUE(model.known.isSavedHere(model.named("Desk")));
    EXPECT_EQ(std::exchange(heard, {}), (Lines{"Desk 0", "Desk 2 0"}));

    Automation::Counts plan;
    automation.plan("desk", [&](const Result<Automation::Counts>& counts) { plan = counts.value(); });
    model.run(std::chrono::seconds(1));
    EXPECT_EQ(plan.front(), (std::pair<std::string, std::int64_t>{"inPlace", 2}));

    EXPECT_EQ(automation.restore("desk"), Automation::Begun::waiting);
    model.run(std::chrono::seconds(1));
    ASSERT_TRUE(model->question());
    EXPECT_EQ(model->question()->asker, Asker::program);
    EXPECT_EQ(model->question()->consequences, Consequences()) << "what runs is not launched";
    model->answerQuestion(false);
    EXPECT_TRUE(heard.empty());
    model->setAutomation(*saved, {.withoutAsking = true});
    EXPECT_EQ(automation.restore(saved->upper()), Automation::Begun::started);
    model.finishRestore();
    EXPECT_EQ(std::exchange(heard, {}),
              (Lines{"Desk started, 2", "1 of 2", "2 of 2", "Desk ended, restored 2"}));
    model->showReport(*saved);  // of former days
    model->putBack();
    model.finishRestore();
    model->deleteWorkspace(model.named("Desk 2"));
    EXPECT_EQ(heard, Lines{"Desk 2 2"});
}

TEST_F(AutomationTest, WhatThePersonIsDoingIsNotDisturbed) {
    ASSERT_TRUE(save("Desk"));
    const int came = model.windowsOpened;
    model->beginCapture();
    EXPECT_EQ(automation.restore("Desk").error().kind, ErrorKind::refused);
    EXPECT_EQ(save("Other").error().kind, ErrorKind::refused);
    EXPECT_EQ(model.windowsOpened, came);
    model->dismissDraft();
    model.run(std::chrono::seconds(1));
    model->openPreview(model.named("Desk"), {});
    EXPECT_EQ(automation.restore("Desk").error().kind, ErrorKind::refused);
    model->closePreview();
    EXPECT_EQ(automation.restore("Nothing").error().kind, ErrorKind::notFound);
    EXPECT_EQ(save(" ").error().kind, ErrorKind::invalidArgument);
    model.disk.createFailure = Error{ErrorKind::noSpace, "the disk is full"};
    EXPECT_EQ(save("Other").error().kind, ErrorKind::noSpace);
    EXPECT_EQ(model->toastKind(), ToastKind::failure) << "the person hears of it as well";
}

}  // namespace
}  // namespace quillo
