// Moving a window to another space through an operation class of the system.
#pragma once
#include <cstdint>

/// Whether the system has the class. Main thread.
extern "C" bool QuilloHasBridgeMove(void);

/// True says that it was asked, not that the window moved; false where there is no such class. Main thread.
extern "C" bool QuilloBridgeMoveWindow(std::uint32_t windowID, std::uint64_t spaceID);
