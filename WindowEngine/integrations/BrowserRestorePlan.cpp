#include "WindowEngine/integrations/BrowserRestorePlan.hpp"

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace quillo::BrowserRestorePlan {
namespace {

using Addresses = std::unordered_set<std::string_view>;

std::vector<Url> webAddresses(const ContextWindow& window) {
    std::vector<Url> urls;
    std::ranges::copy_if(window.urls, std::back_inserter(urls), &Url::isWeb);
    return urls;
}

Addresses setOf(const std::vector<Url>& urls) {
    Addresses addresses;
    for (const Url& url : urls) addresses.insert(url.string());
    return addresses;
}

struct Pair {
    std::size_t saved = 0, live = 0;
    double share = 0;  // of the addresses in both together, those in each
};

/// All pairs that share an address, the best first.
std::vector<Pair> candidates(const std::vector<Addresses>& saved, const std::vector<Addresses>& live) {
    std::vector<Pair> pairs;
    for (std::size_t i = 0; i < saved.size(); ++i) {
        for (std::size_t j = 0; j < live.size(); ++j) {
            const auto common = static_cast<std::size_t>(std::ranges::count_if(
                saved[i], [&](std::string_view address) { return live[j].contains(address); }));
            if (common == 0) continue;
            const std::size_t together = saved[i].size() + live[j].size() - common;
            pairs.push_back({i, j, static_cast<double>(common) / static_cast<double>(together)});
        }
    }
    std::ranges::sort(pairs, [](const Pair& a, const Pair& b) {
        if (a.share != b.share) return a.share > b.share;
        return a.saved != b.saved ? a.saved < b.saved : a.live < b.live;
    });
    return pairs;
}

/// For each saved window the place of the open one it takes.
using Assignment = std::vector<std::optional<std::size_t>>;

Assignment assign(const std::vector<Addresses>& saved, const std::vector<Addresses>& live) {
    Assignment taken(saved.size());
    std::vector<bool> used(live.size());
    for (const Pair& pair : candidates(saved, live)) {
        if (taken[pair.saved] || used[pair.live]) continue;
        taken[pair.saved] = pair.live;
        used[pair.live] = true;
    }
    std::size_t blank = 0;
    for (std::size_t i = 0; i < saved.size(); ++i) {
        if (taken[i] || saved[i].empty()) continue;
        while (blank < live.size() && (used[blank] || !live[blank].empty())) ++blank;
        if (blank < live.size()) taken[i] = blank++;
    }
    return taken;
}

}  // namespace

std::vector<Step> make(std::span<const ContextWindow> saved, std::span<const ContextWindow> live,
                       bool reuseExisting) {
    std::vector<std::vector<Url>> wanted;
    std::vector<Addresses> savedSets, liveSets;
    for (const ContextWindow& window : saved) wanted.push_back(webAddresses(window));
    for (const auto& urls : wanted) savedSets.push_back(setOf(urls));
    for (const ContextWindow& window : live) liveSets.push_back(setOf(window.urls));
    const Assignment taken = reuseExisting ? assign(savedSets, liveSets) : Assignment(saved.size());

    std::vector<Step> steps;
    for (std::size_t i = 0; i < saved.size(); ++i) {
        Step step{std::nullopt, std::move(wanted[i]), i};
        if (taken[i]) {
            step.index = static_cast<std::int64_t>(*taken[i]);
            std::erase_if(step.urls,
                          [&](const Url& url) { return liveSets[*taken[i]].contains(url.string()); });
        }
        if (!step.urls.empty()) steps.push_back(std::move(step));
    }
    return steps;
}

std::vector<AdapterStep> adapterSteps(const AppContext& saved, const AppContext& current) {
    std::vector<AdapterStep> steps;
    for (Step& step : make(saved.windows, current.windows, true))
        steps.push_back({!step.index, std::move(step.urls)});
    return steps;
}

}  // namespace quillo::BrowserRestorePlan
