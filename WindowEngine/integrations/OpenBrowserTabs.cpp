#include "WindowEngine/integrations/OpenBrowserTabs.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

#include "WindowEngine/integrations/WindowPairing.hpp"
#include "WindowEngine/support/StableSort.hpp"

namespace quillo::OpenBrowserTabs {
namespace {

using namespace std::chrono_literals;

/// So long after a change Chromium may have another one that it has not written.
constexpr Duration writingDelay = 3s;

struct Told {
    const BrowserProfile* profile;
    const BrowserWindow* window;
};

Result<std::vector<Told>> windowsTold(const BrowserProcess& process) {
    std::vector<Told> told;
    bool anyOpen = false;
    for (const BrowserProfile& profile : process.profiles) {
        if (!profile.isOpen) continue;
        if (!profile.session) return std::unexpected(profile.session.error());
        anyOpen = true;
        for (const BrowserWindow& window : profile.session->windows) told.push_back({&profile, &window});
    }
    if (!anyOpen && !process.windows.empty())
        return fail(ErrorKind::notFound, "its session file cannot be found");
    sortStablyByKey(told, [](const Told& one) { return one.window->order; });
    return told;
}

ContextWindow contextOf(const Told& told, std::optional<WindowNumber> number) {
    ContextWindow context{std::nullopt, {}, number, told.profile->name};
    for (const BrowserTab& tab : told.window->tabs) {
        auto url = Url::parse(tab.address);
        if (url && url->isWeb()) context.urls.push_back(*std::move(url));
    }
    return context;
}

WindowPairing::Pairs pairs(const BrowserProcess& process, const std::vector<Told>& told,
                           BrowserFamily family) {
    std::vector<BrowserWindow> windows;
    for (const Told& one : told) windows.push_back(*one.window);
    using enum WindowPairing::Evidence;
    return WindowPairing::match(process.windows, windows,
                                family == BrowserFamily::chromium ? sizeAndTitle : titleOnly);
}

bool changedJustNow(const BrowserProcess& process) {
    return std::ranges::any_of(process.profiles, [](const BrowserProfile& profile) {
        return profile.isOpen && profile.age < writingDelay;
    });
}

void add(Look& look, const BrowserProcess& process, const std::vector<Told>& told, BrowserFamily family) {
    const WindowPairing::Pairs found = pairs(process, told, family);
    for (const ShownBrowserWindow& window : process.windows) look.shown.push_back(window.number);
    look.told += told.size();
    // Every window on the screen that no file tells of is private, or too new for it.
    look.settled &= found.consistent && told.size() == process.windows.size() && !changedJustNow(process);
    for (std::size_t i = 0; i < told.size(); ++i) {
        std::optional<WindowNumber> number;
        if (found.shown[i]) number = process.windows[*found.shown[i]].number;
        if (number) look.surelyOrdinary.insert(*number);
        look.settled &= number.has_value();
        look.hasEmpty |= std::ranges::all_of(told[i].window->tabs, &std::string::empty, &BrowserTab::address);
        ContextWindow context = contextOf(told[i], number);
        if (!context.urls.empty()) look.windows.push_back(std::move(context));
    }
}

}  // namespace

Result<Look> judge(std::span<const BrowserProcess> processes, BrowserFamily family) {
    Look look;
    for (const BrowserProcess& process : processes) {
        const auto told = windowsTold(process);
        if (!told) return std::unexpected(told.error());
        add(look, process, *told, family);
    }
    return look;
}

}  // namespace quillo::OpenBrowserTabs
