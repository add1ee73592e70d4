// Quillo's icon in the tray, with its menu.
#pragma once
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QSystemTrayIcon>
#include <QTimer>
#include <functional>
#include <memory>

#include "app/gui/TrayMenu.hpp"

namespace quillo {

/// Speaks StatusNotifier where the desktop does, XEmbed where it has a tray of that kind only. Qt decides
/// between them once for the whole process, at the first icon; so none is made before a tray is found, for a
/// program that starts at login is often there before the desktop's panel. After `patience` without one,
/// XEmbed is chosen, which takes trays that come later.
class TrayIcon final : public QObject {
    Q_OBJECT

  public:
    static constexpr std::chrono::seconds patience{20};

    /// The menu must outlive it. `olderTrayIsThere`: whether an XEmbed tray is there now; none on a Mac,
    /// whose menu bar takes the icon at once, and where Qt translates the menu's texts itself.
    TrayIcon(TrayMenu& menu, std::function<bool()> olderTrayIsThere, QObject* parent = nullptr);

    /// Whether there is an icon to click on; without one, a main window that was closed comes back only by a
    /// second start of the program.
    bool shown() const;
    /// No tray has been found yet, and one may come.
    bool lookedFor() const { return !icon_; }

  private:
    void lookForTray();
    void askForHost();
    void show();
    Q_SLOT void hostRegistered() { show(); }

    TrayMenu& menu_;
    std::function<bool()> olderTrayIsThere_;
    QDBusConnection bus_ = QDBusConnection::sessionBus();
    QDBusServiceWatcher watcher_;
    QTimer patience_;
    std::unique_ptr<QSystemTrayIcon> icon_;
};

/// The application's icon: the desktop's own where it is installed there, else the one in the program.
QIcon applicationIcon();

}  // namespace quillo
