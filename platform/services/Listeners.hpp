// Who wants to hear of something: what the layers keep callbacks in.
#pragma once
#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace quillo {

/// Callbacks, each for as long as its handle (a Handle, which the seam declares with nothing but a virtual
/// destructor). They may come and go while they are called, their own included; a handle may outlive the
/// list.
template <class Function, class Handle>
class Listeners {
  public:
    [[nodiscard]] std::unique_ptr<Handle> add(Function function) {
        auto entry = std::make_shared<Function>(std::move(function));
        entries_->push_back(entry);
        return std::make_unique<Listening>(entries_, std::move(entry));
    }

    /// Those there are now, the oldest first. One whose handle has gone meanwhile is empty.
    auto snapshot() const { return *entries_; }
    std::size_t count() const { return entries_->size(); }

  private:
    using Entries = std::vector<std::shared_ptr<Function>>;

    struct Listening final : Handle {
        Listening(std::weak_ptr<Entries> list, std::shared_ptr<Function> mine)
            : entries(std::move(list)), entry(std::move(mine)) {}
        Listening(const Listening&) = delete;
        Listening& operator=(const Listening&) = delete;
        ~Listening() override {
            *entry = nullptr;
            if (const auto list = entries.lock()) std::erase(*list, entry);
        }
        std::weak_ptr<Entries> entries;
        std::shared_ptr<Function> entry;
    };

    std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace quillo
