#include "platform/x11/X11KeyboardLayout.hpp"

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <array>

#include "platform/x11/ClassicKeyCodes.hpp"

namespace quillo {

using namespace x11;

namespace {

template <auto function>
struct Unref {
    template <class T>
    void operator()(T* object) const {
        function(object);
    }
};
using Keymap = std::unique_ptr<xkb_keymap, Unref<xkb_keymap_unref>>;
using State = std::unique_ptr<xkb_state, Unref<xkb_state_unref>>;

/// UTF-8; empty for none, and for control characters, which write nothing.
std::string textOf(xkb_keysym_t symbol) {
    std::array<char, 8> buffer{};
    const int size = xkb_keysym_to_utf8(symbol, buffer.data(), buffer.size());
    const auto first = static_cast<unsigned char>(buffer[0]);
    return size <= 1 || first < 0x20 || first == 0x7F ? std::string() : std::string(buffer.data());
}

xkb_keysym_t symbolAt(xkb_state* state, xkb_keycode_t key, xkb_level_index_t level) {
    const xkb_keysym_t* symbols = nullptr;
    const auto layout = xkb_state_key_get_layout(state, key);
    if (layout == XKB_LAYOUT_INVALID) return XKB_KEY_NoSymbol;
    const int count =
        xkb_keymap_key_get_syms_by_level(xkb_state_get_keymap(state), key, layout, level, &symbols);
    return count == 1 ? symbols[0] : xkb_keysym_t{XKB_KEY_NoSymbol};
}

bool onKeypad(xkb_keysym_t symbol) {
    return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_9;
}

}  // namespace

void X11KeyboardLayout::Release::operator()(xkb_context* context) const {
    xkb_context_unref(context);
}

X11KeyboardLayout::X11KeyboardLayout(const X11Connection& connection)
    : connection_(connection), context_(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES)) {
    hasXkb_ = context_ && xkb_x11_setup_xkb_extension(
                              connection.xcb(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                              XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr) != 0;
}

X11KeyboardLayout::~X11KeyboardLayout() = default;

std::optional<std::uint32_t> X11KeyboardLayout::keyCode(std::uint32_t nativeKeyCode) const {
    return classicCodeOfKey(nativeKeyCode);
}

std::string X11KeyboardLayout::characters(std::uint32_t keyCode) const {
    const auto key = keyOfClassicCode(keyCode);
    if (!key || !hasXkb_) return {};
    auto* xcb = connection_.xcb();
    const auto keyboard = xkb_x11_get_core_keyboard_device_id(xcb);
    if (keyboard < 0) return {};
    const Keymap keymap(
        xkb_x11_keymap_new_from_device(context_.get(), xcb, keyboard, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) return {};
    const State state(xkb_x11_state_new_from_device(keymap.get(), xcb, keyboard));
    if (!state) return {};
    const auto symbol = symbolAt(state.get(), *key, 0);
    auto text = textOf(symbol);
    // A keypad without Num Lock moves the cursor; classic keyboards have neither, only the digits.
    return text.empty() && onKeypad(symbol) ? textOf(symbolAt(state.get(), *key, 1)) : text;
}

}  // namespace quillo
