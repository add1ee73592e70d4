#include <gtest/gtest.h>

#include <limits>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using samples::example;
using samples::exampleDocument;
using WorkspaceCoding::decode;
using WorkspaceCoding::encode;

std::string edited(std::string_view from, std::string_view to, std::string text = exampleDocument()) {
    const auto at = text.find(from);
    if (at == std::string::npos) throw std::logic_error("the document does not hold " + std::string(from));
    return text.replace(at, from.size(), to);
}

/// One clear line that contains `error` and cannot drive a terminal.
void expectRefused(std::string_view document, std::string_view error) {
    const auto decoded = decode(document);
    ASSERT_FALSE(decoded) << error;
    EXPECT_NE(decoded.error().text.find(error), std::string::npos)
        << error << " was: " << decoded.error().text;
    EXPECT_EQ(decoded.error().text.find_first_of("\n\x1b\x9b"), std::string::npos) << decoded.error().text;
    EXPECT_EQ(decoded.error().kind, ErrorKind::invalidData);
}

TEST(WorkspaceCoding, TheManualShowsADocumentAsItIsWritten) {
    EXPECT_EQ(encode(example()), exampleDocument());
    const WindowSnapshot window = example().snapshot.applications.at(0).windows.at(0);
    EXPECT_EQ(window.frame, (Rect{120, 60.5, 1100, 800}));
    EXPECT_EQ(window.tabs->at(1).title, "Chapter 2/3 \"Süd\"");
    EXPECT_TRUE(window.isMinimized && !window.isFullscreen);
}

// Random texts never make an identifier of an application whose windows are folded, so nothing may change.
TEST(WorkspaceCoding, EncodingIsStableUnderDecoding) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        const Workspace workspace = samples::RandomRecords(seed).workspace();
        const auto decoded = decode(encode(workspace).value());
        ASSERT_TRUE(decoded) << "seed " << seed << ": " << decoded.error().text;
        EXPECT_EQ(*decoded, workspace) << "seed " << seed;
        EXPECT_EQ(encode(*decoded), encode(workspace)) << "seed " << seed;
    }
}

TEST(WorkspaceCoding, NumbersTakeTheirShortestForm) {
    const std::pair<double, std::string> cases[] = {
        {2.0, "2"},           {-0.0, "0"},
        {0.1, "0.1"},         {1e16, "10000000000000000"},
        {1e5, "100000"},      {1e17, "1e+17"},
        {-5e-324, "-5e-324"}, {1.7976931348623157e308, "1.7976931348623157e+308"}};
    for (const auto& [value, expected] : cases) {
        Workspace workspace = example();
        workspace.snapshot.displays[0].scale = value;
        EXPECT_EQ(encode(workspace), edited("\"scale\": 1", "\"scale\": " + expected));
        EXPECT_EQ(decode(encode(workspace).value()), workspace);
    }
}

TEST(WorkspaceCoding, WhatCannotBeWrittenIsRefusedByNameOrMadeReadable) {
    Workspace workspace = example();
    workspace.updatedAt += std::chrono::milliseconds{999};
    workspace.name = "half \xf0\x9f title";
    EXPECT_EQ(encode(workspace), edited("\"Work\"", "\"half \xef\xbf\xbd title\""));
    WindowSnapshot& window = workspace.snapshot.applications[0].windows[0];
    window.frame.height = std::numeric_limits<double>::infinity();
    EXPECT_EQ(encode(workspace).error().kind, ErrorKind::invalidData);
    EXPECT_EQ(encode(workspace).error().text,
              "snapshot.applications[0].windows[0].frame: not a finite number");
    EXPECT_EQ(encode(workspace.snapshot).error().text,
              "applications[0].windows[0].frame: not a finite number");
    EXPECT_EQ(encode(window).error().text, "frame: not a finite number");
}

std::string nested(std::size_t depth) {
    return "\"x\": " + std::string(depth, '[') + std::string(depth, ']') + ", \"color\"";
}

TEST(WorkspaceCoding, ToleratesWhatMeansTheSame) {
    const std::pair<std::string, std::string> cases[] = {
        {R"(https:\/\/www.example.org\/)", "https://www.example.org/"},
        {R"("schemaVersion": 2)", R"("schemaVersion" : 2.0)"},
        {R"("schemaVersion": 2)", R"("schemaVersion": 1)"},  // desktops that are there stay
        {R"("scale": 1)", R"("scale": 1.00e0)"},
        {"6F1C2A9E-0B7D", "6f1c2a9e-0b7d"},
        {R"("color")", R"("colour": {"schemaVersion": [null]}, "color")"},  // a key we do not know
        {R"("color")", R"("big": [123456789012345678901234, -1e400, "\"1e400"], "color")"},
        {R"("color")", nested(40)},
        {R"("desktops")", R"("notes": null, "desktops")"},
        {R"("name": "Work")", R"("name": "\u0057ork")"},
    };
    for (const auto& [from, to] : cases) EXPECT_EQ(decode(edited(from, to)), example()) << to;
}

TEST(WorkspaceCoding, VersionOneIsMigrated) {
    const std::string without = edited("\"desktops\"", "\"formerDesktops\"");
    EXPECT_EQ(decode(without)->snapshot.desktops, std::nullopt);
    const auto migrated = decode(edited("Version\": 2", "Version\": 1", without));
    EXPECT_EQ(migrated->schemaVersion, 2);
    EXPECT_EQ(migrated->snapshot.desktops, std::vector<DesktopSnapshot>());
}

TEST(WorkspaceCoding, WindowsThatAreTabsOfOneAreFolded) {
    Workspace workspace = example();
    ApplicationSnapshot& application = workspace.snapshot.applications[0];
    application.bundleIdentifier = "com.apple.Terminal";
    application.applicationURL = samples::url("file:///System/Applications/Utilities/Terminal.app/");
    application.windows.push_back(application.windows[0]);
    const auto decoded = decode(encode(workspace).value());
    ASSERT_EQ(decoded->snapshot.applications[0].windows.size(), 1u);
    EXPECT_EQ(decoded->snapshot.applications[0].windows[0].tabs->size(), 4u);
    application.applicationURL = samples::url("file:///usr/share/applications/terminal.desktop");
    EXPECT_EQ(decode(encode(workspace).value())->snapshot, workspace.snapshot)
        << "windows where they are menu entries";
}

TEST(WorkspaceCoding, UnknownVersionsAreNamedBeforeAnythingElse) {
    for (const std::string version : {"3", "0", "-1", "9223372036854775807"}) {
        const std::string text = "Unsupported workspace schema v" + version + "; this build supports v2.";
        const Error expected{ErrorKind::unsupportedSchema, text, 0};
        EXPECT_EQ(decode(edited("Version\": 2", "Version\": " + version)).error(), expected);
        EXPECT_EQ(decode("{\"schemaVersion\": " + version + ", \"name\": 7}").error(), expected);
    }
}

TEST(WorkspaceCoding, NamesTheFieldThatIsWrong) {
    const std::string frame = "[[120, 60.5], [1100, 800]]", name = R"("name": "Work")",
                      scale = R"("scale": 1)", version = R"("schemaVersion": 2)", index = R"("index": 0)",
                      list = R"("desktops")",
                      noRect =
                          "snapshot.applications[0].windows[0].frame: expected [[x, y], [width, height]]";
    std::string many;
    for (int i = 0; i < WorkspaceCoding::mostEntries; ++i) many += R"(,"")";
    const struct {
        std::string from, to, error;
    } cases[] = {
        {"26:53Z", "26:53.120Z", "createdAt: expected a date such as 2025-03-14T09:26:53Z"},
        {R"("2025-03-14T09:26:50Z")", "1741944410", "snapshot.capturedAt: expected a date"},
        {frame, R"({"x": 1, "y": 2, "width": 3, "height": 4})", noRect},
        {frame, "[[120, 60.5], [1100]]", noRect},
        {frame, "[[120, 60.5], [1100, 800], []]", noRect},
        {frame, "null", noRect},
        {R"("frame": [[120)", R"("Frame": [[120)", "windows[0].frame: missing"},
        {name, R"("name": null)", "name: expected text"},
        {name, R"("name": "Work", "name": "Play")", "name: given twice"},
        {name, R"("name": "\udc00")", "name: "},
        {"6F1C2A9E-", "6F1C2A9E", "id: expected an identifier"},
        {R"("hide")", R"("Hide")", R"(cleanSlate: expected "keep", "hide" or "quit")"},
        {version, R"("schemaVersion": 2.5)", "schemaVersion: expected a whole number"},
        {R"("schemaVersion")", R"("version")", "schemaVersion: missing"},
        {index, R"("index": 9223372036854775808)", "windows[0].index: expected a whole number"},
        {index, R"("index": 99999999999999999999)", "windows[0].index: expected a whole number"},
        {scale, R"("scale": 1e999)", "snapshot.displays[0].scale: expected a number"},
        {scale, R"("scale": 01e999)", "snapshot.displays[0].scale: not valid JSON in line"},
        {"4711", "4294967296", "windows[0].sourceWindowID: expected a whole number from 0 to 4294967295"},
        {"4711", "-1", "context.windows[0].sourceWindowID: expected a whole number from 0"},
        {R"(https:\/\/)", "", "context.windows[0].urls[0]: expected an absolute address"},
        {R"("isMinimized": true)", R"("isMinimized": 1)", "windows[0].isMinimized: expected true or false"},
        {list, R"("notes": {}, "desktops")", "snapshot.notes: expected a list"},
        {R"("desktops": [)", R"("desktops": [[], )", "snapshot.desktops[0]: expected an object"},
        {list, R"("notes": ["a",], "desktops")", "snapshot.notes[1]: not valid JSON in line"},
        {list, "\"notes\": [\"a \xff note\"], \"desktops\"", "snapshot.notes[0]: not valid JSON in line"},
        {list, R"("notes": ["")" + many + R"(], "desktops")",
         "snapshot.notes: with it the lists have more than 200,000 entries"},
        {R"("color")", nested(70), "nested too deeply"},
        {"\n  },\n  \"updatedAt", "\n  }\n  \"updatedAt", "snapshot: not valid JSON in line"},
        {R"("color":)", R"("color")", "color: not valid JSON in line 3: expected :"},
        {R"("color":)", "color:", "not valid JSON in line 3: expected a key"},
    };
    for (const auto& c : cases) expectRefused(edited(c.from, c.to), c.error);
}

TEST(WorkspaceCoding, RefusesWhatIsNoDocumentAtAll) {
    const std::pair<std::string, const char*> cases[] = {
        {"", "the document: not valid JSON in line 1: the document ends here"},
        {"  \n ", "the document: not valid JSON in line 2: the document ends here"},
        {"[]", "the document: expected an object"},
        {"7", "the document: expected an object"},
        {"{}", "color: missing"},
        {"hello", "the document: not valid JSON in line 1: expected a value"},
        {exampleDocument() + exampleDocument(), "something follows the end of the document"},
        {"\xef\xbb\xbf" + exampleDocument(), "the document: not valid JSON in line 1"},
        {std::string(100'000, '['), "[0][0]…: not valid JSON in line 1: nested too deeply"},
        {"{\"a\x1b[2J\x9b\": ", "a"},
        {std::string(WorkspaceCoding::mostBytes + 1, ' '), "the document: larger than 32 MB"},
    };
    for (const auto& [document, error] : cases) expectRefused(document, error);
}

TEST(WorkspaceCoding, EveryTruncationIsAnErrorThatNamesALine) {
    for (std::size_t length = 0; length + 2 < exampleDocument().size(); ++length) {
        const std::vector<char> cut(exampleDocument().data(), exampleDocument().data() + length);
        expectRefused({cut.data(), cut.size()}, "not valid JSON in line");  // a copy: reading past it is seen
    }
}

TEST(WorkspaceCoding, DamagedBytesNeverCrashAndWhatIsReadIsStable) {
    samples::RandomRecords random(7);
    for (int round = 0; round < 3000; ++round) {
        std::string document = exampleDocument();
        for (std::size_t i = 0; i <= random.below(3); ++i)
            document[random.below(document.size())] = static_cast<char>(random.below(256));
        const auto decoded = decode(document);
        if (decoded) EXPECT_EQ(decode(encode(*decoded).value()), decoded) << round;
        if (!decoded) EXPECT_FALSE(decoded.error().text.empty());
    }
}

}  // namespace
}  // namespace quillo
