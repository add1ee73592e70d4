#include "WindowEngine/support/Job.hpp"

namespace quillo::detail {

JobEnd::~JobEnd() {
    if (job_ && job_->waiter_ == this) job_->waiter_ = nullptr;
}

bool JobEnd::ended() const {
    if (job_->waiter_) throw std::logic_error("two tasks await one job");
    return job_->done_;
}

void JobEnd::listen(std::coroutine_handle<> handle) noexcept {
    job_->waiter_ = this;
    suspendUnstoppable(handle);
}

bool JobEnd::reachedEnd() noexcept {
    if (!job_) return false;
    if (job_->waiter_ == this) job_->waiter_ = nullptr;
    return true;
}

JobState::JobState(Executor& executor, StopSource* parent)
    : executor_(executor), stop_(parent ? parent : &executor.rootStop()) {
    executor_.jobStarted();
    executor_.makeReady(*this);
}

JobState::~JobState() {
    executor_.withdraw(*this);
    loseWaiter();
    if (!done_) executor_.jobEnded();
}

void JobState::onDone(Fn callback) {
    onDone_ = std::move(callback);
    if (done_) executor_.makeReady(*this);
}

void JobState::release() noexcept {
    if (done_ || !executor_.runsWithin(stop_)) {
        delete this;
        return;
    }
    released_ = true;
    onDone_ = {};
    loseWaiter();
    executor_.adopt(*this);
    stop_.requestStop();
}

void JobState::loseWaiter() noexcept {
    if (!waiter_) return;
    JobEnd& waiter = *std::exchange(waiter_, nullptr);
    waiter.job_ = nullptr;
    waiter.resumeSoon();
}

void JobState::taskEnded() noexcept {
    done_ = true;
    executor_.jobEnded();
    if (waiter_) waiter_->resumeSoon();
    if (released_ || onDone_) executor_.makeReady(*this);
}

void JobState::run() {
    if (!started_) return start();
    if (released_) {
        delete this;
        return;
    }
    Fn callback = std::move(onDone_);
    callback();  // may destroy the Job and this with it
}

void JobState::start() {
    started_ = true;
    if (stop_.stopRequested()) {
        cancelBeforeStart();
        taskEnded();
        return;
    }
    const Executor::RunScope scope(executor_, stop_);
    startTask();
}

void JobState::discard() noexcept {
    if (released_) delete this;
}

}  // namespace quillo::detail
