// Cancellation: a tree of stop sources, one for each job, with the suspended waits as its leaves. Intrusive
// and for the executor's thread only, so that a stop allocates nothing and cannot fail.
#pragma once
#include <utility>

#include "WindowEngine/support/LinkedList.hpp"

namespace quillo {

/// Thrown by a wait whose task was cancelled. Deliberately not a std::exception, so that a step's own
/// handler cannot swallow it; a `catch (...)` in a task must rethrow.
struct Cancelled {};

/// Hears of one stop.
class StopNode : public Linked<StopNode> {
  public:
    /// Must not resume, destroy or link anything; may make itself ready.
    virtual void onStop() noexcept = 0;
    virtual void onSourceGone() noexcept {}

  protected:
    StopNode() = default;
    ~StopNode() = default;
};

class StopSource final : private StopNode {
  public:
    enum class Kind { follows, shield };

    /// Born stopped when `parent` is. A shield stands below its parent but does not stop with it.
    explicit StopSource(StopSource* parent = nullptr, Kind kind = Kind::follows) noexcept
        : parent_(parent), kind_(kind) {
        if (!parent_) return;
        stopped_ = kind_ == Kind::follows && parent_->stopped_;
        parent_->link(*this);
    }
    ~StopSource() {
        nodes_.forEach([](StopNode& node) {
            node.unlink();
            node.onSourceGone();
        });
    }

    bool stopRequested() const noexcept { return stopped_; }
    void link(StopNode& node) noexcept { nodes_.append(node); }
    void requestStop() noexcept {
        if (std::exchange(stopped_, true)) return;
        nodes_.forEach([](StopNode& node) { node.onStop(); });
    }

    /// Whether this source is `other` or stands somewhere below it.
    bool isWithin(const StopSource& other) const noexcept {
        for (const StopSource* source = this; source; source = source->parent_)
            if (source == &other) return true;
        return false;
    }
    /// The source of the job this one belongs to: itself, or what its shields stand in.
    const StopSource& unshielded() const noexcept {
        const StopSource* source = this;
        while (source->kind_ == Kind::shield && source->parent_) source = source->parent_;
        return *source;
    }

  private:
    void onStop() noexcept override {
        if (kind_ == Kind::follows) requestStop();
    }
    void onSourceGone() noexcept override { parent_ = nullptr; }

    LinkedList<StopNode> nodes_;
    StopSource* parent_;
    Kind kind_;
    bool stopped_ = false;
};

}  // namespace quillo
