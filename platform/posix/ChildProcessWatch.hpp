// A thread that sees one child process through: reads its output, keeps its time limit, reaps it.
#pragma once
#include <chrono>
#include <memory>
#include <optional>
#include <thread>

#include "platform/posix/ChildProcessSpawn.hpp"

namespace quillo::ChildProcess {

/// Uses POSIX calls only: no system here can wait for a process and for its pipes in one call without a
/// mechanism of its own, so a second thread waits for the end and reports it through the order pipe. The
/// process stays a zombie until this thread has stopped sending it signals, so none can hit a stranger.
class Watch {
  public:
    using Setter = Completion<Result<Outcome>>::Setter;

    /// The setter is set exactly once, when the child is gone.
    static Result<std::unique_ptr<Watch>> start(Arguments arguments, Duration limit, Setter setter);
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    /// Kills what still runs and waits for its end.
    ~Watch();

    /// Any thread: asks the child to terminate and kills it after the grace.
    void terminate() noexcept { give(Order::terminate); }

  private:
    enum class Order : char { ended = 'e', terminate = 't', kill = 'k' };
    enum class Phase { running, terminating, killed };

    Watch(Pipe orders, Arguments arguments, Duration limit) noexcept
        : orders_(std::move(orders)), arguments_(std::move(arguments)), limit_(limit) {}

    void give(Order order) noexcept;
    Result<Outcome> seeThrough();
    void followUntilEnd();
    void awaitEvents();
    std::optional<Order> nextOrder() noexcept;
    void enter(Phase phase) noexcept;
    void passDeadline() noexcept;
    Result<Outcome> reap();

    Pipe orders_;
    Arguments arguments_;
    Duration limit_;

    // Of the thread, once it runs.
    Child child_;
    Outcome outcome_;
    Phase phase_ = Phase::running;
    TimePoint deadline_;
    bool timedOut_ = false;

    std::thread thread_;
};

}  // namespace quillo::ChildProcess
