// Listens on the session bus to the restores of the running application, now or later (docs/dbus.md).
#pragma once
#include <memory>

#include "WindowEngine/support/Executor.hpp"
#include "platform/services/RestoreEvents.hpp"

namespace quillo {

/// `told` is called in turns of the executor, which must outlive what is returned. Null where the session has
/// no bus; none is started. One that does not answer, or ends, is silent.
std::unique_ptr<RestoreEvents> listenOnSessionBus(Executor& executor, RestoreEvents::Told told);

}  // namespace quillo
