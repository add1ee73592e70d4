// What the system asks of the application itself: to start, and to show itself again.
#pragma once
#include <functional>
#include <memory>

namespace quillo {

/// Main thread, with the application's event loop.
class MacApplicationEvents {
  public:
    struct Handlers {
        std::function<void(bool atLogin)>
            started;                     // once, in the loop's first turns; by the login item or by a person
        std::function<void()> reopened;  // it was opened while it runs
    };
    /// Before the loop starts, or `started` may never come.
    explicit MacApplicationEvents(Handlers handlers);
    MacApplicationEvents(const MacApplicationEvents&) = delete;
    MacApplicationEvents& operator=(const MacApplicationEvents&) = delete;
    ~MacApplicationEvents();

  private:
    struct Registrations;
    std::unique_ptr<Registrations> registrations_;
};

}  // namespace quillo
