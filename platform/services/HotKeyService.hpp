// Key combinations that work whatever application is in front.
#pragma once
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "WindowEngine/services/Capability.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo {

/// Names a registered combination to the handler.
struct HotKeyID {
    std::array<char, 4> signature{};
    std::uint32_t number = 0;

    bool operator==(const HotKeyID&) const = default;
};

/// Releases the combination when it goes.
class HotKeyRegistration {
  public:
    virtual ~HotKeyRegistration() = default;
};

/// Takes the handler away when it goes.
class HotKeyHandler {
  public:
    virtual ~HotKeyHandler() = default;
};

/// For the executor's thread; handlers are called on it, in turns of their own or, where the system waits for
/// the answer, as it delivers the press: they only note it, or post.
class HotKeyService {
  public:
    /// Told of each press; false passes it on as unhandled.
    using Pressed = std::function<bool(HotKeyID)>;
    /// Told of a combination that was registered and has been lost since, with what registering it would
    /// answer now: the keyboard was laid out anew, and its keys are another program's or are no longer there.
    using Lost = std::function<void(HotKeyID, const Error&)>;

    virtual ~HotKeyService() = default;

    virtual Capability capability() const = 0;
    virtual std::unique_ptr<HotKeyHandler> installHandler(Pressed pressed, Lost lost) = 0;
    /// `keyCode` is a classic virtual key code (a position on the keyboard, whatever the layout writes
    /// there); `modifiers` a mask of command 0x100, shift 0x200, option 0x800, control 0x1000. Refused, with
    /// the system's own code, where another program holds the combination or the keyboard has no such key.
    virtual Result<std::unique_ptr<HotKeyRegistration>> registerHotKey(std::uint32_t keyCode,
                                                                       std::uint32_t modifiers,
                                                                       HotKeyID id) = 0;
};

/// The keyboard as it is laid out now.
class KeyboardLayout {
  public:
    virtual ~KeyboardLayout() = default;

    /// The classic virtual key code of the position that the window system numbers `nativeKeyCode` in its key
    /// events; absent for positions that have none.
    virtual std::optional<std::uint32_t> keyCode(std::uint32_t nativeKeyCode) const = 0;
    /// What the key there writes without any modifier, in UTF-8; empty for a key that writes nothing.
    virtual std::string characters(std::uint32_t keyCode) const = 0;
};

}  // namespace quillo
