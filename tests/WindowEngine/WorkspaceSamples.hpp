// Workspaces for tests: one with every field set, and random ones by seed.
#pragma once
#include <random>

#include "WindowEngine/Workspace.hpp"

namespace quillo::samples {

inline Url url(std::string_view text) {
    return Url::parse(text).value();
}

inline Workspace full() {
    const DesktopSnapshot desktop{.displayID = "D1", .index = 1, .uuid = "S/1"};
    WindowSnapshot window;
    window.tabs = {{.title = "a \"tab\"", .documentURL = url("file:///tmp/a%20b.txt")}, {}};
    window.title = "Süd \\ Nord\n\x01";
    window.subrole = "AXStandardWindow";
    window.documentURL = url("file:///tmp/a");
    window.frame = {120, 60.5, 1100, 800};
    window.displayID = "D1";
    window.desktop = desktop;
    window.normalizedFrame = {0.1, -0.0, 1.0 / 3, 1e-9};
    window.isMinimized = true;
    window.fullscreenConfirmed = false;
    window.index = -3;
    ApplicationSnapshot application{
        .bundleIdentifier = "com.apple.Safari",
        .name = "Safari",
        .applicationURL = url("file:///Applications/Safari.app/"),
        .windows = {window, WindowSnapshot{}},
        .context = AppContext{"safari", {{0, {url("https://a.example/x|y^z")}, 4711}, {}}}};
    WorkspaceSnapshot snapshot{.capturedAt = *parseInstant("2025-03-14T09:26:50Z"),
                               .displays = {{"D1", {0, 0, 1512, 982}, {0, 33, 1512, 949}, 2, true}},
                               .desktops = {{desktop, {.displayID = "D1", .index = 2, .uuid = {}}}},
                               .notes = {{"a note"}},
                               .applications = {application}};
    Workspace workspace = Workspace::create(*Uuid::parse("6f1c2a9e-0b7d-4e51-9c3a-2d4b8e7f1a60"), "Work",
                                            "clock", "teal", snapshot, *parseInstant("2025-03-14T09:26:53Z"));
    workspace.lastRestoredAt = parseInstant("2025-03-15T08:02:11Z");
    workspace.cleanSlate = CleanSlateMode::hide;
    return workspace;
}

/// A small workspace; `content` tells two versions of it apart.
inline Workspace named(Uuid id, std::string name, std::string content = {},
                       std::int64_t updatedSeconds = 1000) {
    Workspace workspace = Workspace::create(id, std::move(name), "square", "sky", {},
                                            Instant{std::chrono::seconds{updatedSeconds}});
    workspace.snapshot.notes = {{std::move(content)}};
    return workspace;
}

class RandomRecords {
  public:
    explicit RandomRecords(std::uint64_t seed) : engine_(seed) {}

    bool coin() { return engine_() % 2 == 0; }
    std::size_t below(std::size_t limit) { return engine_() % limit; }
    std::int64_t integer() { return static_cast<std::int64_t>(engine_()) >> below(64); }
    double number() {
        const double scales[] = {1, 0.1, 1e-9, 1e9, 1e300, -1, 0};
        return static_cast<double>(integer() % 100000) / 7 * scales[below(7)];
    }
    Rect rect() { return {number(), number(), number(), number()}; }
    Instant instant() {
        return Instant{std::chrono::seconds{static_cast<std::int64_t>(below(4'000'000'000))}};
    }
    std::string text() {
        static const char* const pieces[] = {"a", "/",  "\"", "\\",     "\n", "\x01", "\x7f",
                                             "é", "漢", "😀", "\u2028", " ",  "]"};
        std::string text;
        for (std::size_t i = below(8); i > 0; --i) text += pieces[below(13)];
        return text;
    }
    Url address() { return url("https://host" + std::to_string(below(100)) + ".example/|^/é"); }

    template <class Make>
    auto maybe(Make make) {
        return coin() ? std::optional(make()) : std::nullopt;
    }
    template <class Make>
    auto list(std::size_t limit, Make make) {
        std::vector<decltype(make())> entries;
        for (std::size_t i = below(limit); i > 0; --i) entries.push_back(make());
        return entries;
    }

    DesktopSnapshot desktop() {
        return {text(), integer(), maybe([&] { return text(); })};
    }
    WindowSnapshot window() {
        const auto words = [&] { return text(); };
        const auto place = [&] { return address(); };
        const auto tab = [&] { return TabSnapshot{maybe(words), maybe(place)}; };
        return {.tabs = maybe([&] { return list(3, tab); }),
                .title = maybe(words),
                .subrole = maybe(words),
                .documentURL = maybe(place),
                .frame = rect(),
                .displayID = maybe(words),
                .desktop = maybe([&] { return desktop(); }),
                .normalizedFrame = rect(),
                .isMinimized = coin(),
                .isFullscreen = coin(),
                .fullscreenConfirmed = maybe([&] { return coin(); }),
                .index = integer()};
    }
    ApplicationSnapshot application() {
        const auto place = [&] { return address(); };
        const auto contextWindow = [&] {
            return ContextWindow{maybe([&] { return integer(); }), list(4, place),
                                 maybe([&] { return static_cast<std::uint32_t>(integer()); })};
        };
        return {text(), text(), maybe(place), list(4, [&] { return window(); }),
                maybe([&] { return AppContext{text(), list(3, contextWindow)}; })};
    }
    Workspace workspace() {
        Workspace made = named(Uuid::random(), text());
        made.lastRestoredAt = maybe([&] { return instant(); });
        made.cleanSlate = maybe([&] { return allCleanSlateModes[below(3)]; });
        made.snapshot = {
            instant(), list(3, [&] { return DisplaySnapshot{text(), rect(), rect(), number(), coin()}; }),
            maybe([&] { return list(3, [&] { return desktop(); }); }),
            maybe([&] { return list(3, [&] { return text(); }); }), list(4, [&] { return application(); })};
        return made;
    }

  private:
    std::mt19937_64 engine_;
};

}  // namespace quillo::samples
