// Session files of browsers, written byte by byte, whole and damaged in every way.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "WindowEngine/integrations/ChromiumSessionLog.hpp"
#include "WindowEngine/integrations/FirefoxSession.hpp"
#include "tests/WindowEngine/SessionFileSamples.hpp"

namespace quillo {
namespace {

using namespace samples::sessions;

/// "a b* | c": the windows with their tabs, the selected one marked; a refusal is its kind.
std::string told(const Result<BrowserSession>& session) {
    if (!session) return "error " + std::to_string(static_cast<int>(session.error().kind));
    std::string text;
    for (const BrowserWindow& one : session->windows) {
        text += text.empty() ? "" : " |";
        for (std::size_t i = 0; i < one.tabs.size(); ++i)
            text += (text.empty() ? "" : " ") + one.tabs[i].address + (i == one.selected ? "*" : "");
    }
    return text;
}
const std::string invalid = "error " + std::to_string(static_cast<int>(ErrorKind::invalidData)),
                  unknown = "error " + std::to_string(static_cast<int>(ErrorKind::unavailable));

const std::string two =
    window(1) + tab(1, 10, 0, "a", 5) + tab(1, 11, 7, "b", 9) + window(2) + tab(2, 20, 0, "c");

TEST(ChromiumSessionLog, TellsOfOrdinaryWindowsAndTheirTabs) {
    const auto closed = [](std::int64_t when, std::string_view address) {
        return log(record(9, pickle(raw(1, 0, 1, when))) + record(4, raw(30, 0, when)) +
                   record(1, pickle(raw(30, 0) + field(address) + field(""))));
    };
    const std::string one = window(1) + tab(1, 30, 0, "a", 50);
    std::string many = window(1);
    std::string manyTold;
    for (int i = 0; i < 20'000; ++i) {
        many += tab(1, 10 + i, i, "a");
        manyTold += i == 0 ? "a*" : " a";
    }
    const struct {
        std::string session, told, closedTabs{};
    } cases[] = {
        {log(""), ""},
        {log(two), "a b* | c*"},
        {log(two, 1), "a b* | c*"},
        {log(two + record(2, raw(11, -1))), "b* a | c*"},   // moved
        {log(two + record(0, raw(2, 11))), "a* | c b*"},    // to another window
        {log(two + record(16, raw(11, 0, 0))), "a* | c*"},  // closed
        {log(two + record(17, raw(1, 0, 0))), "c*"},
        {log(two + window(2, 1)), "a b*"},  // a popup
        {log(two + record(15, pickle(raw(2) + field("app")))), "a b*"},
        {log(two + record(0, raw(9, 90)) + entry(90, 0, "x")), "a b* | c*"},  // a window never introduced
        {log(two + entry(20, 1, "d") + record(7, raw(20, 1))), "a b* | d*"},
        {log(two + entry(20, 1, "d") + record(7, raw(20, 1)) + record(5, raw(20, 1))), "a b* | c*"},
        {log(two + entry(20, 1, "d") + record(7, raw(20, 1)) + record(11, raw(20, 1))), "a b* | d*"},
        {log(two + entry(20, 1, "d") + record(7, raw(20, 1)) + record(24, raw(20, 0, 1))), "a b* | d*"},
        {log(two + record(6, pickle(raw(20, 1, -5)))), "a b* | c*"},  // a text of less than nothing
        {log(two + record(6, raw(0x7FFFFFFF, 20, 1))), "a b* | c*"},  // a pickle past the end
        {log(two + record(6, pickle(raw(20, 1, 0x7FFFFFFF)))), "a b* | c*"},
        {log(two) + raw(std::uint16_t{0}) + two, "a b* | c*"},                // a size of nothing ends it
        {log(two) + raw(std::uint16_t{900}, std::uint8_t{16}), "a b* | c*"},  // cut off
        {log(many), manyTold},
        {log(one), "a*", closed(40, "a")},  // closed, and opened again
        {log(one), "", closed(60, "a")},    // its profile's last window was closed
        {log(one), "a*", closed(60, "b")},
        {log(one), "a*", "SNSS"},
        {"", invalid},
        {"SNSS", invalid},
        {"SNST" + log(two).substr(4), invalid},
        {log(two).substr(0, log(two).size() - 3), invalid},  // no word that it is whole
        {log(two, 5), unknown},
        {std::string(largestSessionFile + 1, 'S'), invalid},
    };
    for (const auto& each : cases)
        EXPECT_EQ(told(ChromiumSessionLog::read(each.session, each.closedTabs)), each.told) << &each - cases;
}

const std::string state =
    R"({"selectedWindow":1,"windows":[{"selected":3,"sizemode":"normal","tabs":[
       {"index":1,"entries":[{"url":"a","title":"A"},{"url":"z"}]},{"hidden":true,"entries":[{"url":"h"}]},
       {"entries":[],"userTypedValue":"b"}]},{"isPrivate":true,"tabs":[{"entries":[{"url":"p"}]}]},
       {"isPopup":true,"tabs":[{"entries":[{"url":"q"}]}]},{"tabs":[{"index":99,"entries":[{"url":"c"}]}]}],
       "_closedWindows":[{"tabs":[{"entries":[{"url":"y"}]}]}]})";

TEST(FirefoxSession, TellsOfOrdinaryWindowsAndTheirTabs) {
    const struct {
        std::string file, told;
    } cases[] = {{packed(state), "a b* | c*"},
                 {packed(R"({"selectedWindow":0,"windows":[{"tabs":[{"entries":[{"url":"a"}]}]}]})"), ""},
                 {packed(R"({"windows":[7,{"tabs":5},{"tabs":[3,{"entries":"x"}]},{"tabs":[{"index":"1",
                   "entries":[{"url":9},{"url":"a"}]}],"selected":-4,"screenX":"1"}]})"),
                  "* | a*"},
                 {packed(R"({"windows":{}})"), invalid},
                 {packed("[]"), invalid},
                 {packed("{"), invalid},
                 {packed(std::string(std::size_t{50} << 20, '[')), invalid},
                 {packed(state, 0xFFFFFFFF), invalid},
                 {packed(state, static_cast<std::uint32_t>(state.size()) - 1), invalid},
                 {packed(state, static_cast<std::uint32_t>(state.size()) + 1), invalid},
                 {"", invalid},
                 {std::string("mozLz40\0", 8), invalid},
                 {std::string("mozEnc0\0", 8) + "abc", unknown},
                 {std::string("mozLz40\0", 8) + std::string(largestSessionFile, 'x'), invalid}};
    for (const auto& each : cases)
        EXPECT_EQ(told(FirefoxSession::read(each.file)), each.told) << &each - cases;
    const BrowserWindow first = FirefoxSession::read(packed(state))->windows.front();
    EXPECT_EQ(first.tabs.front().title, "A");
    EXPECT_TRUE(first.isPlain && !first.frame);
}

/// Sanitizers look on; what is accepted holds what its type promises.
TEST(BrowserSessions, SurviveEveryCutAndThousandsOfChangedBytes) {
    const std::string whole[] = {log(two + entry(20, 1, "d", std::string_view("\xC9\0", 2))), packed(state)};
    std::mt19937 random(20'260);
    for (const std::string& file : whole) {
        const auto read = [&](const std::string& bytes) {
            const auto session =
                &file == whole ? ChromiumSessionLog::read(bytes, file) : FirefoxSession::read(bytes);
            ASSERT_TRUE(session || !session.error().text.empty());
            if (!session) return;
            for (const BrowserWindow& one : session->windows) ASSERT_LT(one.selected, one.tabs.size());
        };
        for (std::size_t length = 0; length < file.size(); ++length) read(file.substr(0, length));
        for (int round = 0; round < 6'000; ++round) {
            std::string bytes = file;
            for (auto left = 1 + random() % 4; left > 0; --left)
                bytes[random() % bytes.size()] = static_cast<char>(random() % 3 == 0 ? 0xFF : random());
            read(bytes);
        }
    }
}

}  // namespace
}  // namespace quillo
