// Every service that the application has of its system, listed once: main() fills the list in, the program
// hands it on, and whoever uses a service takes it from there.
#pragma once
#include "WindowEngine/desktop/Accessibility.hpp"
#include "WindowEngine/services/FileSystem.hpp"
#include "platform/services/HotKeyService.hpp"
#include "platform/services/LoginItemService.hpp"
#include "platform/services/PowerEvents.hpp"
#include "platform/services/Shell.hpp"
#include "platform/services/UpdaterService.hpp"
#include "platform/services/UserDefaults.hpp"

namespace quillo {

/// All must outlive what the list is handed to.
struct SystemServices {
    DesktopAccess& desktop;
    FileSystem& files;
    UserDefaults& defaults;
    HotKeyService& hotKeys;
    const KeyboardLayout& keyboard;
    LoginItemService& loginItem;
    UpdaterService& updater;
    PowerEvents& power;
    Shell* nativeShell;  // null where Qt does it all
};

}  // namespace quillo
