// The global shortcuts, two for everybody and one for each workspace that was given one: registered with the
// system, dispatched to the model.
#pragma once
#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <variant>
#include <vector>

#include "WindowEngine/services/Platform.hpp"
#include "WindowEngine/support/Uuid.hpp"
#include "platform/services/HotKeyService.hpp"
#include "settings/Shortcut.hpp"

namespace quillo {

/// What a global shortcut is for: an action, or resuming the workspace of this identifier.
using HotKeyTarget = std::variant<HotKeyAction, Uuid>;

class HotKeys final : public QObject {
    Q_OBJECT

  public:
    using Target = HotKeyTarget;
    using Shortcuts = std::map<Target, Shortcut>;
    enum class Refusal : std::uint8_t {
        taken,  // by another program, or the keyboard has no such key
        own,    // another of Quillo's shortcuts has it
    };

    /// Registers nothing yet. Services and platform must outlive it.
    HotKeys(HotKeyService& service, Executor& executor, SystemLog& log, QObject* parent = nullptr);
    ~HotKeys() override;

    /// Called in a turn of its own for each press.
    std::function<void(const Target&)> onPressed;

    /// Replaces all registrations; an action that the map lacks takes its default. A refused combination is
    /// logged and marked, the others are registered all the same. Of two that are the same, the action comes
    /// before the workspace.
    void registerAll(const Shortcuts& shortcuts);
    /// What was asked for last; absent while shortcuts are off.
    const std::optional<Shortcuts>& wanted() const { return wanted_; }
    void unregisterAll();
    /// While somebody records a combination, ours are no different from others: none is registered. What is
    /// asked for meanwhile is registered when the pause is over.
    void setPaused(bool paused);

    /// Why the combination for this does not work; absent where it does, or shortcuts are off.
    std::optional<Refusal> refusal(const Target& target) const;
    /// Those with a refusal.
    std::set<Target> unavailable() const;

  Q_SIGNALS:
    void unavailableChanged();

  private:
    using Combination = std::pair<std::uint32_t, std::uint32_t>;  // key code, modifiers

    bool pressed(HotKeyID id);
    void lost(HotKeyID id, const Error& error);
    void add(const Target& target, const Shortcut& shortcut, std::set<Combination>& own);
    void refused(const Target& target, const Error& error);
    const Target* targetOf(HotKeyID id) const;
    void release();

    HotKeyService& service_;
    Executor& executor_;
    SystemLog& log_;
    bool paused_ = false;
    std::optional<Shortcuts> wanted_;                        // none: no registrations
    std::vector<Target> targets_;                            // by their number less 1
    std::vector<std::unique_ptr<HotKeyRegistration>> refs_;  // of these; null where it was refused
    std::unique_ptr<HotKeyHandler> handler_;
    std::map<Target, Refusal> refusals_;                                 // of the latest registration
    std::map<Target, std::string> labels_;                               // likewise
    std::shared_ptr<HotKeys*> self_ = std::make_shared<HotKeys*>(this);  // null when it is gone
};

}  // namespace quillo
