#include "WindowEngine/restore/PlanComparison.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string_view>

namespace quillo::Restore {
namespace {

class Comparison {
  public:
    explicit Comparison(std::string where) : where_(std::move(where)) {}

    void numbers(std::string_view what, double one, double other) {
        if (one != other) add(fmt::format("{} {}, not {}", what, other, one));
    }
    void places(std::string_view what, std::optional<std::int64_t> one, std::optional<std::int64_t> other) {
        const auto text = [](const std::optional<std::int64_t>& place) {
            return place ? std::to_string(*place) : std::string("none");
        };
        if (one != other) add(fmt::format("{} {}, not {}", what, text(other), text(one)));
    }
    template <class T>
    void same(std::string_view what, const T& one, const T& other) {
        if (!(one == other)) add(fmt::format("another {}", what));
    }

    std::string where_;
    std::vector<std::string> lines;

  private:
    void add(const std::string& what) { lines.push_back(where_ + ": " + what); }
};

std::optional<std::int64_t> displayOf(const RestorePreview& preview, const std::optional<std::string>& id) {
    const auto found =
        id ? std::ranges::find(preview.displays, *id, &DisplaySnapshot::id) : preview.displays.end();
    if (found == preview.displays.end()) return std::nullopt;
    return found - preview.displays.begin();
}

/// Its number on its display; of one that is yet to be made as well.
std::optional<std::int64_t> desktopOf(const RestorePreview& preview, const WindowPlan& plan) {
    if (!plan.desktop) return std::nullopt;
    const auto found = std::ranges::find_if(preview.desktops.desktops, [&](const NativeDesktop& one) {
        return one.id == *plan.desktop && one.displayID == plan.displayID;
    });
    if (found == preview.desktops.desktops.end()) return std::nullopt;
    return found->index;
}

void compareWindow(Comparison& to, const RestorePreview& one, const WindowPlan& a,
                   const RestorePreview& other, const WindowPlan& b) {
    to.places("liveIndex", a.liveIndex, b.liveIndex);
    to.numbers("score", a.score, b.score);
    to.places("display", displayOf(one, a.displayID), displayOf(other, b.displayID));
    to.places("desktop", desktopOf(one, a), desktopOf(other, b));
    to.same("placement", a.placement, b.placement);
    const auto steps = [](const WindowPlan& plan) {
        return std::array{plan.leaveFullscreen, plan.unminimize,      plan.write,
                          plan.moveToDesktop,   plan.enterFullscreen, plan.minimized};
    };
    to.same("list of steps", steps(a), steps(b));
    to.same("reason to skip it", a.skipReason, b.skipReason);
}

void compareApplication(Comparison& to, const PlannedApplication& a, const PlannedApplication& b) {
    to.same("presence", a.presence, b.presence);
    to.same("answer in time", a.hangs, b.hangs);
    to.numbers("live windows", static_cast<double>(a.live.size()), static_cast<double>(b.live.size()));
    const ReopeningPlan &x = a.reopening, &y = b.reopening;
    const auto count = [&](std::string_view what, std::size_t one, std::size_t other) {
        to.numbers(what, static_cast<double>(one), static_cast<double>(other));
    };
    count("documents opened", x.documents.open.size(), y.documents.open.size());
    count("documents refused", x.documents.refused.size(), y.documents.refused.size());
    count("more windows", x.moreWindows, y.moreWindows);
    count("steps of the integration", x.steps.size(), y.steps.size());
    for (std::size_t i = 0; i < std::min(x.steps.size(), y.steps.size()); ++i) {
        count("addresses of a step", x.steps[i].urls.size(), y.steps[i].urls.size());
        to.same("window of a step", x.steps[i].newWindow, y.steps[i].newWindow);
    }
    to.same("trouble with the integration", x.contextTrouble, y.contextTrouble);
    to.same("request for a window", x.askedForWindow, y.askedForWindow);
}

void compareDesktops(Comparison& to, const RestorePreview& one, const RestorePreview& other) {
    const auto &a = one.desktops.creations, &b = other.desktops.creations;
    to.numbers("displays with new desktops", static_cast<double>(a.size()), static_cast<double>(b.size()));
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        to.places("existing desktops", a[i].existing, b[i].existing);
        to.places("wanted desktops", a[i].wanted, b[i].wanted);
        to.places("display", displayOf(one, a[i].displayID), displayOf(other, b[i].displayID));
    }
    to.same("trouble with desktops", one.desktops.failures, other.desktops.failures);
}

}  // namespace

std::vector<std::string> planDifferences(const RestorePreview& one, const RestorePreview& other) {
    std::vector<std::string> lines;
    const auto take = [&lines](Comparison& from) {
        std::ranges::move(from.lines, std::back_inserter(lines));
    };
    Comparison desktops("desktops");
    compareDesktops(desktops, one, other);
    take(desktops);
    Comparison all("all");
    all.numbers("applications", static_cast<double>(one.applications.size()),
                static_cast<double>(other.applications.size()));
    all.numbers("what the limits leave out", static_cast<double>(one.scope->leftOut.size()),
                static_cast<double>(other.scope->leftOut.size()));
    take(all);
    for (std::size_t i = 0; i < std::min(one.applications.size(), other.applications.size()); ++i) {
        const PlannedApplication &a = one.applications[i], &b = other.applications[i];
        Comparison application(fmt::format("application {}", i));
        compareApplication(application, a, b);
        application.numbers("windows", static_cast<double>(a.windows.size()),
                            static_cast<double>(b.windows.size()));
        take(application);
        for (std::size_t j = 0; j < std::min(a.windows.size(), b.windows.size()); ++j) {
            Comparison window(fmt::format("application {}, window {}", i, j));
            compareWindow(window, one, a.windows[j], other, b.windows[j]);
            take(window);
        }
    }
    return lines;
}

}  // namespace quillo::Restore
