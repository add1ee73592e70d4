#include "WindowEngine/restore/RestoreScope.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "WindowEngine/restore/ItemSink.hpp"

namespace quillo::Restore {
namespace {

void mergeContext(std::optional<AppContext>& into, std::optional<AppContext> other) {
    if (!into) {
        into = std::move(other);
    } else if (other && other->adapter == into->adapter) {
        std::ranges::move(other->windows, std::back_inserter(into->windows));
    }
}

std::vector<ApplicationSnapshot> merged(std::vector<ApplicationSnapshot> applications) {
    std::vector<ApplicationSnapshot> result;
    std::map<std::string, std::size_t, std::less<>> places;
    for (ApplicationSnapshot& application : applications) {
        const auto [place, isNew] = places.try_emplace(application.bundleIdentifier, result.size());
        if (isNew) {
            result.push_back(std::move(application));
            continue;
        }
        ApplicationSnapshot& first = result[place->second];
        std::ranges::move(application.windows, std::back_inserter(first.windows));
        mergeContext(first.context, std::move(application.context));
    }
    return result;
}

std::size_t cost(const WindowSnapshot& window) {
    std::size_t documents = window.documentURL ? 1 : 0;
    for (const TabSnapshot& tab : window.tabs.value_or(std::vector<TabSnapshot>()))
        documents += tab.documentURL && tab.documentURL != window.documentURL ? 1 : 0;
    return std::max<std::size_t>(1, documents);
}

/// Leaves what `room` has place for, and gives back what that takes.
std::size_t cut(ApplicationSnapshot& application, std::size_t room) {
    std::size_t taken = 0;
    const auto beyond = std::ranges::find_if(application.windows, [&](const WindowSnapshot& window) {
        if (taken + cost(window) > room) return true;
        taken += cost(window);
        return false;
    });
    application.windows.erase(beyond, application.windows.end());
    std::size_t opened = 0;
    if (application.context) {
        auto& windows = application.context->windows;
        if (windows.size() > room) windows.resize(room);
        opened = windows.size();
    }
    return std::max({taken, opened, std::size_t{1}});
}

std::size_t asked(const ApplicationSnapshot& application) {
    std::size_t windows = 0;
    for (const WindowSnapshot& window : application.windows) windows += cost(window);
    const std::size_t opened = application.context ? application.context->windows.size() : 0;
    return std::max({windows, opened, std::size_t{1}});
}

RestoreReport::Item itemAbout(std::string_view name, std::string_view identifier, std::string reason) {
    return {.app = std::string(name),
            .bundleIdentifier = std::string(identifier),
            .title = std::nullopt,
            .status = RestoreReport::skipped{std::move(reason)}};
}

void limit(RestoreScope& scope) {
    std::vector<ApplicationSnapshot> kept;
    std::size_t inAll = 0, applicationsLeftOut = 0;
    for (ApplicationSnapshot& application : scope.snapshot.applications) {
        if (inAll >= mostInAll) {
            ++applicationsLeftOut;
            continue;
        }
        const std::size_t before = asked(application);
        const std::size_t after = cut(application, std::min(mostOfOneApplication, mostInAll - inAll));
        inAll += after;
        if (after < before)
            scope.leftOut.push_back(itemAbout(
                application.name, application.bundleIdentifier,
                fmt::format("{} of {} windows and documents are left out: at most {} of one application "
                            "and {} in all are opened",
                            before - after, before, mostOfOneApplication, mostInAll)));
        kept.push_back(std::move(application));
    }
    scope.snapshot.applications = std::move(kept);
    if (applicationsLeftOut > 0)
        scope.leftOut.push_back(
            itemAbout(ownName, ownBundleIdentifier,
                      fmt::format("{} more applications are left out: at most {} windows and documents "
                                  "in all are opened",
                                  applicationsLeftOut, mostInAll)));
}

}  // namespace

RestoreScope scopeOf(WorkspaceSnapshot snapshot, bool limited) {
    RestoreScope scope{std::move(snapshot), {}};
    boundDisplays(scope.snapshot);
    scope.snapshot.applications = merged(std::move(scope.snapshot.applications));
    if (limited) limit(scope);
    return scope;
}

bool exceedsLimits(const WorkspaceSnapshot& snapshot) {
    return !scopeOf(snapshot, true).leftOut.empty();
}

std::string shownName(Applications& applications, const ApplicationSnapshot& application) {
    const auto installed = applications.name(application.bundleIdentifier);
    if (!installed || installed->empty() || *installed == application.name) return application.name;
    return application.name.empty() ? *installed
                                    : fmt::format("{} (saved as “{}”)", *installed, application.name);
}

void giveShownNames(Applications& applications, RestoreScope& scope) {
    std::map<std::string, std::string, std::less<>> names;
    for (ApplicationSnapshot& application : scope.snapshot.applications) {
        application.name = shownName(applications, application);
        names[application.bundleIdentifier] = application.name;
    }
    for (RestoreReport::Item& item : scope.leftOut) {
        if (const auto name = names.find(item.bundleIdentifier); name != names.end()) item.app = name->second;
    }
}

std::vector<RestoreReport::Item> notReached(const WorkspaceSnapshot& snapshot, const RestoreReport& report) {
    std::set<std::pair<std::string_view, std::optional<std::int64_t>>> told;
    for (const RestoreReport::Item& item : report.items) {
        const bool ofAll = !item.title && outcomeOf(item.status).verdict == Verdict::leftOut;
        if (item.savedIndex || ofAll) told.emplace(item.bundleIdentifier, item.savedIndex);
    }
    RestoreReport left;
    const ItemSink sink(left, {});
    for (const ApplicationSnapshot& application : snapshot.applications) {
        if (told.contains({application.bundleIdentifier, std::nullopt})) continue;
        for (std::int64_t i = 0; i < std::ssize(application.windows); ++i)
            if (!told.contains({application.bundleIdentifier, i}))
                sink.add(application, i, RestoreReport::skipped{"not reached"});
    }
    return left.items;
}

void boundDisplays(WorkspaceSnapshot& snapshot) {
    constexpr std::size_t mostDisplays = 64, mostDesktops = 1024;
    if (snapshot.displays.size() > mostDisplays) snapshot.displays.resize(mostDisplays);
    if (snapshot.desktops && snapshot.desktops->size() > mostDesktops)
        snapshot.desktops->resize(mostDesktops);
}

}  // namespace quillo::Restore
