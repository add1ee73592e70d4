#include "app/gui/RestoreNotice.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo::samples {
namespace {

TEST(RestoreNotice, TellsOnceOfAnEndThatNobodySees) {
    Model model;
    bool windowOpen = false;
    const RestoreNotice notice(*model.model, model.shell, [&] { return windowOpen; });
    model.save("Work");
    const auto told = [&](bool stopped = false) {
        model->restore(model.named("Work"), {});
        EXPECT_TRUE(model.shell.notifications.empty());
        if (stopped) model->closeRestorePanel();
        model.finishRestore();
        model.run(20s);
        return std::exchange(model.shell.notifications, {});
    };
    const auto first = told();
    ASSERT_EQ(first.size(), 1U);
    EXPECT_EQ(first[0].title, "Work is back");
    EXPECT_EQ(first[0].text, model->restoreRun()->subtitle());
    EXPECT_EQ(told(true).size(), 0U);
    EXPECT_EQ(told().size(), 1U);
    windowOpen = true;
    EXPECT_EQ(told().size(), 0U);
}

}  // namespace
}  // namespace quillo::samples
