#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "WindowEngine/restore/WindowMatcher.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo {
namespace {

using samples::Random;
using WindowMatcher::Match;

const std::optional<Url> documentA = Url::parse("file:///tmp/a.txt");
const std::optional<Url> documentB = Url::parse("file:///tmp/b.txt");
const std::optional<Url> respelt = Url::parse("file:///tmp/x/../a.txt");  // document A

TEST(WindowMatcher, NormalizesTitles) {
    const std::pair<const char*, const char*> cases[] = {
        {"Notes — Edited", "notes"},
        {"Notes –EDITED", "notes"},
        {"Notes—Edited", "notes—edited"},  // no blank before the dash
        {"Notes — Edited twice", "notes — edited twice"},
        {"• Notes", "notes"},
        {" • Notes", "• notes"},  // a bullet counts at the very start only
        {"\t Ä \n\u00a0 b ", "ä b"},
        {"x - edited - edited", "x - edited"},
    };
    for (const auto& [title, normalized] : cases)
        EXPECT_EQ(WindowMatcher::normalize(title), normalized) << title;
}

struct Pair {
    WindowSnapshot saved = samples::window({0, 0, 100, 100}, "Notes");
    LiveWindowInfo live = samples::live({500, 500, 100, 100}, "Notes");
};

Pair& documents(Pair& pair, const std::optional<Url>& saved, const std::optional<Url>& live) {
    pair.saved.documentURL = saved, pair.live.documentURL = live;
    return pair;
}

TEST(WindowMatcher, ScoresPairs) {
    struct Case {
        const char* what;
        void (*change)(Pair&);
        double score;
    };
    const Case cases[] = {
        {"all alike", [](Pair&) {}, 1.0},
        {"one titled", [](Pair& p) { p.live.title.reset(); }, 0.4},
        {"neither titled", [](Pair& p) { p.saved.title.reset(), p.live.title.reset(); }, 0.6},
        {"saved title empty", [](Pair& p) { p.saved.title = p.live.title = ""; }, 0.4},
        {"one title holds the other", [](Pair& p) { p.live.title = "My notes, page 2"; }, 0.75},
        {"unsaved changes", [](Pair& p) { p.live.title = "• Notes — Edited"; }, 1.0},
        {"other title", [](Pair& p) { p.live.title = "Mail"; }, 0.39},
        {"other title and size", [](Pair& p) { p.live.title = "Mail", p.live.frame = {0, 0, 200, 200}; },
         0.15},
        {"other subrole", [](Pair& p) { p.live.subrole = "AXDialog"; }, 0.9},
        {"half the size", [](Pair& p) { p.live.frame = {0, 0, 50, 50}; }, 0.875},
        {"saved without a size", [](Pair& p) { p.saved.frame = {}; }, 0.75},
        {"other place in the list", [](Pair& p) { p.live.index = 3; }, 0.95},
        {"one has a document", [](Pair& p) { p.saved.documentURL = documentA; }, 1.0},
        {"other document", [](Pair& p) { documents(p, documentA, documentB); }, 0.0},
        {"same document, other title", [](Pair& p) { documents(p, documentA, respelt).live.title = "Mail"; },
         2.0},
        {"a tab has the live title",
         [](Pair& p) { p.saved.title = "Mail", p.saved.tabs = {{{"Mail", {}}, {"Notes", {}}}}; }, 1.0},
        {"only its other tab has the live document",
         [](Pair& p) {
             documents(p, documentB, documentA).saved.tabs = {{{{}, documentB}, {{}, documentA}}};
         },
         2.0},
    };
    for (const Case& c : cases) {
        Pair pair;
        c.change(pair);
        EXPECT_DOUBLE_EQ(WindowMatcher::evidence(pair.saved, pair.live).score, c.score) << c.what;
    }
}

TEST(WindowMatcher, EvidenceNamesTheTabThatMatched) {
    Pair pair;
    pair.saved.title = "Mail";
    pair.saved.tabs = {{{"Mail", documentB}, {"Notes", documentA}}};
    pair.live.documentURL = documentA;
    pair.live.index = 4;
    const auto evidence = WindowMatcher::evidence(pair.saved, pair.live);
    EXPECT_TRUE(evidence.document && evidence.subrole);
    EXPECT_FALSE(evidence.order || evidence.titleConflict);
    EXPECT_EQ(evidence.title, 0.6);
    EXPECT_EQ(evidence.size, 0.25);
    EXPECT_EQ(evidence.tab, 1);
}

TEST(WindowMatcher, TrustsALoneWindowMoreUnlessItsTitleSaysOtherwise) {
    using enum WindowMatcher::Confidence;
    const auto match = [](void (*change)(Pair&)) {
        Pair pair;
        change(pair);
        return WindowMatcher::match({{pair.saved}}, {{pair.live}});
    };
    const auto untitled = match([](Pair& p) { p.saved.title.reset(), p.live.title.reset(); });
    ASSERT_EQ(untitled.size(), 1u);
    EXPECT_DOUBLE_EQ(untitled[0].score, 0.8);
    EXPECT_EQ(untitled[0].confidence(), high);
    EXPECT_EQ((Match{0, 0, 0.69}).confidence(), medium);
    EXPECT_EQ((Match{0, 0, 0.39}).confidence(), low);
    EXPECT_EQ(match([](Pair& p) { p.live.title = "Mail"; }), (std::vector{Match{0, 0, 0.39}}));
    EXPECT_TRUE(match([](Pair& p) { documents(p, documentA, documentB); }).empty());
}

// Every pair scored by itself, the best of those that are left taken again and again.
std::vector<Match> plainMatch(const std::vector<WindowSnapshot>& saved,
                              const std::vector<LiveWindowInfo>& live) {
    std::vector<Match> pairs;
    for (std::size_t i = 0; i < saved.size(); ++i) {
        for (std::size_t j = 0; j < live.size(); ++j) {
            double score = WindowMatcher::evidence(saved[i], live[j]).score;
            if (saved.size() == 1 && live.size() == 1 && score > 0.39) score += 0.2;
            pairs.push_back({static_cast<std::int64_t>(i), static_cast<std::int64_t>(j), score});
        }
    }
    std::vector<Match> accepted;
    while (!pairs.empty()) {
        const Match best = *std::ranges::max_element(pairs, {}, &Match::score);  // the first of equals
        if (best.score <= 0) break;
        accepted.push_back({best.savedIndex, best.liveIndex, std::min(best.score, 1.0)});
        std::erase_if(pairs, [&](const Match& pair) {
            return pair.savedIndex == best.savedIndex || pair.liveIndex == best.liveIndex;
        });
    }
    std::ranges::sort(accepted, {}, &Match::savedIndex);
    return accepted;
}

/// What a saved and a live window have in common.
template <class Window>
Window some(Random& random, Window window) {
    const std::vector<std::string> titles{"Notes", "Notes — Edited", "notes 2", "Mail", "", "•"};
    window.frame = {0, 0, 100.0 * random.below(4), 100.0 * random.below(4)};
    window.title = random.maybe(random.oneOf(titles));
    window.subrole = random.maybe<std::string>("AXDialog");
    window.documentURL = random.oneOf<std::optional<Url>>({{}, {}, documentA, documentB});
    window.index = random.below(5);
    return window;
}

WindowSnapshot someSaved(Random& random) {
    WindowSnapshot window = some(random, WindowSnapshot());
    if (random.flip()) window.tabs.emplace();
    for (int tab = random.below(4); tab > 0 && window.tabs; --tab) {
        const auto like = some(random, LiveWindowInfo());
        window.tabs->push_back({like.title, like.documentURL});
    }
    return window;
}

TEST(WindowMatcher, PairsLikeThePlainRules) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        Random random(seed);
        std::vector<WindowSnapshot> saved;
        std::vector<LiveWindowInfo> live;
        for (int count = random.below(9); count > 0; --count) saved.push_back(someSaved(random));
        for (int count = random.below(9); count > 0; --count) live.push_back(some(random, LiveWindowInfo()));
        EXPECT_EQ(WindowMatcher::match(saved, live), plainMatch(saved, live)) << "seed " << seed;
    }
}

TEST(WindowMatcher, ThousandsFindTheirTitlesDocumentsAndPlacesAllTheSame) {
    constexpr std::int64_t count = 3000;
    std::vector<WindowSnapshot> saved(count);
    std::vector<LiveWindowInfo> live(count);
    const auto document = [](std::int64_t i) { return Url::file("/d" + std::to_string(i)); };
    for (std::int64_t i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i), mirrored = static_cast<std::size_t>(count - 1 - i);
        saved[at].index = live[at].index = i;
        if (i % 3 == 0) saved[at].title = live[mirrored].title = "Window " + std::to_string(i);
        if (i % 3 == 1) saved[at].documentURL = live[mirrored].documentURL = document(i);
        saved[at].frame = live[at].frame = {0, 0, 100, 100};
    }
    const std::vector<Match> matches = WindowMatcher::match(saved, live);
    ASSERT_EQ(matches.size(), static_cast<std::size_t>(count)) << "nobody is left where windows are";
    for (const Match& match : matches) {
        if (match.savedIndex % 3 < 2) EXPECT_EQ(match.liveIndex, count - 1 - match.savedIndex);
    }
}

}  // namespace
}  // namespace quillo
