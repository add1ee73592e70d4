// The keyboard as the person laid it out in the system's settings.
#pragma once
#include "platform/services/HotKeyService.hpp"

namespace quillo {

/// For the main thread. Keeps nothing of the layout: each question asks for the current one.
class MacKeyboardLayout final : public KeyboardLayout {
  public:
    /// The system's key codes are the classic ones.
    std::optional<std::uint32_t> keyCode(std::uint32_t nativeKeyCode) const override;
    /// Of a dead key, the mark that it would set on a letter.
    std::string characters(std::uint32_t keyCode) const override;
};

}  // namespace quillo
