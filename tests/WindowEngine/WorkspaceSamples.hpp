// Workspaces for tests: the manual's example, which has every key but `notes`, and random ones by seed.
#pragma once
#include <fstream>
#include <functional>
#include <iterator>
#include <random>

#include "WindowEngine/WorkspaceCoding.hpp"

namespace quillo::samples {

inline Url url(std::string_view text) {
    return Url::parse(text).value();
}

inline const std::string& exampleDocument() {
    static const std::string document = [] {
        std::ifstream file(QUILLO_SOURCE_DIR "/docs/file-format.md");
        const std::string manual(std::istreambuf_iterator<char>(file), {});
        const std::size_t begin = manual.find("```json\n") + 8;
        return manual.substr(begin, manual.find("```", begin) - begin);
    }();
    return document;
}
inline Workspace example() {
    return WorkspaceCoding::decode(exampleDocument()).value();
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
    using Self = RandomRecords;

  public:
    explicit RandomRecords(std::uint64_t seed) : engine_(seed) {}

    std::size_t below(std::size_t limit) { return engine_() % limit; }

  private:
    bool coin() { return below(2) == 0; }
    std::int64_t integer() { return static_cast<std::int64_t>(engine_()) >> below(64); }
    std::uint32_t handle() { return static_cast<std::uint32_t>(integer()); }
    double number() {
        const double scales[] = {1, 0.1, 1e-9, 1e9, 1e300, -1, 0};
        return static_cast<double>(integer() % 100000) / 7 * scales[below(7)];
    }
    Rect rect() { return {number(), number(), number(), number()}; }
    Instant instant() { return Instant{std::chrono::seconds{below(4'000'000'000)}}; }
    std::string text() {
        const char* const pieces[] = {"a",    "/", "\"", "\\", "\n",     "\x01",
                                      "\x7f", "é", "漢", "😀", "\u2028", "]"};
        std::string text;
        for (std::size_t i = below(8); i > 0; --i) text += pieces[below(std::size(pieces))];
        return text;
    }
    Url address() { return url("https://host" + std::to_string(below(100)) + ".example/|^/é"); }

    template <class... Arguments>
    auto maybe(auto make, Arguments... arguments) {
        return coin() ? std::optional(std::invoke(make, this, arguments...)) : std::nullopt;
    }
    template <class Entry>
    std::vector<Entry> list(Entry (Self::*make)()) {
        std::vector<Entry> entries;
        for (std::size_t i = below(4); i > 0; --i) entries.push_back((this->*make)());
        return entries;
    }

    DisplaySnapshot display() { return {text(), rect(), rect(), number(), coin()}; }
    DesktopSnapshot desktop() { return {text(), integer(), maybe(&Self::text)}; }
    TabSnapshot tab() { return {maybe(&Self::text), maybe(&Self::address)}; }
    WindowSnapshot window() {
        return {maybe(&Self::list<TabSnapshot>, &Self::tab),
                maybe(&Self::text),
                maybe(&Self::text),
                maybe(&Self::address),
                rect(),
                maybe(&Self::text),
                maybe(&Self::desktop),
                rect(),
                coin(),
                coin(),
                maybe(&Self::coin),
                integer()};
    }
    ContextWindow contextWindow() {
        return {maybe(&Self::integer), list(&Self::address), maybe(&Self::handle)};
    }
    AppContext context() { return {text(), list(&Self::contextWindow)}; }
    ApplicationSnapshot application() {
        return {text(), text(), maybe(&Self::address), list(&Self::window), maybe(&Self::context)};
    }

    std::mt19937_64 engine_;

  public:
    Workspace workspace() {
        Workspace made = named(Uuid::random(), text());
        made.lastRestoredAt = maybe(&Self::instant);
        if (coin()) made.cleanSlate = allCleanSlateModes[below(3)];
        made.snapshot = {instant(), list(&Self::display), maybe(&Self::list<DesktopSnapshot>, &Self::desktop),
                         maybe(&Self::list<std::string>, &Self::text), list(&Self::application)};
        return made;
    }
};

}  // namespace quillo::samples
