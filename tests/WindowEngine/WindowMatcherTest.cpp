#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "WindowEngine/WindowMatcher.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo {
namespace {

using samples::Random;
using WindowMatcher::Match;

const std::optional<Url> documentA = Url::parse("file:///tmp/a.txt");
const std::optional<Url> documentB = Url::parse("file:///tmp/b.txt");

TEST(WindowMatcher, NormalizesTitles) {
    struct Case {
        const char *title, *normalized;
    };
    const Case cases[] = {
        {"Notes — Edited", "notes"},
        {"Notes – edited", "notes"},
        {"Notes -EDITED", "notes"},
        {"Notes—Edited", "notes—edited"},  // no blank before the dash
        {"Notes — Edited twice", "notes — edited twice"},
        {"• Notes", "notes"},
        {"•", ""},
        {" • Notes", "• notes"},  // a bullet counts at the very start only
        {"\t a \n\u00a0 b ", "a b"},
        {"ÄRGER Straße", "ärger straße"},
        {"x - edited - edited", "x - edited"},
        {"", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(WindowMatcher::normalize(c.title), c.normalized) << c.title;
}

struct Pair {
    WindowSnapshot saved = samples::window({0, 0, 100, 100}, "Notes");
    LiveWindowInfo live = samples::live({500, 500, 100, 100}, "Notes");
};

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
        {"live title empty", [](Pair& p) { p.live.title = "• "; }, 0.4},
        {"one title holds the other", [](Pair& p) { p.live.title = "My notes, page 2"; }, 0.75},
        {"unsaved changes", [](Pair& p) { p.live.title = "• Notes — Edited"; }, 1.0},
        {"other title", [](Pair& p) { p.live.title = "Mail"; }, 0.39},
        {"other title, other size",
         [](Pair& p) { p.live.title = "Mail", p.live.frame.width = p.live.frame.height = 200; }, 0.15},
        {"other subrole", [](Pair& p) { p.live.subrole = "AXDialog"; }, 0.9},
        {"half the size", [](Pair& p) { p.live.frame.width = p.live.frame.height = 50; }, 0.875},
        {"saved without a size", [](Pair& p) { p.saved.frame = {}; }, 0.75},
        {"other place in the list", [](Pair& p) { p.live.index = 3; }, 0.95},
        {"one has a document", [](Pair& p) { p.saved.documentURL = documentA; }, 1.0},
        {"other document", [](Pair& p) { p.saved.documentURL = documentA, p.live.documentURL = documentB; },
         0.0},
        {"same document, other title",
         [](Pair& p) {
             p.saved.documentURL = documentA, p.live.documentURL = Url::parse("file:///tmp/x/../a.txt");
             p.live.title = "Mail";
         },
         2.0},
        {"a tab has the live title",
         [](Pair& p) { p.saved.title = "Mail", p.saved.tabs = {{{"Mail", {}}, {"Notes", {}}}}; }, 1.0},
        {"only its other tab has the live document",
         [](Pair& p) {
             p.saved.documentURL = documentB, p.live.documentURL = documentA;
             p.saved.tabs = {{{{}, documentB}, {{}, documentA}}};
         },
         2.0},
        {"no tabs listed", [](Pair& p) { p.saved.tabs.emplace(); }, 1.0},
    };
    for (const Case& c : cases) {
        Pair pair;
        c.change(pair);
        EXPECT_DOUBLE_EQ(WindowMatcher::score(pair.saved, pair.live), c.score) << c.what;
    }
}

TEST(WindowMatcher, EvidenceSaysWhatMadeTheScore) {
    Pair pair;
    pair.saved.title = "Mail";
    pair.saved.tabs = {{{"Mail", documentB}, {"Notes", documentA}}};
    pair.live.documentURL = documentA;
    pair.live.index = 4;
    const auto evidence = WindowMatcher::evidence(pair.saved, pair.live);
    EXPECT_TRUE(evidence.document);
    EXPECT_EQ(evidence.title, 0.6);
    EXPECT_EQ(evidence.size, 0.25);
    EXPECT_TRUE(evidence.subrole);
    EXPECT_FALSE(evidence.order);
    EXPECT_EQ(evidence.tab, 1);
    EXPECT_EQ(evidence.score, WindowMatcher::score(pair.saved, pair.live));
    EXPECT_TRUE(WindowMatcher::evidence(samples::window({}, "a"), samples::live({}, "b")).titleConflict);
}

TEST(WindowMatcher, TrustsALoneWindowMoreUnlessItsTitleSaysOtherwise) {
    using enum WindowMatcher::Confidence;
    Pair pair;
    pair.saved.title.reset(), pair.live.title.reset();
    auto matches = WindowMatcher::match({{pair.saved}}, {{pair.live}});
    ASSERT_EQ(matches.size(), 1u);
    EXPECT_DOUBLE_EQ(matches[0].score, 0.8);
    EXPECT_EQ(matches[0].confidence(), high);
    EXPECT_EQ((Match{0, 0, 0.69}).confidence(), medium);
    EXPECT_EQ((Match{0, 0, 0.39}).confidence(), low);

    pair.saved.title = "Mail", pair.live.title = "Notes";
    EXPECT_EQ(WindowMatcher::match({{pair.saved}}, {{pair.live}}), (std::vector{Match{0, 0, 0.39}}));

    pair.live.title = "Mail";
    pair.saved.documentURL = pair.live.documentURL = documentA;
    EXPECT_EQ(WindowMatcher::match({{pair.saved}}, {{pair.live}}), (std::vector{Match{0, 0, 1.0}}));
    pair.live.documentURL = documentB;
    EXPECT_TRUE(WindowMatcher::match({{pair.saved}}, {{pair.live}}).empty());
}

TEST(WindowMatcher, TakesTheBestPairFirstAndTheEarlierOnATie) {
    const WindowSnapshot plain = samples::window({0, 0, 100, 100}, "Notes");
    LiveWindowInfo same = samples::live({0, 0, 100, 100}, "Notes");
    same.index = 7;
    EXPECT_EQ(WindowMatcher::match({{plain, plain}}, {{same, same, same}}),
              (std::vector{Match{0, 0, 0.95}, Match{1, 1, 0.95}}));
    // The best pair is (1, 0), although saved 0 is then left with the worse window.
    const WindowSnapshot close = samples::window({0, 0, 90, 100}, "Notes");
    const auto matches = WindowMatcher::match({{close, plain}}, {{same, samples::live({}, "Notes (2)")}});
    ASSERT_EQ(matches.size(), 2u);
    EXPECT_EQ(matches[0].liveIndex, 1);
    EXPECT_EQ(matches[1].liveIndex, 0);
    EXPECT_TRUE(WindowMatcher::match({}, {{same}}).empty());
    EXPECT_TRUE(WindowMatcher::match({{plain}}, {}).empty());
}

// Every pair scored by itself, the best of those that are left taken again and again.
std::vector<Match> plainMatch(const std::vector<WindowSnapshot>& saved,
                              const std::vector<LiveWindowInfo>& live) {
    std::vector<Match> pairs;
    for (std::size_t i = 0; i < saved.size(); ++i) {
        for (std::size_t j = 0; j < live.size(); ++j) {
            double score = WindowMatcher::score(saved[i], live[j]);
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

const std::vector<std::string> titles{"Notes", "Notes — Edited", "notes 2", "Mail", "", "•", "Inbox – Mail"};
const std::vector<std::string> subroles{"AXStandardWindow", "AXDialog"};

Rect someFrame(Random& random) {
    return {0, 0, 100.0 * random.below(4), 100.0 * random.below(4)};
}

std::optional<Url> someDocument(Random& random) {
    return random.oneOf<std::optional<Url>>({{}, {}, documentA, documentB});
}

WindowSnapshot someSaved(Random& random) {
    WindowSnapshot window = samples::window(someFrame(random), random.maybe(random.oneOf(titles)));
    window.subrole = random.maybe(random.oneOf(subroles));
    window.documentURL = someDocument(random);
    window.index = random.below(5);
    if (random.flip()) return window;
    window.tabs.emplace();
    for (int tab = random.below(4); tab > 0; --tab)
        window.tabs->push_back({random.maybe(random.oneOf(titles)), someDocument(random)});
    return window;
}

LiveWindowInfo someLive(Random& random) {
    LiveWindowInfo window = samples::live(someFrame(random), random.maybe(random.oneOf(titles)));
    window.subrole = random.maybe(random.oneOf(subroles));
    window.documentURL = someDocument(random);
    window.index = random.below(5);
    return window;
}

TEST(WindowMatcher, PairsLikeThePlainRules) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        Random random(seed);
        std::vector<WindowSnapshot> saved;
        std::vector<LiveWindowInfo> live;
        for (int count = random.below(9); count > 0; --count) saved.push_back(someSaved(random));
        for (int count = random.below(9); count > 0; --count) live.push_back(someLive(random));
        EXPECT_EQ(WindowMatcher::match(saved, live), plainMatch(saved, live)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace quillo
