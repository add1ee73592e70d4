// One suspended wait: resumed by a timer, by whoever it waits for, or by a stop, and always in a turn of its
// own. Can be destroyed while suspended.
#pragma once
#include <coroutine>

#include "WindowEngine/support/Context.hpp"

namespace quillo {

class Wait : protected StopNode, protected Turn {
  public:
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;

  protected:
    explicit Wait(Context context) noexcept : context_(context) {}
    ~Wait() { context_.executor->withdraw(*this); }

    const Context& context() const noexcept { return context_; }
    bool stopped() const noexcept { return stopped_; }

    /// Remembers whom to resume and listens for a stop.
    void suspend(std::coroutine_handle<> handle) noexcept {
        suspendUnstoppable(handle);
        context_.stop->link(*this);
    }
    void suspendUnstoppable(std::coroutine_handle<> handle) noexcept { handle_ = handle; }
    void resumeAt(TimePoint due) { context_.executor->makeReadyAt(*this, due); }
    /// At the end of the ready queue, once.
    void resumeSoon() noexcept {
        if (!std::exchange(resumes_, true)) context_.executor->makeReady(*this);
    }
    /// In the present turn. Destroys the awaiter: nothing of it may be touched afterwards.
    void resumeNow() {
        context_.executor->withdraw(*this);
        StopNode::unlink();
        const Executor::RunScope scope(*context_.executor, *context_.stop);
        handle_.resume();
    }

  private:
    void run() override { resumeNow(); }
    void onStop() noexcept override {
        stopped_ = true;
        resumeSoon();
    }

    Context context_;
    std::coroutine_handle<> handle_;
    bool stopped_ = false;
    bool resumes_ = false;
};

class Sleep {
  public:
    explicit Sleep(Duration duration) noexcept : duration_(duration) {}

    class Awaiter final : Wait {
      public:
        Awaiter(Context context, Duration duration) noexcept : Wait(context), duration_(duration) {}

        bool await_ready() const {
            context().throwIfStopped();
            return false;
        }
        void await_suspend(std::coroutine_handle<> handle) {
            resumeAt(context().executor->timeAfter(duration_));
            suspend(handle);
        }
        void await_resume() const {
            if (stopped()) throw Cancelled{};
        }

      private:
        Duration duration_;
    };
    Awaiter awaiterIn(Context context) const noexcept { return Awaiter(context, duration_); }

  private:
    Duration duration_;
};

/// `co_await sleepFor(duration)`: never shorter; zero or less lets everything run that is ready now. Throws
/// Cancelled when the task is cancelled before or meanwhile.
inline Sleep sleepFor(Duration duration) noexcept {
    return Sleep(duration);
}

}  // namespace quillo
