// Work that the system must not slow down.
#pragma once
#include <memory>

namespace quillo {

/// The system lets a program whose windows nobody sees doze: its timers come late, and a restore waits on
/// hundreds of short ones while other applications' windows cover ours. Main thread.
class MacActivity {
  public:
    MacActivity();
    MacActivity(const MacActivity&) = delete;
    MacActivity& operator=(const MacActivity&) = delete;
    ~MacActivity();

    /// Whether there is work; the computer may go to sleep all the same.
    void set(bool working);

  private:
    struct Held;
    std::unique_ptr<Held> held_;
};

}  // namespace quillo
