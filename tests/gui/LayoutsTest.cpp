// How a workspace stands on other displays, on its page; and the question about twins.
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

using LayoutsTest = samples::GuiTest;

TEST_F(LayoutsTest, AreKeptAndForgottenOnTheWorkspacesPage) {
    model.save("Work");
    model.desktop.world().unplug("side");
    model.run(std::chrono::seconds(10));
    openDetail(model.named("Work").id);
    open({1080, 1000});
    click("Arrange windows when these displays come");
    EXPECT_TRUE(model->arrangesByItself(model.named("Work").id));
    click("Keep Layout for Attached Displays");
    const QString forget = QStringLiteral("Forget the layout for 1\u00A0display: 1400 × 900");
    ASSERT_TRUE(until([&] { return named(forget) != nullptr; }));
    click(forget);
    EXPECT_FALSE(model.named("Work").snapshot.layouts);
}

}  // namespace
}  // namespace quillo
