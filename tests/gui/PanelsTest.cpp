// The two panels: the switcher by its keys, the restore panel while a restore runs and when it is over.
#include "app/gui/RestorePresenter.hpp"
#include "app/gui/SwitcherPresenter.hpp"
#include "app/gui/Words.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

class PanelsTest : public samples::GuiTest {
  protected:
    QQuickWindow* window() override { return foremost(); }
    void openSwitcher() {
        if (switcherOpen()) model->toggleSwitcher();
        model->toggleSwitcher();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
        settle();
    }
    bool switcherOpen() const { return interface->panelVisible(PanelID::switcher); }
    RestorePresenter& restore() { return presenter<RestorePresenter>("Restore"); }

    /// What a restore of the desk as it is now brings back, in the library.
    Workspace desk(const std::string& name) {
        model.save(name);
        return model.named(name);
    }
    /// So that a restore has something to do.
    void scatter() {
        auto& world = model.desktop.world();
        for (simulated::Window* window : world.windowsOf("org.editor"))
            world.move(*window, {700, 500, 200, 150});
    }
};

TEST_F(PanelsTest, TheSwitcherFindsAndResumesByKeysFromItsFirstFrame) {
    model.put({"Alpha", "Beta", "Gamma"});
    const Workspace beta = model.named("Beta");
    model->setCleanSlate(beta, CleanSlateMode::hide);
    openSwitcher();
    EXPECT_TRUE(model->refreshingCurrentSnapshot());
    type("BET");
    EXPECT_TRUE(named("Beta"));
    EXPECT_FALSE(named("Alpha"));
    press(Qt::Key_Return);
    EXPECT_FALSE(switcherOpen());
    ASSERT_TRUE(model->restoreRun());
    EXPECT_EQ(model->restoreRun()->workspace().id, beta.id);
    model.finishRestore();
    EXPECT_TRUE(model.desktop.world().application("org.editor")->hidden) << "the stored choice counts";
}

TEST_F(PanelsTest, TheSwitchersOtherWays) {
    struct Way {
        const char* typed;
        std::vector<std::pair<Qt::Key, Qt::KeyboardModifiers>> keys;
        bool open, captures;
        int highlighted;
    };
    model.put({"Alpha", "Beta", "Gamma"});
    const Way ways[] = {
        {"", {{Qt::Key_Down, {}}, {Qt::Key_Down, {}}, {Qt::Key_Up, {}}}, true, false, 1},
        {"", {{Qt::Key_Escape, {}}}, false, false, 0},
        {"", {{Qt::Key_S, Qt::ControlModifier}}, false, true, 0},
        {"nothing of the kind", {{Qt::Key_Enter, {}}}, false, true, 0},
    };
    for (const Way& way : ways) {
        SCOPED_TRACE(std::string(way.typed) + " " + std::to_string(&way - ways));
        openSwitcher();
        const auto& switcher = presenter<SwitcherPresenter>("Switcher");
        type(way.typed);
        if (*way.typed) EXPECT_TRUE(named(QString("Nothing matches “%1”").arg(way.typed)));
        for (const auto& [key, modifiers] : way.keys) press(key, modifiers);
        EXPECT_EQ(switcherOpen(), way.open);
        EXPECT_EQ(model->capturing(), way.captures);
        EXPECT_EQ(switcher.highlighted(), way.highlighted);
        if (way.captures) {
            model.review();
            model->dismissDraft();
        }
    }
}

TEST_F(PanelsTest, APreparedSwitcherBeginsAnewEachTimeAndLooksAtTheDesktopOnlyThen) {
    model.put({"A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L"});
    interface->windows().prepareSwitcher();
    settle();
    EXPECT_FALSE(switcherOpen() || model->refreshingCurrentSnapshot());
    theme.setDark(true);
    model.put({"M"});
    openSwitcher();
    const QQuickWindow* const first = window();
    EXPECT_EQ(first->color(), theme.raised());
    EXPECT_TRUE(named("M"));
    type("l");
    for (int i = 0; i < 9; ++i) press(Qt::Key_Down);
    press(Qt::Key_Escape);
    EXPECT_FALSE(switcherOpen());
    openSwitcher();
    EXPECT_EQ(window(), first);
    const auto& switcher = presenter<SwitcherPresenter>("Switcher");
    EXPECT_TRUE(switcher.query().isEmpty() && switcher.highlighted() == 0 && switcher.focused());
    EXPECT_TRUE(until([&] { return named("M") && named("Resume a workspace…"); })) << "what was typed stays";
    type("B");
    EXPECT_FALSE(named("M"));
}

TEST_F(PanelsTest, EightRowsAndTheRestByScrolling) {
    model.put({"A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L"});
    openSwitcher();
    const double height = window()->height();
    EXPECT_LT(height, 56 * 10 + 60);
    const QString last = QString::fromStdString(model->workspaces().back().name);
    EXPECT_TRUE(!named(last) || named(last)->mapToScene({}).y() > height) << "below what is seen";
    for (int i = 0; i < 9; ++i) press(Qt::Key_Down);
    const QString tenth = QString::fromStdString(model->workspaces().at(9).name);
    ASSERT_TRUE(named(tenth));
    EXPECT_LE(named(tenth)->mapToScene({0, 56}).y(), height - 74 - 8) << "apart from the line below";
    for (int i = 0; i < 2; ++i) press(Qt::Key_Down);
    ASSERT_TRUE(named(last));
    EXPECT_LE(named(last)->mapToScene({0, 56}).y(), height - 72);
    click(last);
    ASSERT_TRUE(model->restoreRun());
    EXPECT_EQ(model->restoreRun()->workspace().name, last.toStdString());
}

TEST_F(PanelsTest, TheSwitcherStaysWhereItIsWhileItsRowsComeAndGo) {
    model.put({"A", "B", "C", "Dora"});
    openSwitcher();
    const QRect before = window()->geometry(), screen = window()->screen()->availableGeometry();
    EXPECT_NEAR(before.y(), screen.y() + (screen.height() - before.height()) / 2.0 - screen.height() / 10.0,
                1);
    window()->setPosition(0, 0);  // as one may hear of it while the window manager puts it into its frame
    type("dora");
    EXPECT_TRUE(until([&] { return window()->height() == before.height() - 3 * 56; }));
    EXPECT_EQ(window()->geometry().topLeft(), before.topLeft());
    press(Qt::Key_Backspace, {}, 4);
    EXPECT_TRUE(until([&] { return window()->geometry() == before; }));
}

TEST_F(PanelsTest, WithACompositorPanelsStandOverTheirShadow) {
    std::map<int, QMargins> told;  // by the height of the window
    bool composited = true;
    panels = {.translucent = [&] { return composited; },
              .declareShadow = [&](const QWindow& of, const QMargins& room) { told[of.height()] = room; }};
    model.put({"A", "B"});
    openSwitcher();
    const QRect plain = window()->geometry();
    EXPECT_EQ(window()->color(), theme.raised());
    start();
    openSwitcher();
    EXPECT_EQ(window()->geometry(), plain.marginsAdded({72, 72, 72, 72}));
    EXPECT_EQ(window()->color(), QColor(Qt::transparent));
    EXPECT_EQ(told.rbegin()->first, window()->height());
    model->toggleSwitcher();
    model->restore(desk("Desk"), {});
    settle();
    const QRect panel = window()->geometry().marginsRemoved(told[window()->height()]);
    const QRect screen = window()->screen()->availableGeometry();
    EXPECT_EQ(panel.bottomRight(), screen.bottomRight() - QPoint(20, 20));
    EXPECT_EQ(panel.width(), 380);
    composited = false;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return window()->color() == theme.raised() && window()->geometry() == panel;
    })) << "nothing of what was translucent stays, black";
}

TEST_F(PanelsTest, ARestoreFillsTheMapAndTheRowsAsItGoes) {
    const Workspace workspace = desk("Desk");
    scatter();
    model->restore(workspace, {});
    settle();
    EXPECT_TRUE(named("Resuming Desk…"));
    EXPECT_TRUE(named("Looking at what's open…"));
    EXPECT_EQ(restore().states().value("org.editor#window#0"), "pending");
    EXPECT_EQ(restore().progress(), 0);
    ASSERT_TRUE(until([&] { return restore().progress() > 0; }));
    EXPECT_TRUE(named("Looking at what's open…")) << "nothing has to be opened";
    ASSERT_TRUE(until([&] { return !restore().running(); }));
    settle();
    EXPECT_TRUE(named("Desk is back"));
    EXPECT_TRUE(named("org.editor — Notes: restored"));
    EXPECT_EQ(restore().states().value("org.editor#window#0"), "restored");
    EXPECT_EQ(restore().progress(), 1);
    click("Close");
    EXPECT_FALSE(interface->panelVisible(PanelID::restore));
}

/// Whoever reaches for the button that stops a restore finds it where it was.
TEST_F(PanelsTest, NothingMovesWhileLinesArriveAndReasonsAreWords) {
    Workspace workspace = desk("Desk");
    ApplicationSnapshot& editor = workspace.snapshot.applications.front();
    editor.windows.resize(2);
    WindowSnapshot lost = editor.windows.front();
    lost.title = QString(80, 'x').toStdString();
    for (lost.index = 2; lost.index < 5; ++lost.index) editor.windows.push_back(lost);
    model.keep(workspace);
    scatter();
    model->restore(model.named("Desk"), {});
    settle();
    std::set<int> heights, tops;
    ASSERT_TRUE(until([&] {
        if (!restore().running()) return true;
        heights.insert(window()->height());
        tops.insert(window()->y());
        return false;
    }));
    EXPECT_EQ(heights.size(), 1U);
    EXPECT_EQ(tops.size(), 1U);
    ASSERT_TRUE(until([&] { return restore().rowCount() == 5; }));
    settle();
    EXPECT_LE(window()->y(), *tops.begin());
    const QAbstractItemModel& rows = *restore().rows();
    const auto last = [&](const char* role) {
        return rows.index(4, 0).data(rows.roleNames().key(role)).toString().toStdString();
    };
    EXPECT_EQ(last("heading"), std::string(80, 'x'));
    EXPECT_EQ(last("reason"), "No window of org.editor was left to place");
    EXPECT_EQ(last("exact"), "no matching accessible window");
}

TEST_F(PanelsTest, OfThousandsOfLinesTheFirstAreListedAndTheRestCounted) {
    Workspace workspace = desk("Desk");
    workspace.snapshot.applications.resize(1);
    for (int i = 0; i < 2000; ++i) {
        const std::string name = "org.gone" + std::to_string(i);
        workspace.snapshot.applications.push_back({name, name, {}, {WindowSnapshot{}}, {}});
    }
    ASSERT_TRUE(model.known.savedHere(workspace) && model.known.agreed(workspace));
    model->restore(workspace, {});
    settle();
    ASSERT_TRUE(until([&] { return !restore().running(); }));
    settle();
    EXPECT_EQ(restore().troubleCount(), 2000);
    EXPECT_EQ(restore().rows()->rowCount(), 200);
    EXPECT_EQ(restore().more(), "and 1,800 more");
    EXPECT_EQ(restore().progress(), 1);
    EXPECT_EQ(restore().states().value("org.gone1999#window#0"), "skipped");
    restore().setOnlyTrouble(false);
    EXPECT_EQ(restore().more(), andMore(restore().rowCount() - restore().rows()->rowCount()));
    EXPECT_LE(restore().rows()->rowCount(), 400);
}

TEST_F(PanelsTest, ARestoreIsStoppedByItsButtonAndSaysWhatIsMissing) {
    Workspace workspace = desk("Desk");
    ApplicationSnapshot gone = workspace.snapshot.applications.front();
    gone.bundleIdentifier = gone.name = "org.gone";
    for (int i = 0; i < 9; ++i) {
        gone.bundleIdentifier = "org.gone" + std::to_string(i);
        workspace.snapshot.applications.push_back(gone);
    }
    ASSERT_TRUE(model.known.savedHere(workspace));
    scatter();
    model->restore(workspace, {});
    settle();
    ASSERT_TRUE(until([&] { return restore().states().value("org.gone0#window#1") == "skipped"; }));
    EXPECT_TRUE(restore().running()) << "what cannot come is not shown on its way until the end";
    ASSERT_TRUE(until([&] { return !restore().running(); }));
    settle();
    EXPECT_TRUE(named("Desk is mostly back"));
    EXPECT_EQ(restore().states().value("org.gone0#window#1"), "skipped")
        << "it shares its application's fate";
    EXPECT_TRUE(restore().onlyTrouble()) << "among many rows those that matter";
    // A list lets its rows go when it next draws.
    EXPECT_TRUE(until([&] { return !named("org.editor — Notes: restored"); }));
    EXPECT_TRUE(named("not installed") || named("org.gone: skipped: not installed"));
    click(QString("All · %1").arg(restore().rowCount()));
    EXPECT_EQ(restore().rows()->rowCount(), restore().rowCount());

    model->restore(workspace, {});
    settle();
    EXPECT_TRUE(restore().running());
    EXPECT_EQ(restore().rowCount(), 0) << "rows of the run before";
    click("Stop resuming");
    ASSERT_TRUE(until([&] { return !restore().running(); }));
    EXPECT_TRUE(model->restoreRun()->report()->cancelled);
}

}  // namespace
}  // namespace quillo
