#include "WindowEngine/capture/CaptureHealth.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace quillo::CaptureHealth {
namespace {

constexpr std::chrono::minutes memory{1};

}  // namespace

std::optional<Flaw> flawOf(const Situation& situation) {
    if (!situation.access) return Flaw::noAccess;
    if (situation.screen == ScreenState::locked) return Flaw::locked;
    if (situation.screen == ScreenState::blank) return Flaw::blank;
    if (!situation.hasDisplay) return Flaw::noDisplay;
    if (situation.displaysChanging) return Flaw::displaysChanging;
    // A session that ends, or an application of many windows that crashed.
    if (situation.windows < situation.windowsBefore - situation.windows) return Flaw::windowsVanished;
    return std::nullopt;
}

std::string words(Flaw flaw) {
    switch (flaw) {
        case Flaw::noAccess:
            return "other applications' windows cannot be read";
        case Flaw::locked:
            return "the screen is locked";
        case Flaw::blank:
            return "the screen is blank";
        case Flaw::noDisplay:
            return "no display is attached";
        case Flaw::displaysChanging:
            return "the displays are changing";
        case Flaw::windowsVanished:
            return "more than half of the windows have gone within a minute";
    }
    std::abort();
}

std::string warning(Flaw flaw) {
    return "This may not be the desktop that you want back: " + words(flaw) + ".";
}

void WindowTally::note(TimePoint now, std::int64_t count) {
    before_.push_back({now, count_});
    count_ = count;
    while (before_.front().until < now - memory) before_.pop_front();  // the one of now stays
}

std::int64_t WindowTally::most(TimePoint now) const {
    std::int64_t most = count_;
    for (const Span& span : before_)
        if (span.until >= now - memory) most = std::max(most, span.count);
    return most;
}

std::int64_t windowsBefore(const WorkspaceSnapshot& last, Instant now) {
    const bool recent = last.capturedAt <= now && now - last.capturedAt <= memory;
    return recent ? last.windowCount() : 0;
}

}  // namespace quillo::CaptureHealth
