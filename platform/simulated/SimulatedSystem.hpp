// The application's services in memory, together.
#pragma once
#include "platform/services/SystemServices.hpp"
#include "platform/simulated/MemoryDefaults.hpp"
#include "platform/simulated/SimulatedHotKeys.hpp"
#include "platform/simulated/SimulatedLoginItem.hpp"
#include "platform/simulated/SimulatedPowerEvents.hpp"
#include "platform/simulated/SimulatedShell.hpp"
#include "platform/simulated/SimulatedUpdater.hpp"

namespace quillo {

struct SimulatedSystem {
    explicit SimulatedSystem(Executor& executor) : hotKeys(executor), power(executor) {}

    SystemServices services(DesktopAccess& desktop, FileSystem& files) {
        return {.desktop = desktop,
                .files = files,
                .defaults = keptIn ? *keptIn : defaults,
                .hotKeys = hotKeys,
                .keyboard = hotKeys,
                .loginItem = loginItem,
                .updater = updater,
                .power = powerEvents ? *powerEvents : power,
                .nativeShell = &shell};
    }

    MemoryDefaults defaults;
    SimulatedHotKeys hotKeys;
    SimulatedLoginItem loginItem;
    SimulatedUpdater updater;
    SimulatedPowerEvents power;
    UserDefaults* keptIn = nullptr;      // in place of those, for services() to come
    PowerEvents* powerEvents = nullptr;  // likewise
    SimulatedShell shell;
};

}  // namespace quillo
