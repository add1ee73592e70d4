// How the main window was left, for the next time: none of it changes what the program does.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/services/UserDefaults.hpp"

namespace quillo {

struct WindowMemory {
    static constexpr std::string_view defaultsKey = "window";

    std::int64_t width = 1080, height = 720;  // points, while it is not maximized
    bool maximized = false;
    std::string order = {};  // of the library, as it is called there; empty is the first
    std::string page = "library";
    std::string workspace = {};    // the one that the page "detail" shows
    std::string pane = "general";  // of the page "settings"

    bool operator==(const WindowMemory&) const = default;

    /// What is missing, and all of what cannot be read, is as at the first start.
    static WindowMemory load(const UserDefaults& defaults);
    /// On failure what was stored before stays.
    Result<void> save(UserDefaults& defaults) const;
};

}  // namespace quillo
