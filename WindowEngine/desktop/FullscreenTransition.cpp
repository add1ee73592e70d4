#include "WindowEngine/desktop/FullscreenTransition.hpp"

#include <chrono>

namespace quillo::FullscreenTransition {
namespace {

constexpr int agreeingReadings = 3;
constexpr int mostRequests = 3;

Duration seconds(double value) {
    return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(value));
}

/// What the readings so far call for.
class Readings {
  public:
    Readings(bool target, Duration retryDelay) : target_(target), retryDelay_(retryDelay) {}

    void requested(TimePoint now) {
        ++requests_;
        nextRequest_ = now + retryDelay_;
        mismatches_ = 0;
    }
    void add(std::optional<bool> reading) {
        matches_ = reading == target_ ? matches_ + 1 : 0;
        mismatches_ = reading == !target_ ? mismatches_ + 1 : 0;
    }
    bool verified() const { return matches_ >= agreeingReadings; }
    bool callForRequest(TimePoint now) const {
        return mismatches_ >= agreeingReadings && requests_ < mostRequests && now >= nextRequest_;
    }

  private:
    bool target_;
    Duration retryDelay_;
    int matches_ = 0, mismatches_ = 0, requests_ = 0;
    TimePoint nextRequest_{};  // where no request was needed at first, one may come at once
};

}  // namespace

Task<bool> apply(bool target, double timeout, double retryDelay, Steps steps) {
    const Context context = co_await quillo::context();
    const TimePoint deadline = context.now() + seconds(timeout);
    Readings readings(target, seconds(retryDelay));

    if (steps.read() != target) {
        if (!steps.request()) co_return false;
        readings.requested(context.now());
    }
    while (context.now() < deadline) {
        co_await checkpoint();
        readings.add(steps.read());
        if (readings.verified()) co_return true;
        if (readings.callForRequest(context.now())) {
            if (!steps.request()) co_return false;
            readings.requested(context.now());
        }
        co_await steps.pause();
    }
    co_return false;
}

}  // namespace quillo::FullscreenTransition
