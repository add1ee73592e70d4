#include "WindowEngine/capture/LeftOut.hpp"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/support/StableSort.hpp"

namespace quillo::LeftOut {
namespace {

using Kind = LeftOutPart::Kind;

std::int64_t numberOf(const AppContext& context, std::size_t place) {
    return context.windows[place].sourceWindowIndex.value_or(static_cast<std::int64_t>(place));
}

ApplicationSnapshot shellOf(const ApplicationSnapshot& application) {
    return {application.bundleIdentifier, application.name, application.applicationURL, {}, std::nullopt};
}

/// Moves what is excluded out of the list, with the place of each.
template <class T, class Excluded, class Take>
void takeOut(std::vector<T>& list, const Excluded& excluded, const Take& take) {
    std::vector<T> kept;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (excluded(list[i], i))
            take(std::move(list[i]), static_cast<std::int64_t>(i));
        else
            kept.push_back(std::move(list[i]));
    }
    list = std::move(kept);
}

template <class T>
auto insertAt(std::vector<T>& list, std::int64_t place, T value) {
    const auto size = static_cast<std::int64_t>(list.size());
    return list.insert(list.begin() + std::clamp<std::int64_t>(place, 0, size), std::move(value));
}

void takeAddresses(ApplicationSnapshot& application, const Exclusions& excluded,
                   std::vector<LeftOutPart>& parts) {
    if (!application.context) return;
    AppContext& context = *application.context;
    const std::string& identifier = application.bundleIdentifier;
    for (std::size_t place = 0; place < context.windows.size(); ++place) {
        ContextWindow& window = context.windows[place];
        const std::int64_t number = numberOf(context, place);
        takeOut(
            window.urls,
            [&](const Url&, std::size_t i) {
                return excluded.contextURLs.contains(
                    CaptureFilter::contextURLKey(identifier, number, static_cast<std::int64_t>(i)));
            },
            [&](Url url, std::int64_t at) {
                ApplicationSnapshot part = shellOf(application);
                part.context = AppContext{
                    context.adapter,
                    {{window.sourceWindowIndex, {std::move(url)}, window.sourceWindowID, window.profile}}};
                parts.push_back({Kind::address, at, std::move(part)});
            });
    }
}

void takeWindows(ApplicationSnapshot& application, const Exclusions& excluded,
                 std::vector<LeftOutPart>& parts) {
    takeOut(
        application.windows,
        [&](const WindowSnapshot& window, std::size_t) {
            return excluded.windows.contains(
                CaptureFilter::windowKey(application.bundleIdentifier, window.index));
        },
        [&](WindowSnapshot window, std::int64_t at) {
            ApplicationSnapshot part = shellOf(application);
            const std::int64_t index = window.index;
            part.windows.push_back(std::move(window));
            if (application.context) {
                AppContext inIt{application.context->adapter, {}};
                takeOut(
                    application.context->windows,
                    [&](const ContextWindow& one, std::size_t) { return one.sourceWindowIndex == index; },
                    [&](ContextWindow one, std::int64_t) { inIt.windows.push_back(std::move(one)); });
                if (!inIt.windows.empty()) part.context = std::move(inIt);
            }
            parts.push_back({Kind::window, at, std::move(part)});
        });
}

/// An integration is not asked for nothing.
void dropEmptyContext(ApplicationSnapshot& application) {
    auto& context = application.context;
    if (!context) return;
    std::erase_if(context->windows, [](const ContextWindow& window) { return window.urls.empty(); });
    if (context->windows.empty()) context.reset();
}

/// The place of the context window that stands for `like`, in the order of their windows, as captures have
/// them; made where there is none.
std::size_t contextPlace(AppContext& context, const ContextWindow& like) {
    auto found =
        std::ranges::find(context.windows, like.sourceWindowIndex, &ContextWindow::sourceWindowIndex);
    if (found == context.windows.end()) {
        const auto after = std::ranges::find_if(context.windows, [&](const ContextWindow& one) {
            return one.sourceWindowIndex > like.sourceWindowIndex;
        });
        found =
            context.windows.insert(after, {like.sourceWindowIndex, {}, like.sourceWindowID, like.profile});
    }
    return static_cast<std::size_t>(found - context.windows.begin());
}

void putBackContext(Whole& result, ApplicationSnapshot& owner, const LeftOutPart& part) {
    if (!owner.context) owner.context = AppContext{part.application.context->adapter, {}};
    AppContext& context = *owner.context;
    for (const ContextWindow& window : part.application.context->windows) {
        const std::size_t place = contextPlace(context, window);
        for (const Url& url : window.urls) {
            std::vector<Url>& urls = context.windows[place].urls;
            const bool alone = part.kind == Kind::address;
            const auto at = insertAt(urls, alone ? part.place : static_cast<std::int64_t>(urls.size()), url);
            if (alone)
                result.excluded.contextURLs.insert(CaptureFilter::contextURLKey(
                    owner.bundleIdentifier, numberOf(context, place), at - urls.begin()));
        }
    }
}

/// The application that a part belongs to; added where it is not there, and then left out as its part is.
ApplicationSnapshot& ownerOf(Whole& result, const LeftOutPart& part) {
    std::vector<ApplicationSnapshot>& applications = result.snapshot.applications;
    const std::string& identifier = part.application.bundleIdentifier;
    const auto found = std::ranges::find(applications, identifier, &ApplicationSnapshot::bundleIdentifier);
    if (found != applications.end()) return *found;
    result.excluded.apps.insert(identifier);
    return applications.emplace_back(shellOf(part.application));
}

void putBack(Whole& result, LeftOutPart part) {
    const std::string identifier = part.application.bundleIdentifier;
    if (part.kind == Kind::application) {
        result.excluded.apps.insert(identifier);
        insertAt(result.snapshot.applications, part.place, std::move(part.application));
        return;
    }
    ApplicationSnapshot& owner = ownerOf(result, part);
    if (part.kind == Kind::window) {
        for (WindowSnapshot& window : part.application.windows) {
            result.excluded.windows.insert(CaptureFilter::windowKey(identifier, window.index));
            insertAt(owner.windows, part.place, std::move(window));
        }
    }
    if (part.application.context) putBackContext(result, owner, part);
}

bool contains(const std::vector<Url>& urls, const Url& url) {
    return std::ranges::find(urls, url) != urls.end();
}

bool isSame(const WindowSnapshot& one, const WindowSnapshot& other) {
    return one.title == other.title && one.documentURL == other.documentURL;
}

/// What a part of its kind is about; null where a hand-written file gave it nothing.
const WindowSnapshot* windowOf(const LeftOutPart& part) {
    return part.application.windows.empty() ? nullptr : &part.application.windows.front();
}
const Url* addressOf(const LeftOutPart& part) {
    const auto& context = part.application.context;
    const bool given = context && !context->windows.empty() && !context->windows.front().urls.empty();
    return given ? &context->windows.front().urls.front() : nullptr;
}

bool isWindow(const LeftOutPart& part, const WindowSnapshot& window) {
    return part.kind == Kind::window && windowOf(part) && isSame(*windowOf(part), window);
}
bool isAddress(const LeftOutPart& part, const std::vector<Url>& urls) {
    return part.kind == Kind::address && addressOf(part) && contains(urls, *addressOf(part));
}

bool holds(const ApplicationSnapshot& application, const LeftOutPart& part) {
    if (application.bundleIdentifier != part.application.bundleIdentifier) return false;
    if (part.kind == Kind::application) return true;
    return std::ranges::any_of(application.windows,
                               [&](const WindowSnapshot& window) { return isWindow(part, window); }) ||
           (application.context &&
            std::ranges::any_of(application.context->windows,
                                [&](const ContextWindow& window) { return isAddress(part, window.urls); }));
}

void recognise(const LeftOutPart& part, const ApplicationSnapshot& application, Exclusions& found) {
    const std::string& identifier = application.bundleIdentifier;
    if (identifier != part.application.bundleIdentifier) return;
    if (part.kind == Kind::application) found.apps.insert(identifier);
    for (const WindowSnapshot& window : application.windows)
        if (isWindow(part, window)) found.windows.insert(CaptureFilter::windowKey(identifier, window.index));
    const std::size_t places = application.context ? application.context->windows.size() : 0;
    for (std::size_t place = 0; place < places; ++place) {
        const std::vector<Url>& urls = application.context->windows[place].urls;
        for (std::size_t i = 0; i < urls.size(); ++i)
            if (isAddress(part, {urls[i]}))
                found.contextURLs.insert(CaptureFilter::contextURLKey(
                    identifier, numberOf(*application.context, place), static_cast<std::int64_t>(i)));
    }
}

}  // namespace

Whole whole(WorkspaceSnapshot snapshot) {
    auto parts = std::exchange(snapshot.leftOut, std::nullopt).value_or(std::vector<LeftOutPart>());
    Whole result{std::move(snapshot), {}};
    // What belongs to something comes after it, and in each list the first ones first.
    sortStablyByKey(parts, [](const LeftOutPart& part) { return std::pair(part.kind, part.place); });
    for (LeftOutPart& part : parts) putBack(result, std::move(part));
    return result;
}

WorkspaceSnapshot without(Whole whole) {
    std::vector<LeftOutPart> parts;
    for (ApplicationSnapshot& application : whole.snapshot.applications) {
        const std::size_t before = parts.size();
        takeAddresses(application, whole.excluded, parts);
        takeWindows(application, whole.excluded, parts);
        if (parts.size() > before) dropEmptyContext(application);
    }
    takeOut(
        whole.snapshot.applications,
        [&](const ApplicationSnapshot& one, std::size_t) {
            return whole.excluded.apps.contains(one.bundleIdentifier);
        },
        [&](ApplicationSnapshot one, std::int64_t at) {
            parts.push_back({Kind::application, at, std::move(one)});
        });
    if (!parts.empty()) whole.snapshot.leftOut = std::move(parts);
    return std::move(whole.snapshot);
}

Exclusions recognised(const WorkspaceSnapshot& before, const WorkspaceSnapshot& captured) {
    Exclusions found;
    for (const LeftOutPart& part : before.leftOut.value_or(std::vector<LeftOutPart>()))
        for (const ApplicationSnapshot& application : captured.applications)
            recognise(part, application, found);
    return found;
}

WorkspaceSnapshot carriedOver(const WorkspaceSnapshot& before, WorkspaceSnapshot saved,
                              const Policy& policy) {
    std::vector<LeftOutPart> parts = before.leftOut.value_or(std::vector<LeftOutPart>());
    std::erase_if(parts, [&](LeftOutPart& part) {
        ApplicationSnapshot& application = part.application;
        if (policy.isNeverSaved(application.bundleIdentifier)) return true;
        application.windows =
            CaptureFilter::removingWebDocuments(policy.excludedDomains, std::move(application.windows));
        application.context =
            CaptureFilter::removingDomains(policy.excludedDomains, std::move(application.context));
        if (part.kind == Kind::address && !addressOf(part)) return true;
        return std::ranges::any_of(saved.applications, [&](const ApplicationSnapshot& application) {
            return holds(application, part);
        });
    });
    if (!parts.empty()) saved.leftOut = std::move(parts);
    return saved;
}

}  // namespace quillo::LeftOut
