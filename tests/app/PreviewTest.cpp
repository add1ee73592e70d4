// What resuming would do, and resuming just that.
#include "app/PreviewWords.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo {
namespace {

using namespace samples;

class PreviewTest : public testing::Test {
  protected:
    PreviewTest() {
        model.save("Work");
        for (const char* title : {"Notes", "Letter"}) model.desktop.world().move(*window(title), away);
    }
    simulated::Window* window(const char* title) { return model.desktop.world().window("org.editor", title); }
    ResumePreview& preview() { return *model->preview(); }
    bool planned() {
        return model.desktop.executor().runUntil([&] { return preview().plan().has_value(); }, 1min);
    }
    std::vector<std::string> totals() {
        return PreviewWords::totals(Restore::totalsOf(*preview().plan()), preview().cleanSlate(),
                                    preview().touchedOthers());
    }
    std::string word(std::size_t window) {
        const PlannedApplication& editor = preview().plan()->applications.front();
        return PreviewWords::of(*preview().plan(), editor, editor.windows.at(window), "").word;
    }

    static constexpr Rect away{500, 300, 300, 200};
    Model model;
};

TEST_F(PreviewTest, WhatIsUntickedIsLeftAloneThisTime) {
    const Workspace before = model.named("Work");
    model.desktop.world().start(*model.desktop.world().application("org.viewer"));
    model.run(5s);
    model->openPreview(before, CleanSlateMode::quit);
    ASSERT_TRUE(planned());
    EXPECT_EQ(totals(), (std::vector<std::string>{"1 other app is asked to quit", "2 windows change"}));
    EXPECT_EQ(word(0), "moves and resizes");
    EXPECT_EQ(preview().afterwards().applications.front().windows.front().frame,
              before.snapshot.applications.front().windows.front().frame);

    preview().ticks().includeWindow("org.editor", 0, false);
    preview().ticks().includeApp("org.viewer", false);
    model.run(1s);
    EXPECT_EQ(totals(), std::vector<std::string>{"1 window changes"});
    EXPECT_EQ(preview().afterwards().windowCount(), 2) << "on the map it is seen";

    model.desktop.world().move(*window("Letter"), {500, 500, 400, 300});
    model.run(5s);  // the desktop is followed
    EXPECT_EQ(word(0), "moves");
    model->resumePreview();
    EXPECT_FALSE(model->preview());
    model.finishRestore();
    EXPECT_EQ(window("Notes")->state.frame, away);
    EXPECT_EQ(window("Letter")->state.frame, (Rect{420, 40, 400, 300}));
    EXPECT_TRUE(model.desktop.world().application("org.viewer")->running);
    EXPECT_EQ(model.named("Work"), before) << "and a part is no use of all of it";
}

TEST_F(PreviewTest, FollowsItsWorkspaceAndGivesWayToWhatIsUnderWay) {
    model->openPreview(model.named("Work"), {});
    ASSERT_TRUE(planned());
    preview().ticks().includeWindow("org.editor", 1, false);
    model->rename(model.named("Work"), "Play");
    ASSERT_TRUE(model->preview());
    EXPECT_EQ(preview().workspace().name, "Play");
    EXPECT_FALSE(preview().ticks().includesWindow("org.editor", 1)) << "what was unticked stays so";
    model->deleteWorkspace(model.named("Play"));
    EXPECT_FALSE(model->preview());

    model.keep(example());
    model->beginCapture();
    model.review();
    model->openPreview(model->workspaces().front(), {});
    EXPECT_FALSE(model->preview()) << "a review comes first";
    EXPECT_EQ(model->toastKind(), ToastKind::refusal);
}

TEST_F(PreviewTest, AStrangersWorkspaceIsAskedAboutFromHereToo) {
    Workspace stranger = model.named("Work");
    stranger.id = Uuid::random();
    stranger.name = "Foreign";
    EXPECT_TRUE(model.store.save(stranger));
    model->reload();
    for (int time = 0; time < 2; ++time) {
        model->openPreview(model.named("Foreign"), {});
        ASSERT_TRUE(planned());
        preview().ticks().includeWindow("org.editor", 0, false);
        model->resumePreview();
        ASSERT_TRUE(model.desktop.executor().runUntil([&] { return model->question().has_value(); }, 1min));
        model->answerQuestion(true);
        model.finishRestore();
        EXPECT_EQ(window("Notes")->state.frame, away);
    }
}

}  // namespace
}  // namespace quillo
