// The running application: model, interface, tray, put together over one system's services.
#pragma once
#include <QApplication>
#include <memory>

#include "app/AppModel.hpp"
#include "app/Automation.hpp"
#include "app/UnattendedRestores.hpp"
#include "app/UpdateController.hpp"
#include "app/gui/DesktopNotifier.hpp"
#include "app/gui/Interface.hpp"
#include "app/gui/MenuBar.hpp"
#include "app/gui/QtKeyMonitor.hpp"
#include "app/gui/QtShell.hpp"
#include "app/gui/RestoreNotice.hpp"
#include "app/gui/SingleInstance.hpp"
#include "app/gui/SystemAppearance.hpp"
#include "app/gui/TrayIcon.hpp"
#include "app/gui/TrayMenu.hpp"

namespace quillo {

class Program {
  public:
    /// What differs from system to system.
    struct System {
        SystemServices services;
        std::filesystem::path data;
        Digest digest;
        NativeKeys nativeKeys;
        TextVariant variant;
        FindIcon icon;                           // none: applications' icons come from .desktop files
        std::function<bool()> olderTrayIsThere;  // see TrayIcon
        PanelBackdrop panels;
        std::function<void()> releaseFreeMemory;
    };

    explicit Program(const System& system);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    /// Does what this or another start of the program asks for.
    void carryOut(const Launch& launch);
    AppModel& model() { return model_; }
    Automation& automation() { return automation_; }

  private:
    Theme theme_;
    SystemAppearance appearance_;
    DesktopNotifier notifier_;
    QtShell shell_;
    QtKeyMonitor keys_;
    UpdateController updates_;
    Interface interface_;
    AppModel model_;
    Automation automation_;
    UnattendedRestores unattended_;
    TrayMenu trayMenu_;
    TrayIcon tray_;
    bool startedAtLogin_ =
        false;  // unseen: a tray that is late is no reason to ask what closing a window means
    std::unique_ptr<MenuBar> menuBar_;  // on a Mac
    RestoreNotice notice_;
};

}  // namespace quillo
