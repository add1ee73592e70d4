// Executors: the virtual clock of tests and the plain loop.
#pragma once
#include "WindowEngine/support/Executor.hpp"
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
namespace quillo {
class TimerQueue {                       // ordered by (time, sequence): ties are FIFO, so deterministic
    std::map<TimerId, Fn> q_; std::uint64_t seq_ = 0;
public:
    TimerId add(TimePoint at, Fn f) { TimerId id{at, ++seq_}; q_.emplace_hint(q_.end(), id, std::move(f)); return id; }
    void cancel(TimerId id) noexcept { if (auto n = q_.extract(id)) { /* destroyed after unlink */ } }
    bool empty() const noexcept { return q_.empty(); }
    TimePoint next() const noexcept { return q_.begin()->first.when; }
    Fn pop() { auto n = q_.extract(q_.begin()); return std::move(n.mapped()); }
};

class VirtualExecutor final : public Executor {
    static constexpr Instant wallStart_{std::chrono::seconds{1741944413}};  // 2025-03-14T09:26:53Z
    TimePoint now_{}; std::deque<Fn> posts_; TimerQueue timers_;
public:
    TimePoint now() const noexcept override { return now_; }
    Instant wallNow() const noexcept override { return wallStart_ + now_.time_since_epoch(); }
    void burn(Duration d) noexcept { now_ += d; }  // a call that blocks the thread for d: nothing runs meanwhile
    void post(Fn f) override { posts_.push_back(std::move(f)); }
    TimerId postAfter(Duration d, Fn f) override { return timers_.add(now_ + std::max(d, Duration{}), std::move(f)); }
    void cancel(TimerId id) noexcept override { timers_.cancel(id); }
    bool idle() const noexcept { return posts_.empty() && timers_.empty(); }
    void runUntil(TimePoint limit) {     // advances the clock only when nothing is runnable
        for (;;) {
            if (!posts_.empty()) { Fn f = std::move(posts_.front()); posts_.pop_front(); f(); continue; }
            if (timers_.empty() || timers_.next() > limit) break;
            now_ = std::max(now_, timers_.next()); Fn f = timers_.pop(); f();
        }
        if (limit != TimePoint::max()) now_ = std::max(now_, limit);
    }
    void runUntilIdle() { runUntil(TimePoint::max()); }
};

class LoopExecutor final : public Executor {
    std::mutex m_; std::condition_variable cv_; std::deque<Fn> posts_; TimerQueue timers_; bool stop_ = false;
public:
    TimePoint now() const noexcept override { return std::chrono::steady_clock::now(); }
    Instant wallNow() const noexcept override { return std::chrono::system_clock::now(); }
    void post(Fn f) override { { std::lock_guard l(m_); posts_.push_back(std::move(f)); } cv_.notify_one(); }
    TimerId postAfter(Duration d, Fn f) override { return timers_.add(now() + std::max(d, Duration{}), std::move(f)); }
    void cancel(TimerId id) noexcept override { timers_.cancel(id); }
    void stop() { post([this] { stop_ = true; }); }
    void run() {
        stop_ = false;
        while (!stop_) {
            std::deque<Fn> batch;
            {
                std::unique_lock l(m_);
                auto ready = [&] { return !posts_.empty(); };
                if (timers_.empty()) cv_.wait(l, ready); else cv_.wait_until(l, timers_.next(), ready);
                batch.swap(posts_);
            }
            for (auto& f : batch) f();
            while (!stop_ && !timers_.empty() && timers_.next() <= now()) timers_.pop()();
        }
    }
};
}
