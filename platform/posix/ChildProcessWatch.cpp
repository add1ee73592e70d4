#include "platform/posix/ChildProcessWatch.hpp"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace quillo::ChildProcess {
namespace {

using Clock = std::chrono::steady_clock;

/// Appends what one read gives; whether to go on reading at once. Closes at the end of the stream.
bool readSome(Descriptor& from, std::string& into) {
    if (!from) return false;
    std::array<char, 65536> chunk;
    const ssize_t count = ::read(from.get(), chunk.data(), chunk.size());
    if (count > 0) {
        into.append(chunk.data(), static_cast<std::size_t>(count));
        return true;
    }
    if (count == 0 || (errno != EAGAIN && errno != EINTR)) from.close();
    return count < 0 && errno == EINTR;
}

/// All that an ended child left in the pipe. Bounded, because a grandchild may go on writing for ever.
void readRest(Descriptor& from, std::string& into) {
    constexpr int largestPipe = 1 << 20;
    for (int chunks = 0; chunks <= largestPipe / 4096 && readSome(from, into); ++chunks) {
    }
}

/// Without reaping, so that the process id stays taken.
void blockUntilEnded(pid_t pid) noexcept {
    siginfo_t information;
    while (::waitid(P_PID, static_cast<id_t>(pid), &information, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
}

int millisecondsUntil(TimePoint deadline) {
    if (deadline == TimePoint::max()) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, 60'000));
}

TimePoint after(Duration duration) {
    const TimePoint now = Clock::now();
    return duration < TimePoint::max() - now ? now + duration : TimePoint::max();
}

}  // namespace

Result<std::unique_ptr<Watch>> Watch::start(Arguments arguments, Duration limit, Setter setter) {
    Result<Pipe> orders = Pipe::open();
    if (!orders) return std::unexpected(orders.error());
    std::unique_ptr<Watch> watch(new Watch(std::move(*orders), std::move(arguments), limit));
    try {
        watch->thread_ = std::thread([](Watch& self, const Setter& ended) { ended.set(self.seeThrough()); },
                                     std::ref(*watch), setter);
    } catch (const std::system_error& error) {
        return fail(ErrorKind::unavailable, "no thread to watch a program with", error.code().value());
    }
    return watch;
}

Watch::~Watch() {
    give(Order::kill);
    if (thread_.joinable()) thread_.join();
}

void Watch::give(Order order) noexcept {
    while (::write(orders_.writing.get(), &order, 1) < 0 && errno == EINTR) {
    }
}

Result<Outcome> Watch::seeThrough() {
    Result<Child> child = spawn(arguments_);
    if (!child) return std::unexpected(child.error());
    child_ = std::move(*child);
    deadline_ = after(limit_);
    try {
        std::thread waiter([this, pid = child_.pid] {
            blockUntilEnded(pid);
            give(Order::ended);
        });
        followUntilEnd();
        waiter.join();
    } catch (const std::system_error&) {  // no thread: nobody can watch it
        enter(Phase::killed);
    }
    return reap();
}

void Watch::followUntilEnd() {
    for (;;) {
        awaitEvents();
        readSome(child_.standardOutput, outcome_.standardOutput);
        readSome(child_.standardError, outcome_.standardError);
        const std::optional<Order> order = nextOrder();
        if (order == Order::ended) return;
        if (order == Order::kill) enter(Phase::killed);
        if (order == Order::terminate && phase_ == Phase::running) enter(Phase::terminating);
        if (Clock::now() >= deadline_) passDeadline();
    }
}

void Watch::awaitEvents() {
    // A closed descriptor is -1, which poll passes over.
    std::array<pollfd, 3> watched{{{orders_.reading.get(), POLLIN, 0},
                                   {child_.standardOutput.get(), POLLIN, 0},
                                   {child_.standardError.get(), POLLIN, 0}}};
    ::poll(watched.data(), watched.size(), millisecondsUntil(deadline_));
}

std::optional<Watch::Order> Watch::nextOrder() noexcept {
    Order order;
    if (::read(orders_.reading.get(), &order, 1) != 1) return std::nullopt;
    return order;
}

void Watch::enter(Phase phase) noexcept {
    phase_ = phase;
    deadline_ = phase == Phase::terminating ? after(arguments_.grace) : TimePoint::max();
    ::kill(-child_.pid, phase == Phase::terminating ? SIGTERM : SIGKILL);
}

void Watch::passDeadline() noexcept {
    if (phase_ == Phase::running) {
        timedOut_ = true;
        enter(Phase::terminating);
    } else {
        enter(Phase::killed);
    }
}

Result<Outcome> Watch::reap() {
    if (phase_ != Phase::running) ::kill(-child_.pid, SIGKILL);  // what the child itself had started
    int status = 0;
    pid_t reaped = 0;
    do reaped = ::waitpid(child_.pid, &status, 0);
    while (reaped < 0 && errno == EINTR);
    readRest(child_.standardOutput, outcome_.standardOutput);
    readRest(child_.standardError, outcome_.standardError);
    if (timedOut_) return fail(ErrorKind::timedOut, "no answer within the time limit");
    if (reaped < 0) return fail(ErrorKind::io, "the end of the program was not seen", errno);
    outcome_.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    outcome_.exitStatus = outcome_.signal != 0 ? 128 + outcome_.signal : WEXITSTATUS(status);
    return std::move(outcome_);
}

}  // namespace quillo::ChildProcess
