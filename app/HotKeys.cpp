#include "app/HotKeys.hpp"

#include <algorithm>
#include <ranges>
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
    release();
    if (paused_) return;
    const auto before = std::exchange(refusals_, {});
    handler_ = service_.installHandler([this](HotKeyID id) { return pressed(id); },
                                       [this](HotKeyID id, const Error& error) { lost(id, error); });
    std::set<std::pair<std::uint32_t, std::uint32_t>> own;
    for (const Action action : allHotKeyActions) {
        const auto given = shortcuts.find(action);
        const Shortcut shortcut = given != shortcuts.end() ? given->second : defaultShortcut(action);
        labels_[action] = shortcut.label();
        if (own.contains({shortcut.keyCode, shortcut.modifiers})) {
            refusals_[action] = Refusal::own;
            refs_.push_back(nullptr);
            continue;
        }
        auto registered =
            service_.registerHotKey(shortcut.keyCode, shortcut.modifiers, {signature, number(action)});
        if (registered) {
            own.emplace(shortcut.keyCode, shortcut.modifiers);
        } else {
            refused(action, registered.error());
        }
        refs_.push_back(registered ? *std::move(registered) : nullptr);
    }
    if (refusals_ != before) Q_EMIT unavailableChanged();
}

void HotKeys::unregisterAll() {
    wanted_.reset();
    release();
    if (!std::exchange(refusals_, {}).empty()) Q_EMIT unavailableChanged();
}

void HotKeys::setPaused(bool paused) {
    if (std::exchange(paused_, paused) == paused) return;
    if (paused)
        release();
    else if (wanted_)
        registerAll(*std::exchange(wanted_, {}));
}

void HotKeys::release() {
    refs_.clear();
    handler_.reset();
}

std::optional<HotKeys::Refusal> HotKeys::refusal(Action action) const {
    const auto found = refusals_.find(action);
    return found != refusals_.end() ? std::optional(found->second) : std::nullopt;
}

std::set<HotKeys::Action> HotKeys::unavailable() const {
    const auto actions = std::views::keys(refusals_);
    return {actions.begin(), actions.end()};
}

void HotKeys::refused(Action action, const Error& error) {
    Log::hotKeyUnavailable(log_, labels_[action], error.code);
    refusals_[action] = Refusal::taken;
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
