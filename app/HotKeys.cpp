#include "app/HotKeys.hpp"

#include <ranges>
#include <utility>

#include "WindowEngine/desktop/Log.hpp"

namespace quillo {
namespace {

constexpr std::array<char, 4> signature{'Q', 'L', 'L', 'O'};

}  // namespace

HotKeys::HotKeys(HotKeyService& service, Executor& executor, SystemLog& log, QObject* parent)
    : QObject(parent), service_(service), executor_(executor), log_(log) {}

HotKeys::~HotKeys() {
    *self_ = nullptr;
}

void HotKeys::registerAll(const Shortcuts& shortcuts) {
    wanted_ = shortcuts;
    release();
    if (paused_) return;
    const auto before = std::exchange(refusals_, {});
    handler_ = service_.installHandler([this](HotKeyID id) { return pressed(id); },
                                       [this](HotKeyID id, const Error& error) { lost(id, error); });
    Shortcuts all = shortcuts;
    for (const HotKeyAction action : allHotKeyActions) all.try_emplace(action, defaultShortcut(action));
    std::set<Combination> own;
    for (const auto& [target, shortcut] : all) add(target, shortcut, own);
    if (refusals_ != before) Q_EMIT unavailableChanged();
}

/// Actions come first in the order of targets, so that each has the number that it always has.
void HotKeys::add(const Target& target, const Shortcut& shortcut, std::set<Combination>& own) {
    labels_[target] = shortcut.label();
    targets_.push_back(target);
    const Combination combination{shortcut.keyCode, shortcut.modifiers};
    if (own.contains(combination)) {
        refusals_[target] = Refusal::own;
        refs_.push_back(nullptr);
        return;
    }
    auto registered = service_.registerHotKey(shortcut.keyCode, shortcut.modifiers,
                                              {signature, static_cast<std::uint32_t>(targets_.size())});
    if (registered) {
        own.insert(combination);
    } else {
        refused(target, registered.error());
    }
    refs_.push_back(registered ? *std::move(registered) : nullptr);
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
    targets_.clear();
    labels_.clear();
    handler_.reset();
}

std::optional<HotKeys::Refusal> HotKeys::refusal(const Target& target) const {
    const auto found = refusals_.find(target);
    return found != refusals_.end() ? std::optional(found->second) : std::nullopt;
}

std::set<HotKeys::Target> HotKeys::unavailable() const {
    const auto targets = std::views::keys(refusals_);
    return {targets.begin(), targets.end()};
}

void HotKeys::refused(const Target& target, const Error& error) {
    Log::hotKeyUnavailable(log_, labels_[target], error.code);
    refusals_[target] = Refusal::taken;
}

const HotKeys::Target* HotKeys::targetOf(HotKeyID id) const {
    const bool ours = id.signature == signature && id.number >= 1 && id.number <= targets_.size();
    return ours ? &targets_[id.number - 1] : nullptr;
}

void HotKeys::lost(HotKeyID id, const Error& error) {
    const Target* const target = targetOf(id);
    if (!target) return;
    refused(*target, error);
    Q_EMIT unavailableChanged();
}

bool HotKeys::pressed(HotKeyID id) {
    const Target* const target = targetOf(id);
    if (!target) return false;
    executor_.post([self = self_, target = *target] {
        if (*self && (*self)->onPressed) (*self)->onPressed(target);
    });
    return true;
}

}  // namespace quillo
