#include "WindowEngine/restore/WindowMatcher.hpp"

#include <algorithm>
#include <cmath>
#include <optional>
#include <ranges>
#include <tuple>
#include <unordered_map>

#include "WindowEngine/support/Text.hpp"

namespace quillo::WindowMatcher {
namespace {

/// What pairs are judged by, worked out once a window instead of once a pair.
struct Judged {
    std::optional<std::string> title;     // normalised
    std::optional<std::string> document;  // standardised
};

/// Of a title that no screen has room for the beginning counts, and of a window with countless tabs the first
/// ones: a stranger's file may hold any.
constexpr std::size_t mostTitleBytes = 512, mostTabs = 200;

Judged judged(const std::optional<std::string>& title, const std::optional<Url>& document) {
    Judged result;
    if (title) result.title = normalize(text::beginning(*title, mostTitleBytes));
    if (document) result.document = document->standardized().string();
    return result;
}

struct JudgedSaved {
    const WindowSnapshot* window;
    std::vector<Judged> faces;  // the window itself, then each of its tabs
};

struct JudgedLive {
    const LiveWindowInfo* window;
    Judged face;
};

JudgedSaved judged(const WindowSnapshot& window) {
    JudgedSaved result{&window, {judged(window.title, window.documentURL)}};
    if (window.tabs) {
        for (const TabSnapshot& tab : *window.tabs | std::views::take(mostTabs))
            result.faces.push_back(judged(tab.title, tab.documentURL));
    }
    return result;
}

JudgedLive judged(const LiveWindowInfo& window) {
    return {&window, judged(window.title, window.documentURL)};
}

void judgeTitle(const Judged& saved, const Judged& live, Evidence& evidence) {
    if (!saved.title && !live.title) {
        evidence.title = 0.2;
    } else if (saved.title && live.title && !saved.title->empty()) {
        const std::string& a = *saved.title;
        const std::string& b = *live.title;
        if (a == b) {
            evidence.title = 0.6;
        } else if (!b.empty()) {
            const bool contained = a.find(b) != std::string::npos || b.find(a) != std::string::npos;
            if (contained) evidence.title = 0.35;
            evidence.titleConflict = !contained;
        }
    }
}

double sizeLikeness(const Rect& saved, const Rect& live) {
    const double total = saved.width + saved.height;
    if (!(total > 0)) return 0;
    const double difference =
        (std::abs(saved.width - live.width) + std::abs(saved.height - live.height)) / total;
    return 0.25 * (1 - std::min(difference, 1.0));
}

Evidence judgePair(const WindowSnapshot& saved, const Judged& face, const JudgedLive& live) {
    Evidence evidence;
    if (face.document && live.face.document) {
        if (*face.document != *live.face.document) return evidence;
        evidence.document = true;
    }
    judgeTitle(face, live.face, evidence);
    evidence.subrole = saved.subrole == live.window->subrole;
    evidence.size = sizeLikeness(saved.frame, live.window->frame);
    evidence.order = saved.index == live.window->index;

    // Summed in this order always, so that equal evidence gives equal bits.
    double score = evidence.document ? 0.6 : 0.0;
    score += evidence.title;
    if (evidence.subrole) score += 0.1;
    score += evidence.size;
    if (evidence.order) score += 0.05;
    if (evidence.document) {
        score += 1.0;
    } else if (evidence.titleConflict) {
        score = std::min(score, 0.39);
    }
    evidence.score = score;
    return evidence;
}

Evidence judgePair(const JudgedSaved& saved, const JudgedLive& live) {
    Evidence best = judgePair(*saved.window, saved.faces.front(), live);
    for (std::size_t tab = 1; tab < saved.faces.size(); ++tab) {
        Evidence other = judgePair(*saved.window, saved.faces[tab], live);
        if (other.score > best.score) {
            best = other;
            best.tab = static_cast<std::int64_t>(tab) - 1;
        }
    }
    return best;
}

struct Candidate {
    std::size_t saved, live;
    double score;
};

/// Which live windows a saved one is compared with. All of them, unless that were more pairs than a person's
/// windows ever make; then those with its document, its title or about its place in the list, a few of each.
class Partners {
  public:
    Partners(std::span<const JudgedSaved> saved, std::span<const JudgedLive> live) : live_(live.size()) {
        std::size_t faces = 0;
        for (const JudgedSaved& window : saved) faces += window.faces.size();
        all_ = faces * live.size() <= mostPairs;
        for (std::size_t i = 0; i < live.size() && !all_; ++i) {
            const Judged& face = live[i].face;
            if (face.document) add(byDocument_, *face.document, i);
            if (face.title) add(byTitle_, *face.title, i);
        }
    }

    /// In ascending order, each once.
    std::vector<std::size_t> of(const JudgedSaved& saved, std::size_t place) const {
        std::vector<std::size_t> found;
        const std::size_t first = all_ ? 0 : std::min(place, live_) - std::min({place, live_, most / 2});
        for (std::size_t i = first; i < live_ && (all_ || i < first + most); ++i) found.push_back(i);
        if (all_) return found;
        for (const Judged& face : saved.faces) {
            if (face.document) append(byDocument_, *face.document, found);
            if (face.title) append(byTitle_, *face.title, found);
        }
        std::ranges::sort(found);
        const auto repeated = std::ranges::unique(found);
        found.erase(repeated.begin(), repeated.end());
        return found;
    }

  private:
    using Index = std::unordered_map<std::string_view, std::vector<std::size_t>>;
    static constexpr std::size_t mostPairs = 250'000, most = 16;

    static void add(Index& index, std::string_view text, std::size_t place) {
        std::vector<std::size_t>& places = index[text];
        if (places.size() < most) places.push_back(place);
    }
    static void append(const Index& index, std::string_view text, std::vector<std::size_t>& found) {
        const auto places = index.find(text);
        if (places != index.end()) found.insert(found.end(), places->second.begin(), places->second.end());
    }

    std::size_t live_;
    bool all_ = false;
    Index byDocument_, byTitle_;
};

std::vector<Candidate> candidates(std::span<const WindowSnapshot> saved,
                                  std::span<const LiveWindowInfo> live) {
    std::vector<JudgedSaved> judgedSaved;
    for (const WindowSnapshot& window : saved) judgedSaved.push_back(judged(window));
    std::vector<JudgedLive> judgedLive;
    for (const LiveWindowInfo& window : live) judgedLive.push_back(judged(window));
    const bool lone = saved.size() == 1 && live.size() == 1;

    const Partners partners(judgedSaved, judgedLive);
    std::vector<Candidate> result;
    for (std::size_t i = 0; i < saved.size(); ++i) {
        for (const std::size_t j : partners.of(judgedSaved[i], i)) {
            double score = judgePair(judgedSaved[i], judgedLive[j]).score;
            if (lone && score > 0.39) score += 0.2;  // nothing else it could be
            if (score > 0) result.push_back({i, j, score});
        }
    }
    return result;
}

}  // namespace

Confidence Match::confidence() const {
    if (score >= 0.7) return Confidence::high;
    return score >= 0.4 ? Confidence::medium : Confidence::low;
}

std::string normalize(std::string_view title) {
    static const text::Pattern whiteSpace(R"(\s+)");
    static const text::Pattern editedSuffix(R"(\s[—–-]\s*edited$)");
    static const text::Pattern editedBullet(R"(^•\s*)");
    std::string result = whiteSpace.replaceAll(text::lowercase(title), " ");
    result = editedBullet.replaceAll(editedSuffix.replaceAll(result, ""), "");
    return text::trimBlanks(result);
}

Evidence evidence(const WindowSnapshot& saved, const LiveWindowInfo& live) {
    return judgePair(judged(saved), judged(live));
}

std::vector<Match> match(std::span<const WindowSnapshot> saved, std::span<const LiveWindowInfo> live) {
    std::vector<Candidate> ranked = candidates(saved, live);
    // Ties go to the lower saved index, then to the lower live index.
    std::ranges::sort(ranked, {}, [](const Candidate& c) { return std::tuple(-c.score, c.saved, c.live); });

    std::vector<bool> savedTaken(saved.size()), liveTaken(live.size());
    std::vector<Match> matches;
    for (const Candidate& candidate : ranked) {
        if (savedTaken[candidate.saved] || liveTaken[candidate.live]) continue;
        savedTaken[candidate.saved] = liveTaken[candidate.live] = true;
        matches.push_back({static_cast<std::int64_t>(candidate.saved),
                           static_cast<std::int64_t>(candidate.live), std::min(candidate.score, 1.0)});
    }
    // Those that were not compared, of more windows than that is done for: by their order.
    for (std::size_t i = 0, j = 0; i < saved.size() && j < live.size(); ++i) {
        if (savedTaken[i]) continue;
        while (j < live.size() && liveTaken[j]) ++j;
        const double left = j < live.size() ? evidence(saved[i], live[j]).score : 0;
        if (left > 0)
            matches.push_back(
                {static_cast<std::int64_t>(i), static_cast<std::int64_t>(j++), std::min(left, 1.0)});
    }
    std::ranges::sort(matches, {}, &Match::savedIndex);
    return matches;
}

}  // namespace quillo::WindowMatcher
