// Whether a capture shows the desktop as a person has it: while the screen is locked, displays come and go or
// a session ends, it shows something that nobody wants back. Pure decisions; callers bring what they see.
#pragma once
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/services/Screens.hpp"
#include "WindowEngine/support/Executor.hpp"

namespace quillo::CaptureHealth {

enum class Flaw : std::uint8_t { noAccess, locked, blank, noDisplay, displaysChanging, windowsVanished };

struct Situation {
    bool access = true;  // other applications' windows can be read: a window manager answers
    ScreenState screen = ScreenState::shown;
    bool hasDisplay = true;
    bool displaysChanging = false;
    std::int64_t windowsBefore = 0;  // the most there were within the last minute
    std::int64_t windows = 0;
};

/// The weightiest; absent for a healthy one.
std::optional<Flaw> flawOf(const Situation& situation);

/// "the screen is locked": to stand within a sentence.
std::string words(Flaw flaw);
/// What the person is told who saves all the same: a sentence.
std::string warning(Flaw flaw);

/// How many windows there were in the last minute.
class WindowTally {
  public:
    /// From `now` on there are `count`; to be told whenever that changes, or often.
    void note(TimePoint now, std::int64_t count);
    /// The most at any time of the minute before `now`; 0 where nothing was noted.
    std::int64_t most(TimePoint now) const;

  private:
    struct Span {
        TimePoint until;
        std::int64_t count;
    };
    std::deque<Span> before_;  // in order of time
    std::int64_t count_ = 0;
};

/// The same of a session that was saved, as windows of a snapshot; 0 where that is longer ago than a minute.
std::int64_t windowsBefore(const WorkspaceSnapshot& last, Instant now);

}  // namespace quillo::CaptureHealth
