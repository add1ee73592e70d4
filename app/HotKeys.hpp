// The two global shortcuts: registered with the system, dispatched to the model.
#pragma once
#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "WindowEngine/services/Platform.hpp"
#include "platform/services/HotKeyService.hpp"
#include "settings/Shortcut.hpp"

namespace quillo {

class HotKeys final : public QObject {
    Q_OBJECT

  public:
    using Action = HotKeyAction;
    enum class Refusal : std::uint8_t {
        taken,  // by another program, or the keyboard has no such key
        own,    // Quillo's other action has it
    };

    /// Registers nothing yet. Services and platform must outlive it.
    HotKeys(HotKeyService& service, Executor& executor, SystemLog& log, QObject* parent = nullptr);
    ~HotKeys() override;

    /// Called in a turn of its own for each press.
    std::function<void(Action)> onAction;

    /// Replaces all registrations; an action that the map lacks takes its default. A refused combination is
    /// logged and marked, the others are registered all the same.
    void registerAll(const std::map<Action, Shortcut>& shortcuts);
    void unregisterAll();
    /// While somebody records a combination, ours are no different from others: none is registered. What is
    /// asked for meanwhile is registered when the pause is over.
    void setPaused(bool paused);

    /// Why the action's combination does not work; absent where it does, or shortcuts are off.
    std::optional<Refusal> refusal(Action action) const;
    /// Those with a refusal.
    std::set<Action> unavailable() const;

  Q_SIGNALS:
    void unavailableChanged();

  private:
    bool pressed(HotKeyID id);
    void lost(HotKeyID id, const Error& error);
    void refused(Action action, const Error& error);
    void release();

    HotKeyService& service_;
    Executor& executor_;
    SystemLog& log_;
    bool paused_ = false;
    std::optional<std::map<Action, Shortcut>> wanted_;       // none: no registrations
    std::vector<std::unique_ptr<HotKeyRegistration>> refs_;  // by action; null where it was refused
    std::unique_ptr<HotKeyHandler> handler_;
    std::map<Action, Refusal> refusals_;                                 // of the latest registration
    std::map<Action, std::string> labels_;                               // likewise
    std::shared_ptr<HotKeys*> self_ = std::make_shared<HotKeys*>(this);  // null when it is gone
};

}  // namespace quillo
