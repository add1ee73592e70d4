#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>

#include "WindowEngine/WorkspaceCoding.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using WorkspaceCoding::decode;
using WorkspaceCoding::encode;

const std::string& fullDocument() {
    static const std::string document = encode(samples::full()).value();
    return document;
}

std::string edited(std::string text, std::string_view from, std::string_view to) {
    const auto at = text.find(from);
    if (at == std::string::npos) throw std::logic_error("the document does not hold " + std::string(from));
    return text.replace(at, from.size(), to);
}

TEST(WorkspaceCoding, ReadsBackEveryField) {
    EXPECT_EQ(decode(fullDocument()), samples::full());
}

// The manual's example has every key but `notes`, and is what the writer writes to the byte.
TEST(WorkspaceCoding, TheManualShowsADocumentAsItIsWritten) {
    std::ifstream file(QUILLO_SOURCE_DIR "/docs/file-format.md");
    const std::string manual(std::istreambuf_iterator<char>(file), {});
    const std::size_t begin = manual.find("```json\n") + 8, end = manual.find("```", begin);
    ASSERT_NE(end, std::string::npos);
    const std::string example = manual.substr(begin, end - begin);
    const auto decoded = decode(example);
    ASSERT_TRUE(decoded) << decoded.error().text;
    EXPECT_EQ(encode(*decoded), example);
    const WindowSnapshot& window = decoded->snapshot.applications.at(0).windows.at(0);
    EXPECT_EQ(window.frame, (Rect{120, 60.5, 1100, 800}));
    EXPECT_EQ(window.tabs->at(1).title, "Chapter 2/3 \"Süd\"");
    EXPECT_TRUE(window.isMinimized);
    EXPECT_FALSE(window.isFullscreen);
}

// Random texts never make an identifier of an application whose windows are folded, so nothing may change.
TEST(WorkspaceCoding, EncodingIsStableUnderDecoding) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        const Workspace workspace = samples::RandomRecords(seed).workspace();
        const std::string document = encode(workspace).value();
        const auto decoded = decode(document);
        ASSERT_TRUE(decoded) << "seed " << seed << ": " << decoded.error().text;
        EXPECT_EQ(*decoded, workspace) << "seed " << seed;
        EXPECT_EQ(encode(*decoded), document) << "seed " << seed;
    }
}

TEST(WorkspaceCoding, NumbersTakeTheirShortestForm) {
    const std::pair<double, const char*> cases[] = {{2.0, "2"},
                                                    {-0.0, "0"},
                                                    {0.1, "0.1"},
                                                    {100000, "100000"},
                                                    {1e16, "10000000000000000"},
                                                    {1e17, "1e+17"},
                                                    {-5e-324, "-5e-324"},
                                                    {1.7976931348623157e308, "1.7976931348623157e+308"}};
    for (const auto& [value, expected] : cases) {
        Workspace workspace = samples::full();
        workspace.snapshot.displays[0].scale = value;
        const std::string document = encode(workspace).value();
        EXPECT_NE(document.find("\"scale\": " + std::string(expected) + ","), std::string::npos) << expected;
        EXPECT_EQ(decode(document)->snapshot.displays[0].scale, value);
    }
}

TEST(WorkspaceCoding, ANumberThatIsNotFiniteIsRefusedByName) {
    Workspace workspace = samples::full();
    workspace.snapshot.applications[0].windows[1].frame.height = std::numeric_limits<double>::infinity();
    EXPECT_EQ(encode(workspace).error().text,
              "snapshot.applications[0].windows[1].frame: not a finite number");
    EXPECT_EQ(encode(workspace).error().kind, ErrorKind::invalidData);
    WorkspaceSnapshot snapshot = samples::full().snapshot;
    snapshot.displays[0].scale = std::nan("");
    EXPECT_EQ(encode(snapshot).error().text, "displays[0].scale: not a finite number");
    EXPECT_EQ(encode(workspace.snapshot.applications[0].windows[1]).error().text,
              "frame: not a finite number");
}

TEST(WorkspaceCoding, DatesAreFlooredAndBrokenTextIsMadeReadable) {
    Workspace workspace = samples::full();
    workspace.updatedAt += std::chrono::milliseconds{999};
    workspace.name = "half \xf0\x9f title";
    const auto decoded = decode(encode(workspace).value());
    EXPECT_EQ(decoded->updatedAt, samples::full().updatedAt);
    EXPECT_EQ(decoded->name, "half \xef\xbf\xbd title");
}

struct Accepted {
    const char* from;
    const char* to;
};

TEST(WorkspaceCoding, ToleratesWhatMeansTheSame) {
    const Accepted cases[] = {
        {"https:\\/\\/a.example\\/x", "https://a.example/x"},  // plain slashes
        {"\"schemaVersion\": 2", "\"schemaVersion\" : 2.0"},
        {"\"index\": -3", "\"index\": -3e0"},
        {"6F1C2A9E-0B7D", "6f1c2a9e-0b7d"},
        {"\"color\"", "\"colour\": {\"schemaVersion\": [null]}, \"color\""},  // a key we do not know
        {"{}", "{\"title\": null, \"documentURL\": null}"},
        {"\"scale\": 2", "\"scale\": 2.000"},
        {"\"name\": \"Work\",", "\"name\": \"\\u0057ork\","},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(decode(edited(fullDocument(), c.from, c.to)), samples::full()) << c.to;
    }
}

TEST(WorkspaceCoding, NullOptionalsAreAbsentAndAreNotWrittenBack) {
    const std::string document =
        edited(fullDocument(), "\"notes\": [\n      \"a note\"\n    ]", "\"notes\": null");
    const auto decoded = decode(document);
    ASSERT_TRUE(decoded) << decoded.error().text;
    EXPECT_EQ(decoded->snapshot.notes, std::nullopt);
    EXPECT_EQ(encode(*decoded)->find("notes"), std::string::npos);
}

TEST(WorkspaceCoding, VersionOneIsMigrated) {
    const std::string first = edited(fullDocument(), "\"schemaVersion\": 2", "\"schemaVersion\": 1");
    EXPECT_EQ(decode(first), samples::full());  // desktops that are there stay
    const auto without = decode(edited(first, "\"desktops\"", "\"formerDesktops\""));
    ASSERT_TRUE(without);
    EXPECT_EQ(without->schemaVersion, 2);
    EXPECT_EQ(without->snapshot.desktops, std::vector<DesktopSnapshot>());
    const auto second = decode(edited(fullDocument(), "\"desktops\"", "\"formerDesktops\""));
    EXPECT_EQ(second->snapshot.desktops, std::nullopt);
}

TEST(WorkspaceCoding, WindowsThatAreTabsOfOneAreFolded) {
    Workspace workspace = samples::full();
    ApplicationSnapshot& application = workspace.snapshot.applications[0];
    application.bundleIdentifier = "com.apple.Terminal";
    WindowSnapshot window;
    window.subrole = "AXStandardWindow";
    window.frame = {10, 10, 500, 400};
    application.windows = {window, window};
    application.windows[0].title = "one";
    application.windows[1].title = "two";
    const auto decoded = decode(encode(workspace).value());
    ASSERT_EQ(decoded->snapshot.applications[0].windows.size(), 1u);
    EXPECT_EQ(decoded->snapshot.applications[0].windows[0].tabs->at(1).title, "two");
    EXPECT_EQ(decode(encode(*decoded).value()), decoded);
}

TEST(WorkspaceCoding, UnknownVersionsAreNamedBeforeAnythingElse) {
    for (const char* version : {"3", "0", "-1", "9223372036854775807"}) {
        const std::string expected =
            "Unsupported workspace schema v" + std::string(version) + "; this build supports v2.";
        const std::string strange = "{\"schemaVersion\": " + std::string(version) + ", \"name\": 7}";
        for (const std::string& document :
             {edited(fullDocument(), "Version\": 2", "Version\": " + std::string(version)), strange}) {
            const auto decoded = decode(document);
            ASSERT_FALSE(decoded);
            EXPECT_EQ(decoded.error(), (Error{ErrorKind::unsupportedSchema, expected, 0}));
        }
    }
}

struct Refused {
    const char* from;
    const char* to;
    const char* error;
};

TEST(WorkspaceCoding, NamesTheFieldThatIsWrong) {
    const char* const window = "snapshot.applications[0].windows[0]";
    const std::string deep(70, '[');
    const Refused cases[] = {
        {"26:53Z", "26:53.120Z", "createdAt: expected a date such as 2025-03-14T09:26:53Z"},
        {"\"2025-03-14T09:26:50Z\"", "1741944410", "snapshot.capturedAt: expected a date"},
        {"[[120, 60.5], [1100, 800]]", "{\"x\": 1, \"y\": 2, \"width\": 3, \"height\": 4}",
         "frame: expected [[x, y], [width, height]]"},
        {"[[120, 60.5], [1100, 800]]", "[[120, 60.5], [1100]]", ".frame: expected [["},
        {"[[120, 60.5], [1100, 800]]", "[[120, 60.5], [1100, 800], []]", ".frame: expected [["},
        {"[[120, 60.5], [1100, 800]]", "[[\"120\", 60.5], [1100, 800]]", ".frame: expected [["},
        {"[[120, 60.5], [1100, 800]]", "null", ".frame: expected [["},
        {"\"frame\": [[120", "\"Frame\": [[120", ".frame: missing"},
        {"\"name\": \"Work\"", "\"name\": null", "name: expected text"},
        {"\"name\": \"Work\"", "\"name\": \"Work\", \"name\": \"Play\"", "name: given twice"},
        {"\"name\": \"Work\"", "\"name\": \"\\udc00\"", "name: "},
        {"6F1C2A9E-", "6F1C2A9E", "id: expected an identifier"},
        {"\"hide\"", "\"Hide\"", "cleanSlate: expected \"keep\", \"hide\" or \"quit\""},
        {"\"schemaVersion\": 2", "\"schemaVersion\": \"2\"", "schemaVersion: expected a whole number"},
        {"\"schemaVersion\": 2", "\"schemaVersion\": 2.5", "schemaVersion: expected a whole number"},
        {"\"schemaVersion\"", "\"version\"", "schemaVersion: missing"},
        {"\"index\": -3", "\"index\": 9223372036854775808", ".windows[0].index: expected a whole number"},
        {"\"index\": -3", "\"index\": 1e19", ".windows[0].index: expected a whole number"},
        {"\"index\": -3", "\"index\": 99999999999999999999", ".windows[0].index: not valid JSON in line"},
        {"\"scale\": 2", "\"scale\": 1e999", "snapshot.displays[0].scale: not valid JSON in line"},
        {"\"scale\": 2", "\"scale\": NaN", "snapshot.displays[0].scale: not valid JSON in line"},
        {"4711", "4294967296",
         "context.windows[0].sourceWindowID: expected a whole number from 0 to 4294967295"},
        {"4711", "-1", "context.windows[0].sourceWindowID: expected a whole number from 0"},
        {"https:\\/\\/a.example", "a.example", "context.windows[0].urls[0]: expected an absolute address"},
        {"x|y", "x y", "urls[0]: expected an absolute address"},
        {"\"isMinimized\": true", "\"isMinimized\": 1", ".isMinimized: expected true or false"},
        {"\"urls\": []", "\"urls\": {}", "context.windows[1].urls: expected a list"},
        {"{}", "[]", "windows[0].tabs[1]: expected an object"},
        {"\"a note\"", "\"a note\",", "snapshot.notes[1]: not valid JSON in line"},
        {"\"a note\"", "\"a \xff note\"", "snapshot.notes[0]: not valid JSON in line"},
        {"\"a note\"", "\"a \n note\"", "snapshot.notes[0]: not valid JSON in line"},
        {"\"a note\"", deep.c_str(), "snapshot.notes[0][0]"},
        {"\"a note\"\n    ]\n  },", "\"a note\"\n    ]\n  }", "snapshot: not valid JSON in line"},
        {"\"color\":", "\"color\"", "color: not valid JSON in line 3: expected :"},
        {"\"color\":", "color:", "not valid JSON in line 3: expected a key"},
    };
    for (const auto& c : cases) {
        const auto decoded = decode(edited(fullDocument(), c.from, c.to));
        ASSERT_FALSE(decoded) << c.to;
        EXPECT_NE(decoded.error().text.find(c.error), std::string::npos)
            << c.to << " gave: " << decoded.error().text;
        EXPECT_EQ(decoded.error().kind, ErrorKind::invalidData);
        EXPECT_EQ(decoded.error().text.find('\n'), std::string::npos);
    }
    const auto exact = decode(edited(fullDocument(), "[[120, 60.5], [1100, 800]]", "7"));
    EXPECT_EQ(exact.error().text, std::string(window) + ".frame: expected [[x, y], [width, height]]");
}

TEST(WorkspaceCoding, RefusesWhatIsNoDocumentAtAll) {
    const std::pair<std::string, const char*> cases[] = {
        {"", "the document: not valid JSON in line 1: the document ends here"},
        {"  \n ", "the document: not valid JSON in line 2: the document ends here"},
        {"[]", "the document: expected an object"},
        {"7", "the document: expected an object"},
        {"{}", "color: missing"},
        {"hello", "the document: not valid JSON in line 1: expected a value"},
        {fullDocument() + "x", "the document: not valid JSON in line"},
        {fullDocument() + fullDocument(), "something follows the end of the document"},
        {"\xef\xbb\xbf" + fullDocument(), "the document: not valid JSON in line 1"},
        {std::string(100'000, '['), "nested too deeply"},
        {"{\"a\x1b[2J\x9b\": ", "a"},
    };
    for (const auto& [document, error] : cases) {
        const auto decoded = decode(document);
        ASSERT_FALSE(decoded) << document.substr(0, 40);
        EXPECT_NE(decoded.error().text.find(error), std::string::npos) << decoded.error().text;
        EXPECT_EQ(decoded.error().text.find('\x1b'), std::string::npos);
        EXPECT_EQ(decoded.error().text.find('\x9b'), std::string::npos);
    }
}

TEST(WorkspaceCoding, DepthIsLimitedAlikeInUnknownFields) {
    const auto nested = [](std::size_t depth) {
        return edited(fullDocument(), "\"color\"",
                      "\"x\": " + std::string(depth, '[') + std::string(depth, ']') + ", \"color\"");
    };
    EXPECT_EQ(decode(nested(40)), samples::full());
    for (std::size_t depth = 60; depth < 70; ++depth) {
        const auto decoded = decode(nested(depth));
        if (!decoded)
            EXPECT_NE(decoded.error().text.find("nested too deeply"), std::string::npos)
                << depth << decoded.error().text;
    }
    EXPECT_FALSE(decode(nested(70)));
}

TEST(WorkspaceCoding, EveryTruncationIsAnErrorThatNamesALine) {
    const std::string& document = fullDocument();
    for (std::size_t length = 0; length + 2 < document.size(); ++length) {
        // A copy of its own, so that reading past the end is seen.
        const std::vector<char> cut(document.begin(), document.begin() + static_cast<std::ptrdiff_t>(length));
        const auto decoded = decode({cut.data(), cut.size()});
        ASSERT_FALSE(decoded) << length;
        EXPECT_NE(decoded.error().text.find("not valid JSON in line"), std::string::npos)
            << decoded.error().text;
    }
}

TEST(WorkspaceCoding, DamagedBytesNeverCrashAndWhatIsReadIsStable) {
    samples::RandomRecords random(7);
    for (int round = 0; round < 3000; ++round) {
        std::string document = fullDocument();
        for (std::size_t i = 0; i <= random.below(3); ++i) {
            document[random.below(document.size())] = static_cast<char>(random.below(256));
        }
        const auto decoded = decode(document);
        if (!decoded) {
            EXPECT_FALSE(decoded.error().text.empty());
            continue;
        }
        EXPECT_EQ(decode(encode(*decoded).value()), decoded) << round;
    }
}

}  // namespace
}  // namespace quillo
