// NSScreen's list.
#pragma once
#include "platform/macos/MacScreens.hpp"

namespace quillo {

/// Main thread. The primary screen first.
std::vector<NativeScreen> nativeScreens();

}  // namespace quillo
