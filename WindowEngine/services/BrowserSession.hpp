// What a browser's own session file tells of its ordinary windows, whichever browser wrote it.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "WindowEngine/support/Rect.hpp"

namespace quillo {

struct BrowserTab {
    std::string address;  // as written: any scheme, not checked
    std::string title;    // empty where the browser has not written it yet

    bool operator==(const BrowserTab&) const = default;
};

struct BrowserWindow {
    std::vector<BrowserTab> tabs = {};  // in the browser's order, never empty
    std::size_t selected = 0;           // place of the tab in front
    /// Where it stood when that was last written, in whole pixels of the screen: late, and with or without
    /// decoration.
    std::optional<Rect> frame = std::nullopt;
    bool isPlain = true;                                 // neither minimized nor maximized nor in full screen
    std::optional<std::int64_t> desktop = std::nullopt;  // the window manager's number
    std::int64_t order = 0;  // smaller numbers were made earlier, across the profiles of a process

    bool operator==(const BrowserWindow&) const = default;
};

/// The ordinary windows of one profile. Neither family writes private windows.
struct BrowserSession {
    std::vector<BrowserWindow> windows;  // in order of `order`

    bool operator==(const BrowserSession&) const = default;
};

/// No session file of a person is larger; one that is says so instead of costing memory.
inline constexpr std::size_t largestSessionFile = std::size_t{64} << 20;  // bytes

}  // namespace quillo
