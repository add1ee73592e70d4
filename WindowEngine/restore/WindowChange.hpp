// What bringing a window back changes on it, for whoever tells the person before or after.
#pragma once
#include <cstdint>
#include <optional>

#include "WindowEngine/support/Rect.hpp"

namespace quillo {

template <class T>
struct FromTo {
    T from{}, to{};
    bool operator==(const FromTo&) const = default;
};

/// What is absent stays as it is.
struct WindowChange {
    using Desktop = std::optional<std::int64_t>;  // from 0; absent: several, or one that nobody can tell

    std::optional<FromTo<Rect>> frame = {};
    std::optional<FromTo<bool>> minimized = {}, fullscreen = {};
    std::optional<FromTo<Desktop>> desktop = {};

    /// The window stands right already.
    bool none() const { return *this == WindowChange{}; }
    bool operator==(const WindowChange&) const = default;
};

}  // namespace quillo
