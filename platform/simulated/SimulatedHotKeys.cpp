#include "platform/simulated/SimulatedHotKeys.hpp"

namespace quillo {
namespace {

Error takenElsewhere() {
    return {ErrorKind::refused, "another program holds the combination", SimulatedHotKeys::alreadyTaken};
}

}  // namespace

struct SimulatedHotKeys::Registration final : HotKeyRegistration {
    Registration(std::shared_ptr<std::map<Combination, HotKeyID>> list, Combination mine)
        : registered(std::move(list)), combination(mine) {}
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration() override { registered->erase(combination); }

    std::shared_ptr<std::map<Combination, HotKeyID>> registered;
    Combination combination;
};

Result<std::unique_ptr<HotKeyRegistration>> SimulatedHotKeys::registerHotKey(std::uint32_t keyCode,
                                                                             std::uint32_t modifiers,
                                                                             HotKeyID id) {
    const Combination combination{keyCode, modifiers};
    if (taken.contains(combination) || !registered_->emplace(combination, id).second) {
        return std::unexpected(takenElsewhere());
    }
    return std::make_unique<Registration>(registered_, combination);
}

bool SimulatedHotKeys::press(std::uint32_t keyCode, std::uint32_t modifiers) {
    const auto found = registered_->find({keyCode, modifiers});
    if (found == registered_->end()) return false;
    executor_.post([handler = handler_, id = found->second] { handler.pressed(id); });
    return true;
}

void SimulatedHotKeys::lose(std::uint32_t keyCode, std::uint32_t modifiers) {
    const Combination combination{keyCode, modifiers};
    taken.insert(combination);
    const auto mine = registered_->extract(combination);
    if (mine.empty()) return;
    executor_.post([handler = handler_, id = mine.mapped()] { handler.lost(id, takenElsewhere()); });
}

}  // namespace quillo
