#include "WindowEngine/records/Workspace.hpp"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <set>
#include <utility>

#include "WindowEngine/support/CheckedSum.hpp"

namespace quillo {
namespace {

constexpr std::string_view finderAdapter = "finder";
constexpr std::string_view finderBundleIdentifier = "com.apple.finder";

std::int64_t countOf(const auto& list) {
    return static_cast<std::int64_t>(list.size());
}

std::int64_t sumOver(const auto& list, auto count) {
    std::int64_t sum = 0;
    for (const auto& entry : list) sum = checkedSum(sum, count(entry));
    return sum;
}

std::int64_t folders(const ApplicationSnapshot& application) {
    const auto& context = application.context;
    return context && context->adapter == finderAdapter ? context->urlCount() : 0;
}

std::int64_t contextTabs(const ApplicationSnapshot& application) {
    const auto& context = application.context;
    return context && context->adapter != finderAdapter ? context->urlCount() : 0;
}

std::int64_t nativeTabs(const ApplicationSnapshot& application) {
    if (application.bundleIdentifier == finderBundleIdentifier) return 0;
    return sumOver(application.windows,
                   [](const WindowSnapshot& window) { return window.tabs ? countOf(*window.tabs) : 0; });
}

}  // namespace

std::string_view storedValue(CleanSlateMode mode) {
    switch (mode) {
        case CleanSlateMode::keep:
            return "keep";
        case CleanSlateMode::hide:
            return "hide";
        case CleanSlateMode::quit:
            return "quit";
    }
    std::abort();
}

std::string_view label(CleanSlateMode mode) {
    switch (mode) {
        case CleanSlateMode::keep:
            return "Keep other apps";
        case CleanSlateMode::hide:
            return "Hide other apps";
        case CleanSlateMode::quit:
            return "Quit other apps";
    }
    std::abort();
}

std::optional<CleanSlateMode> cleanSlateMode(std::string_view value) {
    for (const CleanSlateMode mode : allCleanSlateModes) {
        if (storedValue(mode) == value) return mode;
    }
    return std::nullopt;
}

std::string DesktopSnapshot::id() const {
    return displayID + "#desktop" + std::to_string(index);
}

std::int64_t DesktopSnapshot::number() const {
    return std::clamp<std::int64_t>(index, 0, std::numeric_limits<std::int64_t>::max() - 1) + 1;
}

std::int64_t AppContext::urlCount() const {
    return sumOver(windows, [](const ContextWindow& window) { return countOf(window.urls); });
}

std::int64_t WorkspaceSnapshot::desktopCount() const {
    if (!desktops) return 0;
    const auto hasUuid = [](const DesktopSnapshot& desktop) { return desktop.uuid.has_value(); };
    if (std::ranges::any_of(*desktops, hasUuid)) return countOf(*desktops);
    // Where desktops have no identity (X11), all displays show the same ones.
    std::set<std::int64_t> places;
    for (const DesktopSnapshot& desktop : *desktops) places.insert(desktop.index);
    return countOf(places);
}

std::int64_t WorkspaceSnapshot::windowCount() const {
    return sumOver(applications,
                   [](const ApplicationSnapshot& application) { return countOf(application.windows); });
}

std::int64_t WorkspaceSnapshot::folderCount() const {
    return sumOver(applications, folders);
}

std::int64_t WorkspaceSnapshot::tabCount() const {
    return sumOver(applications, [](const ApplicationSnapshot& application) {
        return checkedSum(contextTabs(application), nativeTabs(application));
    });
}

Workspace Workspace::create(Uuid id, std::string name, std::string icon, std::string color,
                            WorkspaceSnapshot snapshot, Instant now) {
    Workspace workspace;
    workspace.id = id;
    workspace.name = std::move(name);
    workspace.icon = std::move(icon);
    workspace.color = std::move(color);
    workspace.createdAt = workspace.updatedAt = now;
    workspace.snapshot = std::move(snapshot);
    return workspace;
}

Workspace Workspace::importedCopy(std::string named, Instant now) const {
    return create(Uuid::random(), std::move(named), icon, color, snapshot, now);
}

}  // namespace quillo
