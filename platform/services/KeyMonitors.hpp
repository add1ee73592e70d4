// Who listens to key presses: what the layers keep monitors in.
#pragma once
#include <memory>
#include <ranges>
#include <utility>
#include <vector>

#include "platform/services/KeyMonitorService.hpp"

namespace quillo {

/// Monitors may come and go while they are asked, and may outlive this list.
class KeyMonitors {
  public:
    [[nodiscard]] std::unique_ptr<KeyMonitor> add(KeyMonitorService::KeyDown keyDown) {
        auto entry = std::make_shared<Entry>(std::move(keyDown));
        entries_->push_back(entry);
        return std::make_unique<Monitor>(entries_, std::move(entry));
    }

    /// Whether one of them consumed it.
    bool consume(const KeyEvent& event) const {
        const auto entries = *entries_;
        for (const auto& entry : entries | std::views::reverse) {
            const auto keyDown = entry->keyDown;  // survives the end of its monitor while it runs
            if (keyDown && keyDown(event)) return true;
        }
        return false;
    }

    std::size_t count() const { return entries_->size(); }

  private:
    struct Entry {
        explicit Entry(KeyMonitorService::KeyDown given) : keyDown(std::move(given)) {}
        KeyMonitorService::KeyDown keyDown;  // empty once the monitor is gone
    };
    using Entries = std::vector<std::shared_ptr<Entry>>;

    struct Monitor final : KeyMonitor {
        Monitor(std::weak_ptr<Entries> list, std::shared_ptr<Entry> mine)
            : entries(std::move(list)), entry(std::move(mine)) {}
        Monitor(const Monitor&) = delete;
        Monitor& operator=(const Monitor&) = delete;
        ~Monitor() override {
            entry->keyDown = nullptr;
            if (const auto list = entries.lock()) std::erase(*list, entry);
        }
        std::weak_ptr<Entries> entries;
        std::shared_ptr<Entry> entry;
    };

    std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace quillo
