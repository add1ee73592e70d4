// Global hot keys on X11: passive grabs on the root window, heard by a thread of their own.
#pragma once
#include <memory>
#include <string>
#include <thread>

#include "WindowEngine/support/Executor.hpp"
#include "platform/services/HotKeyCallbacks.hpp"

namespace quillo {

/// Has a connection of its own, because its events are read. Each combination is grabbed once for every state
/// of the lock keys, and grabbed again where a change of the keyboard map moves a modifier. A held key is one
/// press. A registration costs one round trip, a
/// change of the map one and one more for each registration.
class X11HotKeys final : public HotKeyService {
  public:
    /// `display` may be empty: $DISPLAY. Where no X server answers, the capability says so and nothing can be
    /// registered. The executor must outlive it; registrations need not be gone first.
    explicit X11HotKeys(Executor& executor, const std::string& display = {});
    X11HotKeys(const X11HotKeys&) = delete;
    X11HotKeys& operator=(const X11HotKeys&) = delete;
    ~X11HotKeys() override;

    /// Not available, too, once the X server has gone.
    Capability capability() const override;
    std::unique_ptr<HotKeyHandler> installHandler(Pressed pressed, Lost lost) override;
    /// The codes are X errors: 10 (access) where the combination is held, by another program or a
    /// registration of our own, 2 (value) where the keyboard has no such key or modifier.
    Result<std::unique_ptr<HotKeyRegistration>> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                               HotKeyID id) override;

  private:
    class Grabs;
    struct Registration;

    std::string unavailable_;  // why there is no connection
    std::shared_ptr<Grabs> grabs_;
    std::thread reader_;
};

}  // namespace quillo
