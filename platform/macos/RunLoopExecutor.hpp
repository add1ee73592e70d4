// The executor over a thread's Core Foundation run loop: the engine's own queues, which the run loop only
// wakes.
#pragma once
#include <CoreFoundation/CoreFoundation.h>

#include <atomic>

#include "WindowEngine/support/Loops.hpp"
#include "platform/macos/CFRef.hpp"

namespace quillo {

/// Belongs to the thread that makes it, for a program the main thread: the system's own news (applications
/// that start, displays that change) arrive on that run loop, between the turns. Turns run in every common
/// mode, so they go on while a menu is open or a dialog runs, and nothing may assume that a turn ends before
/// the next one begins.
class RunLoopExecutor : public Loop {
  public:
    RunLoopExecutor();
    ~RunLoopExecutor() override;

    TimePoint now() const noexcept override { return std::chrono::steady_clock::now(); }
    Instant wallNow() const noexcept override { return std::chrono::system_clock::now(); }

  protected:
    bool advance(TimePoint deadline) override;

  private:
    void wake() noexcept override;
    void dispatch();
    void armTimer();

    CFRef<CFRunLoopRef> runLoop_;
    CFRef<CFRunLoopSourceRef> source_;
    CFRef<CFRunLoopTimerRef> timer_;
    std::atomic<bool> woken_ = false;  // the source is signalled and yet to be performed
    TimePoint armedFor_ = TimePoint::max();
    int turnsAtOnce_ = 64;  // for each time that the source is performed, so that the system's own are served
};

}  // namespace quillo
