// Global hot keys and a keyboard in memory.
#pragma once
#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "WindowEngine/support/Executor.hpp"
#include "platform/services/HotKeyCallbacks.hpp"

namespace quillo {

class SimulatedHotKeys final : public HotKeyService, public KeyboardLayout {
  public:
    using Combination = std::pair<std::uint32_t, std::uint32_t>;  // key code, modifiers

    static constexpr int alreadyTaken = -9878;  // eventHotKeyExistsErr of the classic event manager

    explicit SimulatedHotKeys(Executor& executor) : executor_(executor) {}

    Capability capability() const override { return able; }
    std::unique_ptr<HotKeyHandler> installHandler(Pressed pressed, Lost lost) override {
        return handler_.install(std::move(pressed), std::move(lost));
    }
    Result<std::unique_ptr<HotKeyRegistration>> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                               HotKeyID id) override;

    /// A press of the combination, heard in a turn to come; whether anybody has it registered.
    bool press(std::uint32_t keyCode, std::uint32_t modifiers);
    /// An event that names this hot key; whether a handler took it.
    bool deliver(HotKeyID id) const { return handler_.pressed(id); }
    /// Another program has the combination from now on, because the keyboard was laid out anew.
    void lose(std::uint32_t keyCode, std::uint32_t modifiers);

    std::optional<std::uint32_t> keyCode(std::uint32_t nativeKeyCode) const override { return nativeKeyCode; }
    std::string characters(std::uint32_t keyCode) const override {
        const auto found = layout.find(keyCode);
        return found == layout.end() ? "" : found->second;
    }

    Capability able = Capability::available();
    std::set<Combination> taken{};  // by other programs
    std::map<std::uint32_t, std::string> layout{};
    /// Registered now.
    std::size_t registrations() const { return registered_->size(); }
    bool handled() const { return handler_.installed(); }

  private:
    struct Registration;

    Executor& executor_;
    std::shared_ptr<std::map<Combination, HotKeyID>> registered_ =
        std::make_shared<std::map<Combination, HotKeyID>>();
    HotKeyCallbacks handler_;
};

}  // namespace quillo
