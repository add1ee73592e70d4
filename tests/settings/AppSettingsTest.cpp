#include <gtest/gtest.h>

#include <tuple>

#include "platform/simulated/MemoryDefaults.hpp"
#include "settings/AppSettings.hpp"

namespace quillo {
namespace {

AppSettings filled() {
    AppSettings settings;
    settings.autoSnapshotMinutes = 30;
    settings.onboarded = true;
    settings.enabledAdapters = {"finder", "safari"};
    settings.excludedBundleIdentifiers = {"org.a", "\"quoted\"\n"};
    settings.excludedDomains = {"a.example"};
    settings.shortcutsEnabled = false;
    settings.shortcuts = {{"2", {4294967295U, 0x1900, "↩"}}};
    settings.appearance = Appearance::dark;
    settings.withoutTray = WithoutTray::keepRunning;
    settings.lateMinutes = 15;
    settings.offersLayouts = false;
    settings.arrangedWorkspaces = {"6f1c2a9e-0b7d-4e51-9c3a-2d4b8e7f1a60"};
    settings.setAutomation(Uuid(), {.shortcut = Shortcut{18, 0x1900, "1"},
                                    .withoutAsking = true,
                                    .atLogin = true,
                                    .atDisplays = true,
                                    .days = Days::weekdays,
                                    .minute = 450});
    return settings;
}

TEST(AppSettings, ComeBackAsTheyWereStored) {
    MemoryDefaults defaults;
    EXPECT_EQ(AppSettings::load(defaults), AppSettings{});
    ASSERT_TRUE(filled().save(defaults));
    EXPECT_EQ(AppSettings::load(defaults), filled());
    ASSERT_TRUE(defaults.setData("settings", "{"));
    EXPECT_EQ(AppSettings::load(defaults), AppSettings{});
    defaults.failure = Error{ErrorKind::noSpace, "full", 28};
    EXPECT_FALSE(filled().save(defaults));
}

TEST(AppSettings, WhatIsMissingTakesItsDefaultAndAWrongTypeTakesAllWithIt) {
    AppSettings onboarded, ten, dark, keys;
    onboarded.onboarded = true;
    ten.autoSnapshotMinutes = 10;
    dark.appearance = Appearance::dark;
    keys.shortcuts = {{"2", {1, 2, "A"}}};
    const struct {
        const char* json;
        std::optional<AppSettings> settings;
    } cases[] = {
        {"{}", AppSettings{}},
        {R"({"onboarded": true, "unheard": [1]})", onboarded},
        {R"({"onboarded": true, "appearance": null, "autoSnapshotMinutes": null})", onboarded},
        {R"({"autoSnapshotMinutes": 10.0})", ten},
        {R"({"autoSnapshotMinutes": 15})", AppSettings{}},
        {R"({"autoSnapshotMinutes": -5})", AppSettings{}},
        {R"({"autoSnapshotMinutes": "10", "onboarded": true})", {}},
        {R"({"autoSnapshotMinutes": 10.5})", {}},
        {R"({"onboarded": 1})", {}},
        {R"({"enabledAdapters": "finder"})", {}},
        {R"({"enabledAdapters": ["finder", 1]})", {}},
        {R"({"excludedDomains": {}})", {}},
        {R"({"appearance": "dark"})", dark},
        {R"({"appearance": "pink"})", {}},
        {R"({"withoutTray": "maybe"})", {}},
        {R"({"shortcuts": {"2": {"keyCode": 1, "modifiers": 2, "key": "A"}}})", keys},
        {R"({"shortcuts": {"2": {"keyCode": 1, "modifiers": 2}}})", {}},
        {R"({"shortcuts": {"2": {"keyCode": -1, "modifiers": 2, "key": "A"}}})", {}},
        {R"({"shortcuts": {"2": {"keyCode": 4294967296, "modifiers": 2, "key": "A"}}})", {}},
        {R"({"shortcuts": []})", {}},
        {R"({"automation": {"x": {"shortcut": {"key": "A"}}}})", {}},
        {"[]", {}},
        {"", {}},
        {"{\"onboarded\": true", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(AppSettings::decode(c.json), c.settings) << c.json;
}

TEST(AppSettings, ExcludedDomainsAreTheHostsInWhatWasTyped) {
    const struct {
        const char* typed;
        std::set<std::string> hosts;
    } cases[] = {
        {"  HTTPS://Shop.Example/Cart?x=1 \n", {"shop.example"}},
        {"a.example", {"a.example"}},
        {"http://a.example:8080/x", {"a.example"}},
        {"//a.example//", {"a.example"}},
        {"https://user:pw@a.example", {"a.example"}},
        {"bücher.example", {"bücher.example"}},
        {"ftp://a.example/x", {"a.example"}},
        {"http:a.example/x", {"a.example"}},
        {"localhost:8080/x", {"localhost"}},
        {"a.example?x=1", {"a.example"}},
        {"https://a.example, b.example\nftp://c.example,d.example\t a.example,",
         {"a.example", "b.example", "c.example", "d.example"}},
        {"/", {}},
        {"https://", {}},
        {"", {}},
        {" , \n", {}},
        {"a.example https://", {}},  // all of them, or what was typed stays
        {":80", {}},
        {"not a domain!!", {}},
        {"facebook", {}},
        {"a..example", {}},
        {"http://intranet", {"intranet"}},
        {"*.a.example http://10.0.0.1 http://[::1]:80/", {"a.example", "10.0.0.1", "::1"}},
    };
    for (const auto& c : cases) {
        AppSettings settings;
        EXPECT_EQ(settings.excludeDomains(c.typed).has_value(), !c.hosts.empty()) << c.typed;
        EXPECT_EQ(settings.excludedDomains, c.hosts) << c.typed;
        std::ignore = settings.excludeDomains(c.typed);
        EXPECT_EQ(settings.excludedDomains, c.hosts);
    }
}

TEST(AppSettings, ShortcutsAreChosenOrUsual) {
    AppSettings settings;
    EXPECT_EQ(settings.shortcut(HotKeyAction::save).label(), "⌃⌥⌘S");
    EXPECT_EQ(settings.shortcut(HotKeyAction::switcher), (Shortcut{15, 0x1900, "R"}));
    settings.shortcuts["2"] = {96, modifier::control, "F5"};
    EXPECT_EQ(settings.shortcut(HotKeyAction::save), (Shortcut{1, 0x1900, "S"}));
    EXPECT_EQ(settings.shortcut(HotKeyAction::switcher).label(), "⌃F5");
}

TEST(AppSettings, OneWorkspaceAtMostComesBackAtLogin) {
    AppSettings settings;
    const Uuid one = Uuid::fromBytes({1}), two = Uuid::fromBytes({2});
    settings.setAutomation(one, {.atLogin = true});
    settings.setAutomation(two, {.atLogin = true});
    EXPECT_TRUE(settings.automationOf(two).atLogin);
    EXPECT_EQ(settings.automation.size(), 1U);
}

TEST(AppSettings, CapturesHonourThem) {
    const Capture::Options options = filled().captureOptions();
    EXPECT_EQ(options.enabledAdapters, filled().enabledAdapters);
    EXPECT_EQ(options.excludedBundleIdentifiers, filled().excludedBundleIdentifiers);
    EXPECT_EQ(options.excludedDomains, filled().excludedDomains);
    EXPECT_FALSE(options.recoverHidden);
}

}  // namespace
}  // namespace quillo
