// What a desktop was like before a restore touched it, and what that restore did: all that is needed to put
// everything back. A plain value; UndoCoding writes and reads it.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo {

/// One window of the desktop before. A number alone may be given to another window once it is free.
struct UndoWindow {
    std::string application;  // identifier
    std::int64_t index = 0;   // WindowSnapshot::index; windows that are native tabs of one share it
    std::uint32_t number = 0;
    std::int64_t process = 0;  // 0 where that is not known
    /// Of a window in full screen: its desktop, as the window server numbers it; absent where full screen is
    /// a desktop of its own.
    std::optional<std::int64_t> space = std::nullopt;

    bool operator==(const UndoWindow&) const = default;
};

/// An application that ran, as RunningApplication tells of it.
struct UndoApplication {
    std::string identifier;
    std::int64_t pid = 0;
    std::optional<Instant> launchedAt;
    bool hidden = false;
    bool cleared = false;  // the restore was to hide it, or to ask it to quit

    bool operator==(const UndoApplication&) const = default;
};

/// One that the restore launched.
struct UndoLaunch {
    std::string identifier, name;
    std::optional<std::int64_t> pid = {};  // absent where none was seen when the restore ended
    std::optional<Instant> launchedAt = {};

    bool operator==(const UndoLaunch&) const = default;
};

struct UndoRecord {
    /// 8E2D5B16-3C0F-4A9B-9D77-51E6C4A20B38, of what was before any restore.
    static constexpr Uuid beforeID = Uuid::fromBytes({0x8E, 0x2D, 0x5B, 0x16, 0x3C, 0x0F, 0x4A, 0x9B,  //
                                                      0x9D, 0x77, 0x51, 0xE6, 0xC4, 0xA2, 0x0B, 0x38});
    /// 3B7F0A52-96D1-4E6C-8C25-0D9A47F1E863, of the same on a desktop in memory.
    static constexpr Uuid simulatedID = Uuid::fromBytes({0x3B, 0x7F, 0x0A, 0x52, 0x96, 0xD1, 0x4E, 0x6C,  //
                                                         0x8C, 0x25, 0x0D, 0x9A, 0x47, 0xF1, 0xE8, 0x63});
    static bool isIdentifier(const Uuid& id) { return id == beforeID || id == simulatedID; }

    /// The desktop before, in the looks of the workspace that was restored; its clean-slate choice is what
    /// that restore did to other applications, its time of creation when it began.
    Workspace before;
    Uuid restored = {};                              // that workspace
    std::vector<UndoApplication> applications = {};  // of those in `before` what ran
    std::vector<UndoWindow> windows = {};            // those whose numbers were known, front to back
    /// Windows of applications that are kept out of every workspace, which were not minimized; nothing says
    /// whose they are.
    std::vector<UndoWindow> others = {};
    std::int64_t othersCleared = 0;  // such applications that were hidden or asked to quit
    std::vector<UndoLaunch> launched = {};
    std::int64_t opened = 0, desktops = 0;  // documents, folders and tabs; desktops that were made

    bool operator==(const UndoRecord&) const = default;
};

}  // namespace quillo
