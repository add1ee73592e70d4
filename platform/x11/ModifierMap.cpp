#include "platform/x11/ModifierMap.hpp"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <array>
#include <span>

#include "platform/services/KeyEvent.hpp"

namespace quillo::x11 {
namespace {

/// What a key is for as a modifier: the rows of the modifier map that hold it, by role.
struct Roles {
    std::uint16_t super = 0, alt = 0, meta = 0, lock = 0;

    void add(xcb_keysym_t symbol, std::uint16_t row) {
        switch (symbol) {
            case XKB_KEY_Super_L:
            case XKB_KEY_Super_R:
                super |= row;
                break;
            case XKB_KEY_Alt_L:
            case XKB_KEY_Alt_R:
                alt |= row;
                break;
            case XKB_KEY_Meta_L:
            case XKB_KEY_Meta_R:
                meta |= row;
                break;
            case XKB_KEY_Num_Lock:
            case XKB_KEY_Scroll_Lock:
                lock |= row;
                break;
            default:
                break;
        }
    }
};

std::uint16_t lowestBit(std::uint16_t mask) {
    return static_cast<std::uint16_t>(mask & -mask);
}

}  // namespace

std::optional<ModifierMap> ModifierMap::read(const X11Connection& connection) {
    auto* xcb = connection.xcb();
    const auto* setup = xcb_get_setup(xcb);
    const auto keys = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto askedModifiers = xcb_get_modifier_mapping(xcb);
    const auto askedSymbols = xcb_get_keyboard_mapping(xcb, setup->min_keycode, keys);
    const Reply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(xcb, askedModifiers, nullptr));
    const Reply<xcb_get_keyboard_mapping_reply_t> mapping(
        xcb_get_keyboard_mapping_reply(xcb, askedSymbols, nullptr));
    if (!modifiers || !mapping) return std::nullopt;

    const std::size_t perKey = mapping->keysyms_per_keycode, perRow = modifiers->keycodes_per_modifier;
    const std::span symbols(xcb_get_keyboard_mapping_keysyms(mapping.get()), perKey * keys);
    const std::span rows(xcb_get_modifier_mapping_keycodes(modifiers.get()), perRow * 8);
    Roles roles;
    for (std::size_t at = 0; at < rows.size(); ++at) {
        if (rows[at] < setup->min_keycode) continue;  // 0: an unused place
        const auto row = static_cast<std::uint16_t>(1U << (at / perRow));
        for (const auto symbol : symbols.subspan((rows[at] - setup->min_keycode) * perKey, perKey)) {
            roles.add(symbol, row);
        }
    }
    ModifierMap map;
    map.command = lowestBit(roles.super);
    map.option = lowestBit(roles.alt ? roles.alt : roles.meta);
    const int wanted = map.command | map.option | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL;
    map.locks = static_cast<std::uint16_t>((map.locks | roles.lock) & ~wanted);
    return map;
}

std::optional<std::uint16_t> ModifierMap::maskOf(std::uint32_t modifiers) const {
    const std::array<std::pair<std::uint32_t, std::uint16_t>, 4> masks{
        {{modifier::command, command},
         {modifier::option, option},
         {modifier::shift, std::uint16_t{XCB_MOD_MASK_SHIFT}},
         {modifier::control, std::uint16_t{XCB_MOD_MASK_CONTROL}}}};
    std::uint16_t all = 0;
    for (const auto& [wanted, mask] : masks) {
        if ((modifiers & wanted) == 0) continue;
        if (mask == 0) return std::nullopt;
        all |= mask;
    }
    return all;
}

std::vector<std::uint16_t> ModifierMap::withLocks(std::uint16_t mask) const {
    std::vector<std::uint16_t> all;
    std::uint16_t some = locks;
    while (true) {  // every subset of the lock bits, the empty one last
        all.push_back(mask | some);
        if (some == 0) return all;
        some = static_cast<std::uint16_t>((some - 1) & locks);
    }
}

}  // namespace quillo::x11
