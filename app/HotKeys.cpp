#include "app/HotKeys.hpp"

#include <algorithm>
#include <utility>

#include "WindowEngine/desktop/Log.hpp"

namespace quillo {
namespace {

constexpr std::array<char, 4> signature{'Q', 'L', 'L', 'O'};

std::optional<HotKeyAction> actionOf(HotKeyID id) {
    const auto action = std::ranges::find(allHotKeyActions, id.number, number);
    if (id.signature != signature || action == allHotKeyActions.end()) return std::nullopt;
    return *action;
}

}  // namespace

HotKeys::HotKeys(HotKeyService& service, Executor& executor, SystemLog& log, QObject* parent)
    : QObject(parent), service_(service), executor_(executor), log_(log) {}

HotKeys::~HotKeys() {
    *self_ = nullptr;
}

void HotKeys::registerAll(const std::map<Action, Shortcut>& shortcuts) {
    wanted_ = shortcuts;
    drop();
    if (paused_) return;
    handler_ = service_.installHandler([this](HotKeyID id) { return pressed(id); },
                                       [this](HotKeyID id, const Error& error) { lost(id, error); });
    const std::size_t refusedBefore = unavailable_.size();
    for (const Action action : allHotKeyActions) {
        const auto given = shortcuts.find(action);
        const Shortcut shortcut = given != shortcuts.end() ? given->second : defaultShortcut(action);
        auto registered =
            service_.registerHotKey(shortcut.keyCode, shortcut.modifiers, {signature, number(action)});
        labels_[action] = shortcut.label();
        if (!registered) refused(action, registered.error());
        refs_.push_back(registered ? *std::move(registered) : nullptr);
    }
    if (unavailable_.size() != refusedBefore) Q_EMIT unavailableChanged();
}

void HotKeys::unregisterAll() {
    wanted_.reset();
    drop();
}

void HotKeys::setPaused(bool paused) {
    if (std::exchange(paused_, paused) == paused) return;
    if (paused)
        drop();
    else if (wanted_)
        registerAll(*std::exchange(wanted_, {}));
}

void HotKeys::drop() {
    refs_.clear();
    handler_.reset();
}

void HotKeys::refused(Action action, const Error& error) {
    Log::hotKeyUnavailable(log_, labels_[action], error.code);
    unavailable_.insert(action);
}

void HotKeys::lost(HotKeyID id, const Error& error) {
    const auto action = actionOf(id);
    if (!action) return;
    refused(*action, error);
    Q_EMIT unavailableChanged();
}

bool HotKeys::pressed(HotKeyID id) {
    const auto action = actionOf(id);
    if (!action) return false;
    executor_.post([self = self_, action = *action] {
        if (*self && (*self)->onAction) (*self)->onAction(action);
    });
    return true;
}

}  // namespace quillo
