// Turns that become ready later, by time and, at the same time, in the order they were asked for.
#pragma once
#include <cstdint>
#include <set>

#include "WindowEngine/support/ReadyQueue.hpp"

namespace quillo {

/// For the executor's thread only. Taking turns out never fails and never allocates.
class TimerQueue {
  public:
    bool empty() const noexcept { return turns_.empty(); }
    TimePoint earliest() const noexcept { return (*turns_.begin())->due_; }
    void add(Turn& turn, TimePoint due) {
        turn.due_ = due;
        turn.order_ = ++lastOrder_;
        turns_.insert(&turn);
        turn.place_ = Turn::Place::timed;
    }
    void withdraw(Turn& turn) noexcept {
        turns_.erase(&turn);
        turn.place_ = Turn::Place::nowhere;
    }
    Turn& takeEarliest() noexcept {
        Turn& turn = **turns_.begin();
        withdraw(turn);
        return turn;
    }

  private:
    struct Earlier {
        bool operator()(const Turn* left, const Turn* right) const noexcept {
            return left->due_ != right->due_ ? left->due_ < right->due_ : left->order_ < right->order_;
        }
    };
    std::set<Turn*, Earlier> turns_;
    std::uint64_t lastOrder_ = 0;
};

}  // namespace quillo
