#include "platform/x11/ClassicKeyCodes.hpp"

#include <algorithm>
#include <iterator>

namespace quillo::x11 {
namespace {

struct Position {
    std::uint8_t classic;  // kVK_... in HIToolbox/Events.h
    std::uint8_t evdev;    // KEY_... in linux/input-event-codes.h
};

/// X servers on Linux number a key 8 above the kernel's code (xkeyboard-config, keycodes/evdev).
constexpr std::uint8_t firstKey = 8;

// Two keys are not where their names say on every keyboard: that left of the digit 1 is 50 and that left of Z
// is 10, as an ANSI keyboard and its ISO addition have them (an ISO keyboard of Apple's reports them the
// other way round). F13 to F20 are the keys of those names; Help stands where others have Insert.
// clang-format off
constexpr Position positions[] = {
    {12, 16}, {13, 17}, {14, 18}, {15, 19}, {17, 20}, {16, 21}, {32, 22}, {34, 23}, {31, 24}, {35, 25},  // Q to P
    {0, 30}, {1, 31}, {2, 32}, {3, 33}, {5, 34}, {4, 35}, {38, 36}, {40, 37}, {37, 38},                  // A to L
    {6, 44}, {7, 45}, {8, 46}, {9, 47}, {11, 48}, {45, 49}, {46, 50},                                    // Z to M
    {18, 2}, {19, 3}, {20, 4}, {21, 5}, {23, 6}, {22, 7}, {26, 8}, {28, 9}, {25, 10}, {29, 11},          // 1 to 0
    {27, 12}, {24, 13}, {33, 26}, {30, 27}, {41, 39}, {39, 40}, {42, 43},              // - = [ ] ; ' and backslash
    {50, 41}, {43, 51}, {47, 52}, {44, 53}, {10, 86},                                  // ` , . / and ISO's addition
    {93, 124}, {94, 89}, {95, 121}, {102, 123}, {104, 122},         // JIS: yen, underscore, keypad comma, eisu, kana
    {36, 28}, {48, 15}, {49, 57}, {51, 14}, {53, 1}, {57, 58},      // return, tab, space, delete, escape, caps lock
    {55, 125}, {56, 42}, {58, 56}, {59, 29},                        // left command, shift, option, control
    {54, 126}, {60, 54}, {61, 100}, {62, 97},                       // right command, shift, option, control
    {123, 105}, {124, 106}, {125, 108}, {126, 103},                 // left, right, down, up
    {115, 102}, {119, 107}, {116, 104}, {121, 109}, {117, 111},     // home, end, page up, page down, forward delete
    {114, 110}, {110, 127},                                         // help, contextual menu
    {122, 59}, {120, 60}, {99, 61}, {118, 62}, {96, 63}, {97, 64}, {98, 65}, {100, 66},               // F1 to F8
    {101, 67}, {109, 68}, {103, 87}, {111, 88}, {105, 183}, {107, 184}, {113, 185}, {106, 186},       // F9 to F16
    {64, 187}, {79, 188}, {80, 189}, {90, 190},                                                       // F17 to F20
    {82, 82}, {83, 79}, {84, 80}, {85, 81}, {86, 75}, {87, 76}, {88, 77}, {89, 71}, {91, 72}, {92, 73},  // keypad 0 to 9
    {65, 83}, {67, 55}, {69, 78}, {71, 69}, {75, 98}, {76, 96}, {78, 74}, {81, 117},  // keypad . * + clear / enter - =
    {72, 115}, {73, 114}, {74, 113},                                                  // volume up, down, mute
};
// clang-format on

}  // namespace

std::optional<xcb_keycode_t> keyOfClassicCode(std::uint32_t classicCode) {
    const auto* found = std::ranges::find(positions, classicCode, &Position::classic);
    if (found == std::end(positions)) return std::nullopt;
    return static_cast<xcb_keycode_t>(found->evdev + firstKey);
}

std::optional<std::uint32_t> classicCodeOfKey(std::uint32_t key) {
    const auto* found = std::ranges::find(positions, key - firstKey, &Position::evdev);
    if (found == std::end(positions)) return std::nullopt;
    return found->classic;
}

}  // namespace quillo::x11
