#include "app/program/Program.hpp"

namespace quillo {

Program::Program(const System& system)
    : shell_(theme_, appearance_, notifier_, system.shell),
      keys_(system.keyboard, system.nativeKeys),
      updates_(system.updater),
      interface_({.theme = theme_,
                  .shell = shell_,
                  .loginItem = system.loginItem,
                  .hotKeys = system.hotKeys,
                  .desktop = system.desktop,
                  .keys = keys_,
                  .updates = updates_,
                  .variant = system.variant,
                  .systemIcon = system.icon}),
      model_(services(system)),
      trayMenu_(model_, updates_, theme_, system.variant,
                {.openDetail = [this](const Uuid& workspace) { interface_.openDetail(workspace); },
                 .openSettings = [this] { interface_.openSettings(); },
                 .quit = [] { QCoreApplication::quit(); }}),
      tray_(trayMenu_, system.olderTrayIsThere),
      notice_(model_, shell_, [this] {
          return interface_.windows().mainOpen() || interface_.panelVisible(PanelID::restore);
      }) {
    interface_.attach(model_);
    QObject::connect(&interface_.windows(), &Windows::engineDropped, system.releaseFreeMemory);
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

AppServices Program::services(const System& system) {
    return {.desktop = system.desktop,
            .files = system.files,
            .data = system.data,
            .defaults = system.defaults,
            .digest = system.digest,
            .hotKeys = system.hotKeys,
            .loginItem = system.loginItem,
            .power = system.power,
            .shell = shell_,
            .surfaces = interface_};
}

void Program::carryOut(LaunchRequest request) {
    switch (request) {
        case LaunchRequest::openWindow:
            return interface_.askForMainWindow();
        case LaunchRequest::saveDesktop:
            return model_.beginCapture();
        case LaunchRequest::openSwitcher:
            return model_.toggleSwitcher();
        case LaunchRequest::stayInBackground:
            return;
    }
}

}  // namespace quillo
