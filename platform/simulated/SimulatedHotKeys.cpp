#include "platform/simulated/SimulatedHotKeys.hpp"

namespace quillo {

struct SimulatedHotKeys::Registration final : HotKeyRegistration {
    Registration(std::shared_ptr<std::map<Combination, HotKeyID>> list, Combination mine)
        : registered(std::move(list)), combination(mine) {}
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration() override { registered->erase(combination); }

    std::shared_ptr<std::map<Combination, HotKeyID>> registered;
    Combination combination;
};

struct SimulatedHotKeys::Handler final : HotKeyHandler {
    explicit Handler(std::shared_ptr<Pressed> installed) : pressed(std::move(installed)) {}
    Handler(const Handler&) = delete;
    Handler& operator=(const Handler&) = delete;
    ~Handler() override { *pressed = nullptr; }

    std::shared_ptr<Pressed> pressed;
};

std::unique_ptr<HotKeyHandler> SimulatedHotKeys::installHandler(Pressed pressed) {
    *handler_ = std::move(pressed);
    return std::make_unique<Handler>(handler_);
}

Result<std::unique_ptr<HotKeyRegistration>> SimulatedHotKeys::registerHotKey(std::uint32_t keyCode,
                                                                             std::uint32_t modifiers,
                                                                             HotKeyID id) {
    const Combination combination{keyCode, modifiers};
    if (taken.contains(combination) || !registered_->emplace(combination, id).second) {
        return fail(ErrorKind::refused, "another program holds the combination", alreadyTaken);
    }
    return std::make_unique<Registration>(registered_, combination);
}

bool SimulatedHotKeys::press(std::uint32_t keyCode, std::uint32_t modifiers) {
    const auto found = registered_->find({keyCode, modifiers});
    if (found == registered_->end()) return false;
    executor_.post([handler = handler_, id = found->second] {
        if (*handler) (*handler)(id);
    });
    return true;
}

bool SimulatedHotKeys::deliver(HotKeyID id) const {
    return *handler_ && (*handler_)(id);
}

}  // namespace quillo
