// Fake run loops on real time, one for each thread. As the system's do, they see a signal only while awake.
#pragma once
#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>

namespace quillo::fakes {

/// A mode that is a common one, as a Mac's are while a menu is open.
extern const CFRunLoopMode menuTrackingMode;

/// How often this thread's loop has looked around so far.
std::size_t runLoopPasses();

/// Lets this thread's loop go, which else lives as long as the thread; sources that are left are not
/// performed any more. For tests that count what lives.
void endRunLoop();

}  // namespace quillo::fakes
