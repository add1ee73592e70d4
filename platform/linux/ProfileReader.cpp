#include "platform/linux/ProfileReader.hpp"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <utility>

#include "platform/linux/OpenProfiles.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration longestReading = 5s;
constexpr auto readersEnd = 1s;

}  // namespace

struct ProfileReader::Shared {
    struct Job {
        std::uint64_t number = 0;
        std::vector<ProcessID> processes;
        BrowserFamily family{};
    };
    /// Whoever waits. Not the thread's own: the executor may be gone before a thread that hangs.
    struct Waiting {
        Completion<Profiles>::Setter setter;
        OutsideWork held;
    };

    void work();

    std::mutex mutex;  // for all below
    std::condition_variable changed;
    std::deque<Job> jobs;
    std::map<std::uint64_t, Waiting> waiting;
    std::uint64_t asked = 0;
    bool ending = false, ended = false;
};

void ProfileReader::Shared::work() {
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return ending || !jobs.empty(); });
        if (ending) break;
        const Job job = std::move(jobs.front());
        jobs.pop_front();
        if (!waiting.contains(job.number)) continue;
        lock.unlock();
        Profiles profiles;
        for (const ProcessID pid : job.processes) profiles.push_back(OpenProfiles::of(pid, job.family));
        lock.lock();
        const auto waits = waiting.find(job.number);
        if (waits == waiting.end()) continue;
        waits->second.setter.set(std::move(profiles));
        waiting.erase(waits);
    }
    ended = true;
    changed.notify_all();
}

ProfileReader::ProfileReader(Executor& executor) : executor_(executor), shared_(std::make_shared<Shared>()) {}

ProfileReader::~ProfileReader() {
    if (!thread_.joinable()) return;
    std::unique_lock lock(shared_->mutex);
    shared_->ending = true;
    shared_->waiting.clear();
    shared_->changed.notify_all();
    const bool ended = shared_->changed.wait_for(lock, readersEnd, [this] { return shared_->ended; });
    lock.unlock();
    ended ? thread_.join() : thread_.detach();
}

Task<Result<ProfileReader::Profiles>> ProfileReader::read(std::vector<ProcessID> processes,
                                                          BrowserFamily family) {
    if (!thread_.joinable()) thread_ = std::thread([shared = shared_] { shared->work(); });
    const Completion<Profiles> completion(executor_);
    std::uint64_t number = 0;
    {
        const std::lock_guard lock(shared_->mutex);
        number = ++shared_->asked;
        shared_->waiting.emplace(number, Shared::Waiting{completion.setter(), executor_.outsideWork()});
        shared_->jobs.push_back({number, std::move(processes), family});
        shared_->changed.notify_all();
    }
    auto profiles = co_await completion.until(executor_.timeAfter(longestReading));
    if (profiles) co_return *std::move(profiles);
    const std::lock_guard lock(shared_->mutex);
    shared_->waiting.erase(number);
    co_return fail(ErrorKind::timedOut, "its session file cannot be read in time");
}

}  // namespace quillo
