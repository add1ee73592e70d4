// The whole interface over the model on a simulated desktop: every surface can be opened, and worked by
// mouse, keyboard and accessible names. Any warning of QML fails the test.
#pragma once
#include <QAccessible>
#include <QApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <functional>
#include <memory>
#include <utility>

#include "app/UpdateController.hpp"
#include "app/gui/Interface.hpp"
#include "app/gui/QmlTypes.hpp"
#include "platform/linux/NoScripts.hpp"
#include "platform/posix/NoBrowserFiles.hpp"
#include "platform/simulated/SimulatedKeyMonitor.hpp"
#include "platform/simulated/SimulatedUpdater.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo::samples {

/// Collects what QML complains of while it exists.
class QmlWarnings {
  public:
    QmlWarnings() {
        list().clear();
        previous_ =
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
                // Qt says this of itself, when a window is closed in the middle of an animation.
                if (text.startsWith("QUnifiedTimer::stopAnimationDriver")) return;
                // This, when rows vanish that it is still preparing.
                if (text.startsWith("DelegateModel::cancel: index out range")) return;
                // And this where there is no window manager, as here.
                if (text == "This plugin does not support raise()") return;
                if (text == "This plugin does not support lower()") return;
                // This of the icon of an application that happens to be installed; ours are resources.
                if (text.startsWith("/usr/share/") && text.contains(".svg:")) return;
                // This of a script that no font of the machine has.
                if (text.contains("OpenType support missing for")) return;
                if (type != QtDebugMsg && type != QtInfoMsg) list() << text;
            });
    }
    QmlWarnings(const QmlWarnings&) = delete;
    QmlWarnings& operator=(const QmlWarnings&) = delete;
    ~QmlWarnings() {
        qInstallMessageHandler(previous_);
        EXPECT_TRUE(list().isEmpty()) << list().join('\n').toStdString();
    }

  private:
    static QStringList& list() {
        static QStringList warnings;
        return warnings;
    }
    QtMessageHandler previous_;
};

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

/// Where access is no permission and no application takes scripts.
struct BareDesktop {
    explicit BareDesktop(Model& model)
        : whole(model.desktop.access.platform),
          access{{.executor = whole.executor,
                  .accessibility = whole.accessibility,
                  .windowServer = whole.windowServer,
                  .applications = whole.applications,
                  .screens = whole.screens,
                  .scripts = scripts,
                  .browserFiles = browserFiles,
                  .log = whole.log},
                 model.desktop.access.handles} {
        model.shell.settings = Capability::unavailable("No page.");
    }

    NoScripts scripts;
    NoBrowserFiles browserFiles;
    Platform whole;
    DesktopAccess access;
};

class GuiTest : public testing::Test {
  protected:
    explicit GuiTest(const Scene& scene = Model::desk(), Capability updating = Capability::available())
        : model(scene), updater(std::move(updating)) {
        QApplication::setDoubleClickInterval(0);  // the hand of a test is quicker than a person's
        start();
    }
    /// The program from its beginning, with the texts of a system.
    void start(TextVariant texts = TextVariant::onLinux) {
        end();
        interface = std::make_unique<Interface>(
            Interface::Parts{.theme = theme,
                             .shell = model.shell,
                             .system = model.services(seen ? *seen : model.desktop.access, model.disk),
                             .keys = keys,
                             .updates = updates,
                             .variant = texts,
                             .systemIcon = nullptr,
                             .panels = panels,
                             .trayShown = [this] { return tray; },
                             .quit = [this] { ++quits; }});
        model.shown = interface.get();
        model.start();
        interface->attach(*model.model);
    }
    void end() {
        if (interface) interface->detach();
        model.model.reset();
    }
    void TearDown() override { end(); }

    /// The main window.
    void open(QSize size = {1080, 720}) {
        model->openMain();
        main()->resize(size);
        ASSERT_TRUE(QTest::qWaitForWindowActive(main()));
        settle();
    }
    QQuickWindow* main() { return interface->windows().mainWindow(); }
    /// What is looked at and worked.
    virtual QQuickWindow* window() { return main(); }
    /// The panel that is open, else the main window.
    QQuickWindow* foremost() {
        for (const PanelID panel : {PanelID::switcher, PanelID::restore}) {
            if (QQuickWindow* const open = interface->windows().panelWindow(panel)) return open;
        }
        return main();
    }
    /// As the open windows' views know it.
    template <class T>
    T& presenter(const char* name) {
        QQmlEngine* const engine = qobject_cast<QQuickView*>(window())->engine();
        return *engine->singletonInstance<T*>(qmlTypeId(coreModule, 1, 0, name));
    }
    Ui& ui() { return interface->ui(); }
    void openDetail(const Uuid& workspace) {
        ui().openDetail(QString::fromStdString(workspace.lower()));
        model->openMain();
    }

    /// Lets the model work and the view follow, until the condition holds.
    bool until(const std::function<bool()>& condition) {
        for (int turn = 0; turn < 500 && !condition(); ++turn) {
            model.run(std::chrono::milliseconds(20));
            QTest::qWait(1);
        }
        return condition();
    }
    static void settle() {
        for (int turn = 0; turn < 5; ++turn) QTest::qWait(1);
    }

    using Wanted = std::function<bool(QAccessibleInterface*)>;
    /// The item with this accessible name that is shown; null where there is none.
    QQuickItem* named(const QString& name, const Wanted& wanted = {}) {
        QQuickItem* found = nullptr;
        walk(window()->contentItem(), [&](QQuickItem& item) {
            QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&item);
            if (!found && item.isEnabled() && face && face->text(QAccessible::Name) == name &&
                (!wanted || wanted(face)))
                found = &item;
            return !found;
        });
        return found;
    }
    void click(QQuickItem* item) {
        ASSERT_TRUE(item);
        const auto center = [&] { return placeOf(*item).center().toPoint(); };
        if (!QRect({}, window()->size()).contains(center())) item->forceActiveFocus(Qt::TabFocusReason);
        settle();
        QTest::mouseClick(window(), Qt::LeftButton, {}, center());
        settle();
    }
    void click(const QString& name) {
        settle();
        QQuickItem* item = named(name);
        ASSERT_TRUE(item) << "nothing is called " << name.toStdString();
        click(item);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, int times = 1) {
        for (; times > 0; --times) QTest::keyClick(window(), key, modifiers);
        settle();
    }
    void type(const char* text) {
        for (; *text; ++text) QTest::keyClick(window(), *text);
        settle();
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
        const Uuid work = keepExample();
        model.change([](AppSettings& settings) {
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
        model.change([](AppSettings& settings) { settings.onboarded = true; });
        see(main(), "library");
        openDetail(work);
        see(main(), "detail");
        model->openPreview(model.named("Work"), CleanSlateMode::hide);
        ASSERT_TRUE(until([&] { return model->preview()->plan().has_value(); }));
        see(main(), "preview");
        model->closePreview();
        for (const char* pane : {"general", "integrations", "privacy", "about"}) {
            ui().openSettings(pane);
            see(main(), pane);
        }
        model->beginCapture();
        ASSERT_TRUE(until([&] { return model->draft() != nullptr; }));
        see(main(), "review");
        model->dismissDraft();
        model->toggleSwitcher();
        see(interface->windows().panelWindow(PanelID::switcher), "switcher");
        model->toggleSwitcher();
        model->restore(model.named("Work"), {});
        see(interface->windows().panelWindow(PanelID::restore), "restore");
        ASSERT_TRUE(until([&] { return !model->restoreRunning(); }));
        see(interface->windows().panelWindow(PanelID::restore), "restored");
    }
    /// Into the library, as "Work".
    Uuid keepExample() {
        Workspace workspace = example();
        workspace.name = "Work";
        model.keep(workspace);
        return workspace.id;
    }

    static QRectF placeOf(const QQuickItem& item) {
        return item.mapRectToScene({0, 0, item.width(), item.height()});
    }
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
        const QRectF at = placeOf(*item);
        return QString("%1 “%2” at %3, %4, %5 x %6")
            .arg(item->metaObject()->className(), name)
            .arg(at.x())
            .arg(at.y())
            .arg(at.width())
            .arg(at.height())
            .toStdString();
    }

    QmlWarnings warnings;
    Model model;
    Theme theme;
    SimulatedUpdater updater;
    UpdateController updates{updater};
    SimulatedKeyMonitor keys;
    PanelBackdrop panels;
    DesktopAccess* seen = nullptr;  // by the interface, in place of the model's
    bool tray = true;
    int quits = 0;
    std::unique_ptr<Interface> interface;
};

}  // namespace quillo::samples
