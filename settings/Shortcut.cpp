#include "settings/Shortcut.hpp"

#include <algorithm>
#include <string_view>

#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

struct SpecialKey {
    std::uint32_t keyCode;
    std::string_view text;
};
constexpr std::array specialKeys{SpecialKey{36, "↩"},    SpecialKey{48, "⇥"},    SpecialKey{49, "Space"},
                                 SpecialKey{51, "⌫"},    SpecialKey{53, "⎋"},    SpecialKey{123, "←"},
                                 SpecialKey{124, "→"},   SpecialKey{126, "↑"},   SpecialKey{125, "↓"},
                                 SpecialKey{122, "F1"},  SpecialKey{120, "F2"},  SpecialKey{99, "F3"},
                                 SpecialKey{118, "F4"},  SpecialKey{96, "F5"},   SpecialKey{97, "F6"},
                                 SpecialKey{98, "F7"},   SpecialKey{100, "F8"},  SpecialKey{101, "F9"},
                                 SpecialKey{109, "F10"}, SpecialKey{103, "F11"}, SpecialKey{111, "F12"}};

}  // namespace

std::string Shortcut::label() const {
    std::string label;
    if (modifiers & modifier::control) label += "⌃";
    if (modifiers & modifier::option) label += "⌥";
    if (modifiers & modifier::shift) label += "⇧";
    if (modifiers & modifier::command) label += "⌘";
    return label + key;
}

std::optional<Shortcut> Shortcut::fromEvent(const KeyEvent& event) {
    using namespace modifier;
    if ((event.modifiers & (command | control | option)) == 0) return std::nullopt;
    const auto special = std::ranges::find(specialKeys, event.keyCode, &SpecialKey::keyCode);
    std::string key =
        special != specialKeys.end() ? std::string(special->text) : text::uppercase(event.characters);
    if (key.empty()) return std::nullopt;
    return Shortcut{event.keyCode, event.modifiers & (command | shift | option | control), std::move(key)};
}

Shortcut defaultShortcut(HotKeyAction action) {
    constexpr std::uint32_t mask = modifier::control | modifier::option | modifier::command;
    return action == HotKeyAction::save ? Shortcut{1, mask, "S"} : Shortcut{15, mask, "R"};
}

}  // namespace quillo
