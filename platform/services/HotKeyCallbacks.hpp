// Who wants to hear of hot keys: what the layers keep the handler in.
#pragma once
#include <memory>
#include <utility>

#include "platform/services/HotKeyService.hpp"

namespace quillo {

/// A handler that has gone is not told any more, one that goes while it is told is told to the end. Copies
/// mean the same handler.
class HotKeyCallbacks {
  public:
    /// Takes the place of the one before.
    std::unique_ptr<HotKeyHandler> install(HotKeyService::Pressed pressed, HotKeyService::Lost lost) {
        auto functions = std::make_shared<Functions>(std::move(pressed), std::move(lost));
        current_ = functions;
        return std::make_unique<Handler>(std::move(functions));
    }

    bool installed() const { return !current_.expired(); }
    bool pressed(HotKeyID id) const {
        const auto functions = current_.lock();
        return functions && functions->pressed(id);
    }
    void lost(HotKeyID id, const Error& error) const {
        if (const auto functions = current_.lock()) functions->lost(id, error);
    }

  private:
    struct Functions {
        Functions(HotKeyService::Pressed first, HotKeyService::Lost second)
            : pressed(std::move(first)), lost(std::move(second)) {}
        HotKeyService::Pressed pressed;
        HotKeyService::Lost lost;
    };
    struct Handler final : HotKeyHandler {
        explicit Handler(std::shared_ptr<Functions> mine) : functions(std::move(mine)) {}
        std::shared_ptr<Functions> functions;
    };

    std::weak_ptr<Functions> current_;
};

}  // namespace quillo
