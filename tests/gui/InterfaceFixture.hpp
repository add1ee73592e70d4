// The whole interface over a model on a simulated desktop: every surface can be opened in turn.
#pragma once
#include <utility>

#include "app/UpdateController.hpp"
#include "app/gui/Interface.hpp"
#include "platform/simulated/SimulatedKeyMonitor.hpp"
#include "platform/simulated/SimulatedUpdater.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo::samples {

/// How the person has set the system, the window and the text.
struct Look {
    const char* name;
    QSize window{1080, 720};
    bool dark = false;
    const char* textScale = "1";
    bool mirrored = false;
};

/// Before the theme is made, which reads the text scale once.
class LookSet {
  protected:
    explicit LookSet(const Look& look) {
        qputenv("QUILLO_TEXT_SCALE", look.textScale);
        QGuiApplication::setLayoutDirection(look.mirrored ? Qt::RightToLeft : Qt::LeftToRight);
    }
    LookSet(const LookSet&) = delete;
    LookSet& operator=(const LookSet&) = delete;
    ~LookSet() {
        qunsetenv("QUILLO_TEXT_SCALE");
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    }
};

class InterfaceTest : public testing::Test {
  protected:
    explicit InterfaceTest(const Scene& scene = Model::desk(), TextVariant texts = TextVariant::onLinux,
                           Capability updating = Capability::available())
        : desk(scene), updater(std::move(updating)), variant(texts) {
        Workspace workspace = example();
        workspace.name = "Work";
        desk.keep(workspace);
        start();
    }
    void start() {
        model = std::make_unique<AppModel>(AppServices{desk.services(desk.desktop.access, desk.disk),
                                                       desk.directory.path(), digestForTests, desk.shell,
                                                       interface});
        interface.attach(*model);
    }
    void TearDown() override {
        interface.detach();
        model.reset();
    }

    bool until(const std::function<bool()>& condition) {
        for (int turn = 0; turn < 500 && !condition(); ++turn) {
            desk.run(std::chrono::milliseconds(20));
            QTest::qWait(1);
        }
        return condition();
    }
    static void settle() {
        for (int turn = 0; turn < 5; ++turn) QTest::qWait(1);
    }
    void change(const std::function<void(AppSettings&)>& edit) {
        AppSettings settings = model->settings();
        edit(settings);
        model->setSettings(settings);
    }

    using Visit = std::function<void(QQuickWindow&, const char* where)>;
    /// Opens every page of the main window and both panels, one after the other.
    void onEverySurface(const Visit& visit, QSize size = {1080, 720}) {
        const auto see = [&](QQuickWindow* window, const char* where) {
            ASSERT_TRUE(window) << where;
            SCOPED_TRACE(where);
            if (window == main()) window->resize(size);
            settle();
            visit(*window, where);
        };
        change([](AppSettings& settings) {
            settings.onboarded = false;
            settings.excludedDomains = {"a.example", "a-rather-long-name.of.a.domain.example.org"};
            settings.excludedBundleIdentifiers = {"org.editor"};
            settings.autoSnapshotMinutes = 10;
        });
        model->openMain();
        for (const char* step : {"onboarding 1", "onboarding 2", "onboarding 3", "onboarding 4"}) {
            see(main(), step);
            if (std::string_view(step).back() != '4') QTest::keyClick(main(), Qt::Key_Return);
        }
        change([](AppSettings& settings) { settings.onboarded = true; });
        see(main(), "library");
        interface.openDetail(model->workspaces().at(0).id);
        see(main(), "detail");
        for (const char* pane : {"general", "integrations", "privacy", "about"}) {
            interface.ui().openSettings(pane);
            see(main(), pane);
        }
        model->beginCapture();
        ASSERT_TRUE(until([&] { return model->draft() != nullptr; }));
        see(main(), "review");
        model->dismissDraft();
        model->toggleSwitcher();
        see(interface.windows().panelWindow(PanelID::switcher), "switcher");
        model->toggleSwitcher();
        model->restore(model->workspaces().at(0), {});
        see(interface.windows().panelWindow(PanelID::restore), "restore");
        ASSERT_TRUE(until([&] { return !model->restoreRunning(); }));
        see(interface.windows().panelWindow(PanelID::restore), "restored");
    }
    QQuickWindow* main() { return interface.windows().mainWindow(); }

    /// All that is shown, parents first, in the order it is drawn. False ends a branch.
    static void walk(QQuickItem* item, const std::function<bool(QQuickItem&)>& visit) {
        if (!item->isVisible() || !visit(*item)) return;
        for (QQuickItem* child : item->childItems()) walk(child, visit);
    }
    /// Whether a press is what it is there for.
    static bool isPressed(QQuickItem& item) {
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&item);
        return face && face->actionInterface() &&
               face->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction());
    }
    /// Every control that takes the keyboard or a press has a name, and there are some.
    static void expectNames(QQuickWindow& window) {
        int controls = 0;
        walk(window.contentItem(), [&](QQuickItem& item) {
            if (!item.isEnabled()) return false;
            QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&item);
            if (!face || !(isPressed(item) || item.activeFocusOnTab())) return true;
            ++controls;
            EXPECT_FALSE(face->text(QAccessible::Name).trimmed().isEmpty()) << described(&item);
            return true;
        });
        EXPECT_GT(controls, 0);
    }
    static std::string described(QQuickItem* item) {
        if (!item) return "nothing";
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
        QString name = face ? face->text(QAccessible::Name) : QString();
        if (name.isEmpty()) name = item->property("text").toString();
        const QRectF at = item->mapRectToScene({0, 0, item->width(), item->height()});
        return QString("%1 “%2” at %3, %4, %5 x %6")
            .arg(item->metaObject()->className(), name)
            .arg(at.x())
            .arg(at.y())
            .arg(at.width())
            .arg(at.height())
            .toStdString();
    }

    QmlWarnings warnings;
    Model desk;
    Theme theme;
    SimulatedUpdater updater;
    const TextVariant variant;
    UpdateController updates{updater};
    SimulatedKeyMonitor keys;
    Interface interface{{.theme = theme,
                         .shell = desk.shell,
                         .system = desk.services(desk.desktop.access, desk.disk),
                         .keys = keys,
                         .updates = updates,
                         .variant = variant}};
    std::unique_ptr<AppModel> model;
};

}  // namespace quillo::samples
