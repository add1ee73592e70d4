// Displays come and go: what is offered or done, and which of identical ones is meant.
#include "settings/DisplayAnswers.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using samples::Model;

simulated::SceneDisplay screen(std::string id, Rect frame, std::optional<std::string> model = {}) {
    return {.id = std::move(id), .frame = frame, .visibleFrame = frame, .model = std::move(model)};
}

class Docking : public testing::Test {
  protected:
    simulated::World& world() { return model.desktop.world(); }
    double x(const char* title = "Notes") { return world().window("org.editor", title)->state.frame.x; }
    void put(double place, const char* title = "Notes") {
        world().move(*world().window("org.editor", title), {place, 50, 400, 300});
    }
    void dock() {
        world().plug(screen("side", samples::sideFrame));
        model.run(10s);
    }
    void undock() {
        world().unplug("side");
        model.run(10s);
    }
    void renew() {
        model->beginCapture(model.named("Work"));
        model.review();
        model->commit(*model->draft());
    }
    std::size_t offers() const { return model.shell.offers.size(); }

    Model model;
};

TEST_F(Docking, ALayoutIsOfferedWhereTheSetOfDisplaysHasOne) {
    put(1500);
    model.save("Work");
    undock();
    EXPECT_EQ(offers(), 0U) << "the workspace knows nothing of these";
    put(300);
    renew();
    dock();
    ASSERT_EQ(offers(), 1U);
    EXPECT_EQ(model.shell.offers[0].text, "“Work” was arranged on them before.");
    EXPECT_EQ(x(), 300) << "only offered";
    model.shell.offers[0].taken();
    model.finishRestore();
    EXPECT_EQ(x(), 1500);
    EXPECT_FALSE(world().application("org.viewer")->running) << "what is not open stays so";

    model.change([](AppSettings& settings) { settings.offersLayouts = false; });
    undock();
    EXPECT_EQ(offers(), 1U);
    model->setArrangesByItself(model.named("Work").id, true);
    dock();
    model.finishRestore();
    EXPECT_EQ(x(), 1500) << "by itself";
    EXPECT_EQ(offers(), 1U);
    world().arrange({{"side", {1400, 0, 1000, 900}}});
    model.run(10s);
    EXPECT_FALSE(model->restoreRunning()) << "the same displays, of another size";
    model->deleteWorkspace(model.named("Work"));
    EXPECT_TRUE(model->settings().arrangedWorkspaces.empty());
    undock();
    EXPECT_EQ(offers(), 1U);
}

TEST_F(Docking, NothingIsSavedOfDisplaysThatAreChanging) {
    model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 60; });
    model.run(1s);
    world().unplug("side");
    model.run(3s);
    model->captureSession();
    EXPECT_EQ(model->autoSnapshotSkipped(), "the displays are changing");
    EXPECT_EQ(model->sessions().size(), 1U);
    model.run(10s);
    model->captureSession();
    model.run(1s);
    EXPECT_FALSE(model->autoSnapshotSkipped());
}

TEST_F(Docking, ALayoutIsKeptAndForgottenAndBothCanBeUndone) {
    put(1500);
    model.save("Work");
    undock();
    put(300);
    const Uuid id = model.named("Work").id;
    model->keepLayout(model.named("Work"));
    model.run(1s);
    ASSERT_TRUE(model.named("Work").snapshot.layouts);
    EXPECT_TRUE(model.known.isSavedHere(model.named("Work")));
    const DisplayLayout layout = model.named("Work").snapshot.layouts->front();
    EXPECT_EQ(layout.windows.front().frame.x, 300);
    model->removeLayout(model.named("Work"), layout);
    EXPECT_FALSE(model.named("Work").snapshot.layouts);
    model->removeLayout(model.named("Work"), layout);  // by a second click
    EXPECT_FALSE(model->toastUndoes());
    model->undo(id);
    EXPECT_TRUE(model.named("Work").snapshot.layouts);
    model->undo(id);
    EXPECT_FALSE(model.named("Work").snapshot.layouts);
}

TEST_F(Docking, ThePersonIsAskedOnceWhichOfTwoTwinsIsWhich) {
    const auto twins = [&](const char* one, Rect at, const char* other, Rect there) {
        world().plug(screen(one, at, "TWIN"));
        world().plug(screen(other, there, "TWIN"));
        model.run(10s);
    };
    world().unplug("side");
    twins("T1", {-1400, 0, 1400, 900}, "T2", {1400, 0, 1400, 900});
    put(-1000);
    put(1500, "Letter");
    model.save("Work");
    for (const char* gone : {"T1", "T2"}) world().unplug(gone);
    twins("T7", {0, -900, 1400, 900}, "T8", {0, 900, 1400, 900});  // nothing says which stood on the left
    model->restore(model.named("Work"), {});
    ASSERT_TRUE(model->twinQuestion());
    EXPECT_FALSE(model->restoreRunning());
    EXPECT_TRUE(model->busy());
    EXPECT_EQ(model->twinQuestion()->applications, std::vector<std::string>{"org.editor"});
    EXPECT_EQ(model.surfaces.numbered, (std::vector<Rect>{{0, -900, 1400, 900}, {0, 900, 1400, 900}}));
    model->answerTwin(std::nullopt);
    model.run(1s);
    EXPECT_TRUE(model.surfaces.numbered.empty());
    EXPECT_FALSE(model->restoreRunning() || model->busy()) << "nothing is brought back";

    model->restore(model.named("Work"), {});
    model->beginCapture();
    EXPECT_FALSE(model->twinQuestion()) << "something else is begun";
    EXPECT_TRUE(model.surfaces.numbered.empty());
    model.review();
    model->dismissDraft();

    for (const bool asked : {true, false}) {
        model->restore(model.named("Work"), {});
        EXPECT_EQ(model->twinQuestion().has_value(), asked) << "the answer is remembered";
        model->answerTwin(1);
        model.run(1s);
        model.finishRestore();
        EXPECT_EQ(world().window("org.editor", "Notes")->state.frame, (Rect{400, 950, 400, 300}));
        EXPECT_EQ(world().window("org.editor", "Letter")->state.frame, (Rect{100, -850, 400, 300}));
    }
}

TEST(DisplayAnswers, AreKeptForEachPairOfSetsOfDisplays) {
    MemoryDefaults defaults;
    DisplayAnswers answers(defaults);
    const std::vector<DisplaySnapshot> saved{samples::display("a", {}), samples::display("b", {})},
        other{saved.front()};
    const std::vector<DisplaySnapshot> backwards(saved.rbegin(), saved.rend());
    const DisplayTwins::Pairs pairs{{"a", "b\n\"="}};
    EXPECT_TRUE(answers.remember(saved, other, pairs));
    EXPECT_EQ(DisplayAnswers(defaults).find(backwards, other), pairs);
    EXPECT_TRUE(answers.find(other, saved).empty());
    EXPECT_TRUE(defaults.setData(DisplayAnswers::defaultsKey, "[7"));
    EXPECT_TRUE(answers.find(saved, other).empty());
}

}  // namespace
}  // namespace quillo
