#include "app/gui/MenuBar.hpp"

#include <QGuiApplication>
#include <QWindow>

namespace quillo {
namespace {

QAction* add(QMenu& menu, const QString& text, std::function<void()> chosen, const QKeySequence& keys = {},
             QAction::MenuRole role = QAction::NoRole) {
    QAction* const item = menu.addAction(text);
    item->setShortcut(keys);
    item->setMenuRole(role);
    QObject::connect(item, &QAction::triggered, item, [chosen = std::move(chosen)] { chosen(); });
    return item;
}

}  // namespace

MenuBar::MenuBar(AppModel& model, UpdateController& updates, Ways ways, QObject* parent)
    : QObject(parent), model_(model), updates_(updates), ways_(std::move(ways)) {
    QMenu& file = *bar_.addMenu("File");
    fillFileMenu(file);
    fillApplicationMenu(file);  // taken out of here by their roles
    fillWindowMenu(*bar_.addMenu("Window"));
    for (const auto changed : {&AppModel::draftChanged, &AppModel::busyChanged, &AppModel::settingsChanged,
                               &AppModel::sessionsChanged}) {
        connect(&model_, changed, this, &MenuBar::refresh);
    }
    connect(&updates_, &UpdateController::changed, this, &MenuBar::refresh);
    refresh();
}

void MenuBar::fillApplicationMenu(QMenu& menu) {
    add(menu, "About Quillo", [this] { ways_.openSettings("about"); }, {}, QAction::AboutRole);
    check_ = add(
        menu, "Check for Updates…", [this] { updates_.checkForUpdates(); }, {},
        QAction::ApplicationSpecificRole);
    relaunch_ = add(
        menu, "Relaunch to Update",
        [this] {
            const auto install = updates_.installAndRelaunch();
            if (install && model_.canRelaunchForUpdate()) install();
        },
        {}, QAction::ApplicationSpecificRole);
    add(
        menu, "Settings…", [this] { ways_.openSettings({}); }, QKeySequence("Ctrl+,"),
        QAction::PreferencesRole);
    add(menu, "Quit Quillo", [this] { ways_.quit(); }, QKeySequence("Ctrl+Q"), QAction::QuitRole);
}

void MenuBar::fillFileMenu(QMenu& menu) {
    save_ = add(
        menu, "Save Current Desktop…",
        [this] {
            ways_.closeSwitcher();  // as the same keys do there
            model_.beginCapture();
        },
        QKeySequence("Ctrl+S"));
    lastSession_ = add(menu, "Restore Last Session", [this] { model_.restoreLastSession(); });
    add(menu, "Import Workspace…", [this] { model_.importWorkspace(); }, QKeySequence("Ctrl+I"));
    menu.addSeparator();
    add(
        menu, "Close Window",
        [] {
            if (QWindow* const window = QGuiApplication::focusWindow()) window->close();
        },
        QKeySequence("Ctrl+W"));
}

void MenuBar::fillWindowMenu(QMenu& menu) {
    add(
        menu, "Minimize",
        [] {
            QWindow* const window = QGuiApplication::focusWindow();
            if (window && window->type() == Qt::Window) window->showMinimized();
        },
        QKeySequence("Ctrl+M"));
    add(menu, "Open Quillo", [this] { model_.openMain(); });
}

void MenuBar::refresh() {
    save_->setEnabled(model_.settings().onboarded && !model_.draft() && !model_.capturing());
    lastSession_->setEnabled(model_.canRestoreLastSession());
    check_->setVisible(bool(updates_.capability()));
    check_->setEnabled(updates_.canCheckForUpdates());
    relaunch_->setVisible(updates_.readyVersion().has_value());
    relaunch_->setEnabled(model_.canRelaunchForUpdate());
}

}  // namespace quillo
