// Hot keys, keyboard, defaults and log of a Mac, each over its fake.
#include <optional>
#include <string>
#include <vector>

#include "platform/macos/CFValues.hpp"
#include "platform/macos/MacDefaults.hpp"
#include "platform/macos/MacHotKeys.hpp"
#include "platform/macos/MacKeyboardLayout.hpp"
#include "platform/macos/MacLog.hpp"
#include "platform/macos/MacSha256.hpp"
#include "tests/platform/contract/DefaultsSuite.hpp"
#include "tests/platform/contract/HotKeysSuite.hpp"
#include "tests/platform/macos/MacTest.hpp"
#include "tests/platform/macos/fakes/FakeCarbon.hpp"
#include "tests/platform/macos/fakes/FakeLog.hpp"
#include "tests/platform/macos/fakes/FakePreferences.hpp"

namespace quillo {
namespace {

struct OneMac {
    const std::unique_ptr<SimulatedDesktop> desktop =
        SimulatedDesktop::create(R"({"displays": [{"id": "A", "frame": [0, 0, 1440, 900]}]})", "scene")
            .value();
    fakes::FakeMac mac{*desktop};
};
class MacServicesTest : public MacTest, protected OneMac {};

constexpr std::array<char, 4> ours{'Q', 'L', 'L', 'O'};

class MacHotKeysTest : public MacServicesTest {
  protected:
    fakes::FakeCarbon& carbon = mac.part<fakes::FakeCarbon>();
    MacHotKeys hotKeys;
    std::vector<HotKeyID> heard;

    std::unique_ptr<HotKeyHandler> listen() {
        return hotKeys.installHandler(
            [this](HotKeyID id) {
                heard.push_back(id);
                return id.signature == ours && id.number <= 2;
            },
            [](HotKeyID, const Error&) { FAIL() << "nothing is lost on a Mac"; });
    }
};

class MacKeys final : public HotKeysUnderTest, OneMac {
  public:
    HotKeyService& service() override { return hotKeys_; }
    void press(const Combination& combination) override {
        carbon_.press(combination.keyCode, combination.modifiers);
    }
    void take(const Combination& combination) override {
        carbon_.taken.insert({combination.keyCode, combination.modifiers});
    }
    bool runUntil(const std::function<bool()>& condition) override { return condition(); }

  private:
    fakes::FakeCarbon& carbon_ = mac.part<fakes::FakeCarbon>();
    MacHotKeys hotKeys_;
};
INSTANTIATE_TEST_SUITE_P(Mac, HotKeysContract, testing::Values(+[]() -> std::unique_ptr<HotKeysUnderTest> {
                             return std::make_unique<MacKeys>();
                         }));

TEST_F(MacHotKeysTest, LetsOtherEventsPass) {
    auto handler = listen();
    auto registered = hotKeys.registerHotKey(1, 0x1900, {ours, 1});
    EXPECT_EQ(carbon.press(1, 0x1900), noErr);
    EXPECT_EQ(heard, (std::vector<HotKeyID>{{ours, 1}}));

    constexpr OSType qllo = 0x514C4C4F;
    EXPECT_EQ(carbon.deliver({qllo, 3}), eventNotHandledErr);
    EXPECT_EQ(carbon.deliver({qllo + 1, 1}), eventNotHandledErr);
    EXPECT_EQ(heard.size(), 3U);
    EXPECT_EQ(carbon.deliver({qllo, 1}, false), eventNotHandledErr);
    EXPECT_EQ(heard.size(), 3U) << "of an event that names no hot key nobody is told";

    handler.reset();
    EXPECT_EQ(carbon.press(1, 0x1900), eventNotHandledErr);
    registered->reset();
    EXPECT_TRUE(carbon.hotKeys.empty() && carbon.handlers.empty());
}

TEST_F(MacHotKeysTest, AHandlerMayGoWhileItIsTold) {
    std::unique_ptr<HotKeyHandler> handler = hotKeys.installHandler(
        [&](HotKeyID) {
            handler.reset();
            return true;
        },
        {});
    EXPECT_EQ(carbon.deliver({}), noErr);
    EXPECT_EQ(carbon.deliver({}), eventNotHandledErr);
}

TEST_F(MacHotKeysTest, RefusalsCarryTheSystemsCodes) {
    carbon.taken.insert({1, 0x1900});
    const auto handler = listen();
    EXPECT_EQ(hotKeys.registerHotKey(1, 0x1900, {ours, 1}).error().code, eventHotKeyExistsErr);
    EXPECT_EQ(hotKeys.registerHotKey(KeyEvent::noKeyCode, 0x1900, {ours, 1}).error().code,
              eventHotKeyInvalidErr);
}

TEST_F(MacHotKeysTest, RegistersNothingThatNobodyCouldHear) {
    carbon.handlerFailure = -50;
    EXPECT_EQ(listen(), nullptr);
    EXPECT_NE(hotKeys.capability().reason().find("-50"), std::string::npos);
    EXPECT_EQ(hotKeys.registerHotKey(1, 0x1900, {ours, 1}).error().code, -50);
    carbon.handlerFailure = noErr;
    const auto handler = listen();
    EXPECT_TRUE(hotKeys.registerHotKey(1, 0x1900, {ours, 1}));
}

TEST_F(MacServicesTest, KeysWriteWhatTheLayoutSays) {
    auto& carbon = mac.part<fakes::FakeCarbon>();
    carbon.keys = {{0, {u"q"}},  {1, {u"é"}},   {6, {u"\xD83E\xDE9F"}}, {24, {u"´", true}},
                   {2, {u"lj"}}, {36, {u"\r"}}, {96, {u"\x10"}},        {51, {u"\x7F"}}};
    const MacKeyboardLayout keyboard;
    const struct {
        std::uint32_t keyCode;
        std::string writes;
    } cases[] = {{0, "q"}, {1, "é"}, {6, "🪟"}, {24, "´"}, {2, "lj"},
                 {36, ""}, {96, ""}, {51, ""},  {7, ""},   {65536, ""}};
    for (const auto& [keyCode, writes] : cases) EXPECT_EQ(keyboard.characters(keyCode), writes) << keyCode;
    for (const auto layout : {fakes::FakeCarbon::Layout::none, fakes::FakeCarbon::Layout::noSource}) {
        carbon.layout = layout;
        EXPECT_EQ(keyboard.characters(0), "");
    }
    EXPECT_EQ(keyboard.keyCode(15), 15U);
    EXPECT_EQ(keyboard.keyCode(KeyEvent::noKeyCode), std::nullopt);
}

class MacDefaultsTest : public MacServicesTest {
  protected:
    fakes::FakePreferences& preferences = mac.part<fakes::FakePreferences>();
    MacDefaults defaults;

    CFRef<CFTypeRef>& kept(const std::string& key) { return preferences.kept[{"app.quillo.Quillo", key}]; }
    void keep(const std::string& key, CFTypeRef value) { kept(key) = CFRef<CFTypeRef>::retained(value); }
};

class KeptByTheSystem final : public DefaultsUnderTest, OneMac {
  public:
    UserDefaults& defaults() override { return *defaults_; }
    void startAgain() override { defaults_.emplace(); }
    void refuse(bool refuses) override { mac.part<fakes::FakePreferences>().failures = refuses ? 1000 : 0; }

  private:
    std::optional<MacDefaults> defaults_{std::in_place};
};
INSTANTIATE_TEST_SUITE_P(Mac, DefaultsContract, testing::Values(+[]() -> std::unique_ptr<DefaultsUnderTest> {
                             return std::make_unique<KeptByTheSystem>();
                         }));

TEST_F(MacDefaultsTest, KeepsDataAndFlagsAsTheSystemsOwn) {
    const std::string bytes("{\"a\": \"\xff\0\"}", 11);
    EXPECT_EQ(defaults.place(), "app.quillo.Quillo");
    ASSERT_TRUE(defaults.setData("settings", bytes));
    EXPECT_EQ(cf::bytes(kept("settings").get()), bytes);
    for (const bool value : {true, false}) {
        ASSERT_TRUE(defaults.setBoolean("flag", value));
        EXPECT_EQ(cf::boolean(kept("flag").get()), value);
    }
    ASSERT_TRUE(defaults.setData("settings", std::nullopt));
    EXPECT_FALSE(kept("settings"));
    EXPECT_FALSE(defaults.setData("\xff", bytes));
    EXPECT_EQ(defaults.data("\xff"), std::nullopt);
    EXPECT_EQ(MacDefaults("another").data("flag"), std::nullopt);
    preferences.failures = 1;
    EXPECT_EQ(defaults.setData("settings", bytes).error().kind, ErrorKind::io);
}

TEST_F(MacDefaultsTest, ValuesOfAnotherTypeCountAsNotSet) {
    keep("settings", cf::makeText("{}").get());
    keep("flag", cf::makeInteger(1).get());
    EXPECT_EQ(defaults.trouble(), std::nullopt);
    EXPECT_EQ(defaults.data("settings"), std::nullopt);
    EXPECT_FALSE(defaults.boolean("flag"));
    EXPECT_EQ(defaults.trouble(), "app.quillo.Quillo: flag, settings: a value of another type stands there");
    ASSERT_TRUE(defaults.setData("settings", "{}"));
    keep("flag", kCFBooleanTrue);
    EXPECT_TRUE(defaults.boolean("flag"));
    EXPECT_EQ(defaults.trouble(), std::nullopt);
}

TEST_F(MacServicesTest, LogsWholeMessagesAsPublic) {
    auto& written = mac.part<fakes::FakeLog>();
    MacLog log;
    log.write("capture", LogLevel::info, "captured 3 apps, 100% of 7 windows");
    log.write("restore", LogLevel::error, std::string_view("é and more").substr(0, 2));
    written.infoEnabled = false;
    log.write("capture", LogLevel::info, "nobody looks");
    log.write("capture", LogLevel::error, "");
    const std::vector<fakes::FakeLog::Line> expected = {
        {"app.quillo", "capture", 0x01, "captured 3 apps, 100% of 7 windows"},
        {"app.quillo", "restore", 0x10, "é"},
        {"app.quillo", "capture", 0x10, ""}};
    EXPECT_EQ(written.lines, expected);
}

TEST(MacSha256, IsTheStandards) {
    EXPECT_EQ(macSha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(macSha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

}  // namespace
}  // namespace quillo
