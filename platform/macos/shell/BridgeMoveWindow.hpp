// Moving a window to another space through an operation class of the system.
#pragma once
#include <cstdint>

/// False where the system has no such class; true says that it was asked, not that the window moved. Main
/// thread.
extern "C" bool QuilloBridgeMoveWindow(std::uint32_t windowID, std::uint64_t spaceID);
