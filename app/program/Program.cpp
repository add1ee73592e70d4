#include "app/program/Program.hpp"

#include <QTimer>

namespace quillo {
namespace {

/// After the start, which others may be waiting for as well: a session begins with many programs.
constexpr std::chrono::milliseconds beforePreparing{1000};

}  // namespace

Program::Program(const System& system)
    : shell_(theme_, appearance_, notifier_, system.services.nativeShell),
      keys_(system.services.keyboard, system.nativeKeys),
      updates_(system.services.updater),
      interface_({.theme = theme_,
                  .shell = shell_,
                  .system = system.services,
                  .keys = keys_,
                  .updates = updates_,
                  .variant = system.variant,
                  .systemIcon = system.icon,
                  .panels = system.panels,
                  .trayShown = [this] { return tray_.shown() || (startedAtLogin_ && tray_.lookedFor()); },
                  .quit = system.variant == TextVariant::onMac ? nullptr : &QCoreApplication::quit}),
      model_({system.services, system.data, system.digest, shell_, interface_}),
      automation_(model_),
      unattended_(model_, system.services),
      trayMenu_(
          model_, updates_, theme_, system.variant,
          {.openSettings = [this] { interface_.openSettings(); }, .quit = [] { QCoreApplication::quit(); }}),
      tray_(trayMenu_, system.olderTrayIsThere),
      notice_(model_, shell_, [this] {
          return interface_.windows().mainOpen() || interface_.panelVisible(PanelID::restore);
      }) {
    interface_.attach(model_);
    QObject::connect(&interface_.windows(), &Windows::allClosed, system.releaseFreeMemory);
    QTimer::singleShot(beforePreparing, &interface_, [this] { interface_.windows().prepareSwitcher(); });
    if (system.variant == TextVariant::onMac) {
        menuBar_ = std::make_unique<MenuBar>(
            model_, updates_,
            MenuBar::Ways{.openSettings = [this](const QString& pane) { interface_.openSettings(pane); },
                          .closeSwitcher = [this] { interface_.closePanel(PanelID::switcher); },
                          .quit = [] { QCoreApplication::quit(); }});
    }
    shell_.messageClicked = [this] { model_.openMain(); };
}

Program::~Program() {
    interface_.detach();
}

void Program::carryOut(const Launch& launch) {
    switch (launch.request) {
        case LaunchRequest::openWindow:
            return interface_.askForMainWindow();
        case LaunchRequest::saveDesktop:
            return model_.beginCapture();
        case LaunchRequest::openSwitcher:
            return model_.toggleSwitcher();
        case LaunchRequest::openAddress:
            return model_.openAddress(launch.address.toStdString());
        case LaunchRequest::logIn:
            startedAtLogin_ = true;
            return unattended_.loggedIn();
        case LaunchRequest::stayInBackground:
            return;
    }
}

}  // namespace quillo
