// A view in an offscreen window over the model on a simulated desktop. Any warning of QML fails the test.
#pragma once
#include <gtest/gtest.h>

#include <QAccessible>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <functional>
#include <memory>

#include "app/gui/Pictures.hpp"
#include "app/gui/QmlTypes.hpp"
#include "app/gui/QuestionPresenter.hpp"
#include "app/gui/Theme.hpp"
#include "app/gui/Ui.hpp"
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

class GuiTest : public testing::Test {
  protected:
    explicit GuiTest(const Scene& scene = Model::desk()) : model(scene) {
        registerItems();
        registerSingleton("Theme", theme);
        registerSingleton("Ui", ui);
        registerSingleton("Question", question);
    }

    /// Shows qrc:/qt/qml/Quillo/FILE. Presenters are to be registered before.
    void show(const QString& file, QSize size = {1080, 720}) {
        close();
        view = std::make_unique<QQuickView>();
        view->engine()->addImportPath("qrc:/qt/qml");
        view->engine()->addImageProvider("shadow", new ShadowPictures);
        view->engine()->addImageProvider("appicon", new AppIconPictures({}));
        view->setResizeMode(QQuickView::SizeRootObjectToView);
        view->setColor(theme.background());
        view->setSource(QUrl("qrc:/qt/qml/Quillo/" + file));
        for (const QQmlError& error : view->errors()) ADD_FAILURE() << error.toString().toStdString();
        ASSERT_EQ(view->status(), QQuickView::Ready);
        view->resize(size);
        view->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
    }
    void TearDown() override { close(); }

    /// Lists leave the deletion of their rows to a later turn; a row must not move on without its engine.
    void close() {
        if (!view) return;
        delete view->rootObject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        view.reset();
    }

    /// Lets the model work and the view follow, until the condition holds.
    bool until(const std::function<bool()>& condition) {
        for (int turn = 0; turn < 500 && !condition(); ++turn) {
            model.run(std::chrono::milliseconds(20));
            QTest::qWait(1);
        }
        return condition();
    }
    void settle() {
        for (int turn = 0; turn < 5; ++turn) QCoreApplication::processEvents();
    }

    using Wanted = std::function<bool(QAccessibleInterface*)>;
    /// The item with this accessible name that is shown; null where there is none.
    QQuickItem* named(const QString& name, QQuickItem* below = nullptr, const Wanted& wanted = {}) {
        QQuickItem* item = below ? below : view->contentItem();
        if (!item->isVisible()) return nullptr;
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
        if (item->isEnabled() && face && face->text(QAccessible::Name) == name && (!wanted || wanted(face)))
            return item;
        for (QQuickItem* child : item->childItems()) {
            if (QQuickItem* found = named(name, child, wanted)) return found;
        }
        return nullptr;
    }
    void click(QQuickItem* item) {
        ASSERT_TRUE(item);
        const QPointF center = item->mapToScene({item->width() / 2, item->height() / 2});
        QTest::mouseClick(view.get(), Qt::LeftButton, {}, center.toPoint());
        settle();
    }
    void click(const QString& name) {
        settle();
        QQuickItem* item = named(name);
        ASSERT_TRUE(item) << "nothing is called " << name.toStdString();
        click(item);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(view.get(), key, modifiers);
        settle();
    }
    void type(const QString& text) {
        for (const QChar c : text) QTest::keyClick(view.get(), c.toLatin1());
        settle();
    }

    QmlWarnings warnings;
    Model model;
    Theme theme;
    Ui ui{*model.model, TextVariant::onLinux};
    QuestionPresenter question{*model.model};
    std::unique_ptr<QQuickView> view;
};

}  // namespace quillo::samples
