// Global hot keys and the keyboard's layout, by real key events.
#include <xkbcommon/xkbcommon-keysyms.h>

#include "platform/services/KeyEvent.hpp"
#include "platform/x11/ClassicKeyCodes.hpp"
#include "platform/x11/X11Connection.hpp"
#include "platform/x11/X11HotKeys.hpp"
#include "platform/x11/X11KeyboardLayout.hpp"
#include "tests/platform/contract/HotKeysSuite.hpp"
#include "tests/platform/x11/X11Test.hpp"

namespace quillo::x11test {
namespace {

using namespace std::chrono_literals;
using namespace modifier;

constexpr std::uint32_t allThree = control | option | command, keyS = 1, keyR = 15;
// The position of S, where xdotool presses whatever the layout writes there, and that of R.
const std::string positionS = "39", positionR = "27";

// xdotool puts the group back that it found, so the second is locked, and ⌃⌥⌘S pressed in it, without
// xdotool.
const std::string pressInSecondGroup = R"(
import ctypes
x, test = ctypes.CDLL('libX11.so.6'), ctypes.CDLL('libXtst.so.6')
x.XOpenDisplay.restype = ctypes.c_void_p
d = ctypes.c_void_p(x.XOpenDisplay(None))
x.XkbLockGroup(d, 0x100, 1)
keys = [37, 64, 133, 39]
for key, down in [(k, 1) for k in keys] + [(k, 0) for k in keys]: test.XTestFakeKeyEvent(d, key, down, 0)
x.XSync(d, 0)
)";

class HotKeysX11 : public X11Test {
  protected:
    HotKeysX11() {
        xcb = *x11::X11Connection::open(sharedDesktop().display());
        handler = keys.installHandler(
            [this](HotKeyID id) {
                heard.push_back(id.number);
                return true;
            },
            [this](HotKeyID id, const Error& error) { lost.emplace_back(id.number, error.code); });
    }
    ~HotKeysX11() override {
        for (const int lock : {XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_3}) setLock(lock, false);
        keyboard({"-layout", "us", "-option", ""});
    }

    /// The code it was refused with, 0 if it was not.
    int hold(X11HotKeys& service, std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t number) {
        auto registered = service.registerHotKey(keyCode, modifiers, {{'T', 'E', 'S', 'T'}, number});
        if (!registered) return registered.error().code;
        held.push_back(std::move(*registered));
        return 0;
    }
    void press(const std::string& what) { EXPECT_EQ(tool({"xdotool", "key", what}), 0) << what; }
    int tool(const std::vector<std::string>& command) { return sharedDesktop().run(command); }
    void keyboard(std::vector<std::string> options) {
        options.insert(options.begin(), "setxkbmap");
        EXPECT_EQ(tool(options), 0);
    }
    /// What was heard up to the press of ⌃⌥⌘R, which must be registered as number 2.
    std::vector<std::uint32_t> heardUntilR() {
        press("ctrl+alt+super+" + positionR);
        EXPECT_TRUE(eventually([&] { return !heard.empty() && heard.back() == 2; }));
        return std::exchange(heard, {});
    }
    /// Lock keys are toggled by their key.
    void setLock(int mask, bool on) {
        const auto state = [&] {
            const x11::Reply<xcb_query_pointer_reply_t> reply(
                xcb_query_pointer_reply(xcb->xcb(), xcb_query_pointer(xcb->xcb(), xcb->root()), nullptr));
            return reply && (reply->mask & mask) != 0;
        };
        if (state() == on) return;
        press(mask == XCB_MOD_MASK_LOCK ? "Caps_Lock" : mask == XCB_MOD_MASK_2 ? "Num_Lock" : "Scroll_Lock");
        EXPECT_EQ(state(), on) << mask;
    }
    bool inFront(const LiveWindow& window) {
        const x11::Reply<xcb_get_input_focus_reply_t> focus(
            xcb_get_input_focus_reply(xcb->xcb(), xcb_get_input_focus(xcb->xcb()), nullptr));
        return focus && focus->focus == *window.windowID;
    }

    X11HotKeys keys{executor, sharedDesktop().display()};
    std::unique_ptr<HotKeyHandler> handler;
    std::vector<std::unique_ptr<HotKeyRegistration>> held;
    std::vector<std::uint32_t> heard;
    std::vector<std::pair<std::uint32_t, int>> lost;
    std::unique_ptr<x11::X11Connection> xcb;
    using Numbers = std::vector<std::uint32_t>;
};

class KeysOfAServer final : public HotKeysUnderTest {
  public:
    HotKeyService& service() override { return keys_; }
    void press(const Combination& combination) override {
        std::string names;
        for (const auto& [mask, name] : {std::pair{control, "ctrl+"}, {option, "alt+"}, {command, "super+"}})
            if (combination.modifiers & mask) names += name;
        sharedDesktop().run(
            {"xdotool", "key", names + std::to_string(*x11::keyOfClassicCode(combination.keyCode))});
    }
    void take(const Combination& combination) override {
        taken_.push_back(
            other_.registerHotKey(combination.keyCode, combination.modifiers, {{'E', 'L', 'S', 'E'}, 1})
                .value());
    }
    bool runUntil(const std::function<bool()>& condition) override {
        return executor_.runUntil(condition, 10s);
    }

  private:
    LoopExecutor executor_;
    X11HotKeys keys_{executor_, sharedDesktop().display()}, other_{executor_, sharedDesktop().display()};
    std::vector<std::unique_ptr<HotKeyRegistration>> taken_;
};

}  // namespace
}  // namespace quillo::x11test

namespace quillo {
INSTANTIATE_TEST_SUITE_P(X11, HotKeysContract, testing::Values(+[]() -> std::unique_ptr<HotKeysUnderTest> {
                             return std::make_unique<x11test::KeysOfAServer>();
                         }));
}  // namespace quillo

namespace quillo::x11test {
namespace {

TEST_F(HotKeysX11, APressArrivesOnceWhateverTheLockKeysAndWhoIsInFront) {
    ASSERT_EQ(hold(keys, keyS, allThree, 1), 0);
    ASSERT_EQ(hold(keys, keyR, allThree, 2), 0);
    const auto front = openWindow("in front");
    EXPECT_TRUE(eventually([&] { return inFront(front); }));
    // Scroll Lock is no modifier unless someone makes it one, here after the combinations were grabbed.
    ASSERT_EQ(tool({"xmodmap", "-e", "add mod3 = Scroll_Lock"}), 0);
    nextTurn();
    for (int locks = 0; locks < 8; ++locks) {
        setLock(XCB_MOD_MASK_LOCK, locks & 1);
        setLock(XCB_MOD_MASK_2, locks & 2);
        setLock(XCB_MOD_MASK_3, locks & 4);
        press("ctrl+alt+super+" + positionS);
        press("ctrl+super+" + positionS);
        press("ctrl+alt+shift+super+" + positionS);
        EXPECT_EQ(heardUntilR(), (Numbers{1, 2})) << "locks " << locks;
    }
}

TEST_F(HotKeysX11, AHeldKeyIsOnePress) {
    ASSERT_EQ(hold(keys, keyS, command, 1), 0);
    ASSERT_EQ(hold(keys, keyR, allThree, 2), 0);
    ASSERT_EQ(tool({"xset", "r", "rate", "50", "100"}), 0);
    press("super+" + positionS);
    ASSERT_EQ(tool({"xdotool", "keydown", "super", "keydown", positionS, "sleep", "0.4", "keyup", positionS,
                    "keyup", "super"}),
              0);
    EXPECT_EQ(heardUntilR(), (Numbers{1, 1, 2}));
    tool({"xset", "r", "rate"});
}

TEST_F(HotKeysX11, RefusesWhatIsHeldOrHasNoKey) {
    X11HotKeys other(executor, sharedDesktop().display());
    for (const std::uint32_t keyCode : {63u, 4711u}) EXPECT_EQ(hold(keys, keyCode, command, 3), XCB_VALUE);
    // What holds it with one lock key only is enough, and the others are not kept.
    const auto grab = [&](auto function, auto... modes) {
        return xcb->check(function(xcb->xcb(), modes...));
    };
    const auto with = std::uint16_t{XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK};
    ASSERT_EQ(grab(xcb_grab_key_checked, std::uint8_t{0}, xcb->root(), with, xcb_keycode_t{39},
                   std::uint8_t{XCB_GRAB_MODE_ASYNC}, std::uint8_t{XCB_GRAB_MODE_ASYNC}),
              0);
    EXPECT_EQ(hold(keys, keyS, control, 4), XCB_ACCESS);
    ASSERT_EQ(grab(xcb_ungrab_key_checked, xcb_keycode_t{39}, xcb->root(), with), 0);
    EXPECT_EQ(hold(other, keyS, control, 4), 0);
}

TEST_F(HotKeysX11, AModifierThatMovesIsFollowedAndWhatIsLostIsTold) {
    ASSERT_EQ(hold(keys, keyS, command, 1), 0);
    ASSERT_EQ(hold(keys, keyR, allThree, 2), 0);
    ASSERT_EQ(hold(keys, keyR, command, 3), 0);
    // Another program takes Mod1 with R, which is Alt now and will be Super.
    ASSERT_EQ(xcb->check(xcb_grab_key_checked(xcb->xcb(), 0, xcb->root(), XCB_MOD_MASK_1, 27,
                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)),
              0);
    ASSERT_EQ(tool({"xmodmap", "-e", "clear mod1", "-e", "clear mod4", "-e", "add mod1 = Super_L", "-e",
                    "add mod4 = Alt_L"}),
              0);
    EXPECT_TRUE(eventually([&] { return !lost.empty(); }));
    EXPECT_EQ(lost, (std::vector<std::pair<std::uint32_t, int>>{{3, XCB_ACCESS}}));
    press("alt+" + positionS);
    press("super+" + positionS);
    EXPECT_EQ(heardUntilR(), (Numbers{1, 2}));
}

TEST_F(HotKeysX11, LayoutsChangeTheTextAndNeverThePosition) {
    struct Case {
        std::vector<std::string> layout;
        bool secondGroup;
        std::vector<std::pair<std::uint32_t, std::string>> texts;
    };
    const X11KeyboardLayout layout(*xcb);
    ASSERT_EQ(hold(keys, keyS, allThree, 1), 0);
    ASSERT_EQ(hold(keys, keyR, allThree, 2), 0);
    for (const auto& [name, secondGroup, texts] : {
             Case{
                 {"us"}, false, {{1, "s"}, {18, "1"}, {36, ""}, {49, " "}, {83, "1"}, {115, ""}, {4711, ""}}},
             {{"fr"}, false, {{0, "q"}, {12, "a"}, {18, "&"}, {19, "é"}}},
             {{"de"}, false, {{16, "z"}, {41, "ö"}, {10, "<"}}},
             {{"dvorak"}, false, {{1, "o"}, {12, "'"}}},
             {{"us,ru"}, true, {{1, "ы"}, {18, "1"}}},
         }) {
        auto options = name;
        options.insert(options.begin(), "-layout");
        keyboard(options);
        if (secondGroup) EXPECT_EQ(tool({"python3", "-c", pressInSecondGroup}), 0);
        for (const auto& [keyCode, text] : texts) {
            EXPECT_EQ(layout.characters(keyCode), text) << name.front() << " " << keyCode;
        }
        // xdotool looks its modifiers up by name, which every layout has.
        if (!secondGroup) press("ctrl+alt+super+" + positionS);
        EXPECT_EQ(heardUntilR(), (Numbers{1, 2})) << name.front();
    }
    for (std::uint32_t code = 0; code < 128; ++code) {
        const auto key = x11::keyOfClassicCode(code);
        if (key) EXPECT_EQ(layout.keyCode(*key), code);
    }
    EXPECT_EQ(layout.keyCode(107), std::nullopt) << "Print Screen";
}

TEST(HotKeysWithoutServer, AServerThatGoesAwayLeavesAReason) {
    LoopExecutor executor;
    EXPECT_NE(X11HotKeys(executor, ":4711").capability().reason().find(":4711"), std::string::npos);
    PrivateDesktop desktop;
    const auto connection = *x11::X11Connection::open(desktop.display());
    const X11KeyboardLayout layout(*connection);
    X11HotKeys keys(executor, desktop.display());
    auto registered = keys.registerHotKey(keyS, command, {});
    ASSERT_TRUE(registered.has_value());
    desktop.server().kill();
    EXPECT_TRUE(waitFor([&] { return !keys.capability(); }));
    EXPECT_EQ(keys.registerHotKey(keyR, command, {}).error().kind, ErrorKind::unavailable);
    EXPECT_EQ(layout.characters(keyS), "");
    registered->reset();
}

}  // namespace
}  // namespace quillo::x11test
