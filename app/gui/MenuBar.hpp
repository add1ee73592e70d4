// The menu bar of a Mac.
#pragma once
#include <QMenuBar>
#include <QObject>
#include <functional>

#include "app/AppModel.hpp"
#include "app/UpdateController.hpp"

namespace quillo {

/// The commands of the application, with the keys that people know there. Qt puts what has a role into the
/// application's own menu. Keys that stand here reach no window while their item is enabled.
class MenuBar final : public QObject {
    Q_OBJECT

  public:
    /// What the model leaves to windows.
    struct Ways {
        std::function<void(const QString& pane)> openSettings;
        std::function<void()> closeSwitcher, quit;
    };

    /// All must outlive it.
    MenuBar(AppModel& model, UpdateController& updates, Ways ways, QObject* parent = nullptr);

    QMenuBar& bar() { return bar_; }

  private:
    void fillApplicationMenu(QMenu& menu);
    void fillFileMenu(QMenu& menu);
    void fillWindowMenu(QMenu& menu);
    void refresh();

    AppModel& model_;
    UpdateController& updates_;
    Ways ways_;
    QMenuBar bar_;
    QAction *check_ = nullptr, *relaunch_ = nullptr, *save_ = nullptr, *lastSession_ = nullptr;
};

}  // namespace quillo
