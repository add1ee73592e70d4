// Global hot keys through the classic event manager.
#pragma once
#include "platform/services/HotKeyCallbacks.hpp"

namespace quillo {

/// For the main thread, whose event loop brings the presses. The handler is asked while the system waits for
/// the event to be handled, because its answer decides whether the event goes on to others. A combination is
/// a position on the keyboard, so no layout takes one away: nothing is ever lost. Registrations need not be
/// gone before the service.
class MacHotKeys final : public HotKeyService {
  public:
    /// Not available once the system has refused to install the handler.
    Capability capability() const override;
    /// Null where the system refuses.
    std::unique_ptr<HotKeyHandler> installHandler(Pressed pressed, Lost lost) override;
    /// The codes are the event manager's: -9878 where the combination is held, by a registration of our own
    /// or a program that holds it alone. Where the handler could not be installed, that code.
    Result<std::unique_ptr<HotKeyRegistration>> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                               HotKeyID id) override;

  private:
    int handlerStatus_ = 0;  // of the latest installation
};

}  // namespace quillo
