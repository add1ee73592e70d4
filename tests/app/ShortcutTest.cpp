// Shortcuts: what a key event becomes, what the recorder makes of it, and the two that work everywhere.
#include <gtest/gtest.h>

#include "WindowEngine/support/Loops.hpp"
#include "app/HotKeys.hpp"
#include "app/ShortcutRecorder.hpp"
#include "platform/simulated/SimulatedHotKeys.hpp"
#include "platform/simulated/SimulatedKeyMonitor.hpp"
#include "tests/LogWords.hpp"

namespace quillo {
namespace {

using namespace modifier;

const Shortcut before{2, command, "D"}, byDefault{1, 0x1900, "S"};

struct Recording {
    const char* name;
    KeyEvent event;
    bool recording;  // afterwards
    std::optional<Shortcut> recorded;
    std::string label = "⌘D";  // afterwards
};
const Recording recordings[] = {
    {"escape stops", {53, 0, ""}, false, {}},
    {"escape stops with modifiers too", {53, command | shift, ""}, false, {}},
    {"delete goes back", {51, 0, ""}, false, byDefault, "⌃⌥⌘S"},
    {"shift and delete go back", {51, shift, ""}, false, byDefault, "⌃⌥⌘S"},
    {"command makes delete a key", {51, command, ""}, false, Shortcut{51, command, "⌫"}, "⌘⌫"},
    {"a bare key", {0, 0, "a"}, true, {}},
    {"shift alone", {0, shift, "a"}, true, {}},
    {"option and shift", {0, option | shift, "a"}, false, Shortcut{0, 0xA00, "A"}, "⌥⇧A"},
    {"all of them", {0, 0x1B00, "a"}, false, Shortcut{0, 0x1B00, "A"}, "⌃⌥⇧⌘A"},
    {"foreign modifier bits", {0, command | 0x10400, "a"}, false, Shortcut{0, command, "A"}, "⌘A"},
    {"a key with a name", {96, control, ""}, false, Shortcut{96, control, "F5"}, "⌃F5"},
    {"a name beats what it writes", {49, option, " "}, false, Shortcut{49, option, "Space"}, "⌥Space"},
    {"a key that writes nothing", {115, command, ""}, true, {}},
    {"a key of no known position", {KeyEvent::noKeyCode, command, ""}, true, {}},
    {"upper case by Unicode's rules", {41, command, "ß"}, false, Shortcut{41, command, "SS"}, "⌘SS"},
    {"a modifier by itself", {55, command, ""}, true, {}},
};

TEST(ShortcutRecorder, ConsumesTheKeyAndDoesWhatItMeans) {
    for (const Recording& one : recordings) {
        SCOPED_TRACE(one.name);
        SimulatedKeyMonitor keys;
        ShortcutRecorder recorder(keys, before, byDefault);
        std::optional<Shortcut> recorded;
        bool stoppedFirst = false;
        QObject::connect(&recorder, &ShortcutRecorder::recorded, [&](const Shortcut& shortcut) {
            recorded = shortcut;
            stoppedFirst = !recorder.recording() && recorder.shortcut() == shortcut;
        });
        EXPECT_FALSE(keys.press(one.event)) << "before the click";
        recorder.start();
        recorder.start();
        EXPECT_EQ(keys.monitors(), 1u);

        EXPECT_TRUE(keys.press(one.event));
        EXPECT_EQ(recorder.recording(), one.recording);
        EXPECT_EQ(keys.monitors(), one.recording ? 1u : 0u);
        EXPECT_EQ(recorded, one.recorded);
        EXPECT_EQ(stoppedFirst, recorded.has_value());
        EXPECT_EQ(recorder.label().toStdString(), one.label);
    }
}

TEST(ShortcutRecorder, DoesNothingWhileDisabled) {
    SimulatedKeyMonitor keys;
    ShortcutRecorder recorder(keys, before, byDefault);
    recorder.start();
    recorder.setEnabled(false);
    recorder.start();
    EXPECT_FALSE(recorder.recording());
    EXPECT_FALSE(keys.press({0, command, "a"}));
    EXPECT_EQ(recorder.shortcut(), before);
    recorder.setEnabled(true);
    recorder.start();
    EXPECT_TRUE(recorder.recording());
}

struct KeptLog final : SystemLog {
    std::string lines;
    void write(std::string_view category, LogLevel, std::string_view text) override {
        lines += std::string(category) + " error: " + std::string(text) + "\n";
    }
};

class HotKeysTest : public testing::Test {
  protected:
    using Targets = std::vector<HotKeyTarget>;

    HotKeysTest() {
        hotKeys.onPressed = [this](const HotKeyTarget& target) { heard.push_back(target); };
    }
    Targets after(bool taken) {
        EXPECT_TRUE(taken);
        EXPECT_TRUE(heard.empty()) << "not in a turn of its own";
        executor.runUntilIdle();
        return std::exchange(heard, {});
    }

    VirtualExecutor executor;
    SimulatedHotKeys service{executor};
    KeptLog log;
    HotKeys hotKeys{service, executor, log};
    Targets heard;
    using Refused = std::set<HotKeyTarget>;
};

TEST_F(HotKeysTest, RegistersTheGivenAndTheDefaultsAndDispatchesByNumber) {
    hotKeys.registerAll({{HotKeyAction::switcher, {96, control, "F5"}}});
    EXPECT_EQ(after(service.press(1, 0x1900)), Targets{HotKeyAction::save});
    EXPECT_EQ(after(service.press(96, control)), Targets{HotKeyAction::switcher});
    EXPECT_FALSE(service.press(15, 0x1900));
    EXPECT_EQ(after(service.deliver({{'Q', 'L', 'L', 'O'}, 2})), Targets{HotKeyAction::switcher});
    EXPECT_FALSE(service.deliver({{'Q', 'L', 'L', 'O'}, 3}));
    EXPECT_FALSE(service.deliver({{'E', 'L', 'S', 'E'}, 1}));

    hotKeys.unregisterAll();
    EXPECT_EQ(service.registrations(), 0u);
    EXPECT_FALSE(service.handled());
}

TEST_F(HotKeysTest, WhileACombinationIsRecordedNoneActs) {
    hotKeys.registerAll({});
    hotKeys.setPaused(true);
    EXPECT_FALSE(service.press(1, 0x1900));
    hotKeys.registerAll({{HotKeyAction::save, {96, control, "F5"}}});
    EXPECT_EQ(service.registrations(), 0u);
    hotKeys.setPaused(false);
    EXPECT_EQ(after(service.press(96, control)), Targets{HotKeyAction::save});
    hotKeys.unregisterAll();
    for (const bool paused : {true, false}) hotKeys.setPaused(paused);
    EXPECT_EQ(service.registrations(), 0u) << "switched off";
}

TEST_F(HotKeysTest, ARefusedActionIsMarkedUntilItsCombinationWorks) {
    int told = 0;
    QObject::connect(&hotKeys, &HotKeys::unavailableChanged, [&] { ++told; });
    service.taken = {{1, 0x1900}};
    hotKeys.registerAll({});
    EXPECT_EQ(hotKeys.unavailable(), Refused{HotKeyAction::save});
    EXPECT_EQ(log.lines, "hotkeys error: hotkey ⌃⌥⌘S unavailable: -9878\n");
    EXPECT_EQ(after(service.press(15, 0x1900)), Targets{HotKeyAction::switcher});

    service.taken.clear();
    hotKeys.registerAll({});
    EXPECT_EQ(after(service.press(1, 0x1900)), Targets{HotKeyAction::save});
    EXPECT_EQ(hotKeys.unavailable(), Refused{});
    EXPECT_EQ(told, 2);

    hotKeys.registerAll({{HotKeyAction::switcher, {1, 0x1900, "S"}}});
    EXPECT_EQ(hotKeys.refusal(HotKeyAction::switcher), HotKeys::Refusal::own);
    hotKeys.unregisterAll();
    EXPECT_EQ(hotKeys.unavailable(), Refused{});
    EXPECT_EQ(std::exchange(told, 2), 4);

    const Uuid first = Uuid::fromBytes({1}), second = Uuid::fromBytes({2});
    service.taken = {{3, 0x1900}};
    hotKeys.registerAll({{second, {2, command, "D"}}, {first, {1, 0x1900, "S"}}, {Uuid(), {3, 0x1900, "F"}}});
    EXPECT_EQ(hotKeys.refusal(first), HotKeys::Refusal::own) << "actions come first";
    EXPECT_EQ(hotKeys.refusal(Uuid()), HotKeys::Refusal::taken);
    EXPECT_EQ(after(service.press(1, 0x1900)), Targets{HotKeyAction::save});
    EXPECT_EQ(after(service.press(2, command)), Targets{second});
    EXPECT_EQ(std::exchange(told, 1), 3);
    service.taken.clear();
    hotKeys.registerAll({});

    service.lose(15, 0x1900);
    executor.runUntilIdle();
    EXPECT_EQ(hotKeys.unavailable(), Refused{HotKeyAction::switcher});
    EXPECT_EQ(told, 3);
    expectOnlyKnownSentences(log.lines);
}

}  // namespace
}  // namespace quillo
