// Waits until applications have opened their windows. One object serves all applications of a run, so that
// twenty of them waiting at once cost little more than one.
#pragma once
#include <map>
#include <optional>
#include <string>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo::Restore {

struct Patience {
    Duration timeout{};  // for windows to appear and to settle, together
    Duration settle{};   // without a new window, after which an application is complete; zero: not waited for
};

class WindowPresence {
  public:
    explicit WindowPresence(DesktopAccess& desktop) : desktop_(desktop) {}
    WindowPresence(const WindowPresence&) = delete;
    WindowPresence& operator=(const WindowPresence&) = delete;

    /// Ends when the application has windows and opens no more, or when the time is over. Cancellation
    /// throws.
    Task<void> wait(std::string bundleIdentifier, Patience patience);

  private:
    using Count = std::optional<std::size_t>;  // absent: the application did not answer

    Task<void> waitUntilPresent(const std::string& bundleIdentifier, TimePoint deadline);
    Task<void> waitUntilSettled(const std::string& bundleIdentifier, TimePoint deadline, Duration settle);
    Task<Count> count(std::string bundleIdentifier);
    void countAll();
    void countAnswers();
    TimePoint now() const { return desktop_.platform.executor.now(); }

    struct Waiting {
        int tasks = 0;
        bool counted = false;
        bool unasked = false;  // as another one did not answer in time
        Count count;
    };
    class Membership;

    DesktopAccess& desktop_;
    std::map<std::string, Waiting> waiting_;
    TimePoint countedAt_ = TimePoint::min();
};

}  // namespace quillo::Restore
