#include "app/WorkspaceContents.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/integrations/Adapters.hpp"
#include "WindowEngine/records/ExcludedDomains.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo::WorkspaceContents {
namespace {

constexpr std::size_t longestAddress = 8192;
constexpr std::string_view webOnly = "Only http and https addresses can be opened";

/// The integration that opens web addresses in the application; null where there is none.
const ContextAdapter* browserAdapter(const ApplicationSnapshot& application) {
    for (const ContextAdapter* adapter : Adapters::all()) {
        if (adapter->id() != "finder" && adapter->bundleIdentifiers().contains(application.bundleIdentifier))
            return adapter;
    }
    return nullptr;
}

bool hasDisplayOf(const WorkspaceSnapshot& workspace, const WorkspaceSnapshot& current,
                  const WindowSnapshot& window) {
    const auto is = [&](const DisplaySnapshot& display) { return display.id == window.displayID; };
    const auto now = std::ranges::find_if(current.displays, is);
    const auto then = std::ranges::find_if(workspace.displays, is);
    return now != current.displays.end() && then != workspace.displays.end() && now->frame == then->frame;
}

}  // namespace

ApplicationSnapshot fitting(ApplicationSnapshot application, const WorkspaceSnapshot& workspace,
                            const WorkspaceSnapshot& current) {
    const bool fits = std::ranges::all_of(application.windows, [&](const WindowSnapshot& window) {
        return hasDisplayOf(workspace, current, window);
    });
    if (!fits) {
        application.windows.clear();
        application.context.reset();
    }
    for (WindowSnapshot& window : application.windows) {
        if (!window.desktop || !workspace.desktops ||
            std::ranges::find(*workspace.desktops, *window.desktop) == workspace.desktops->end())
            window.desktop.reset();
    }
    return application;
}

Result<void> add(WorkspaceSnapshot& snapshot, ApplicationSnapshot application) {
    LeftOut::Whole whole = LeftOut::whole(snapshot);
    const bool brought = whole.excluded.apps.erase(application.bundleIdentifier) > 0;
    auto& applications = whole.snapshot.applications;
    const bool known = std::ranges::find(applications, application.bundleIdentifier,
                                         &ApplicationSnapshot::bundleIdentifier) != applications.end();
    if (known && !brought) return fail(ErrorKind::refused, "it is in this workspace already");
    if (!known) applications.push_back(std::move(application));
    snapshot = LeftOut::without(std::move(whole));
    return {};
}

Result<Url> webAddress(std::string_view typed, const std::set<std::string>& excludedDomains) {
    std::string text = text::trim(typed);
    if (text.empty()) return fail(ErrorKind::invalidData, "Type a web address, such as example.com");
    if (!text.contains("://")) {
        // "localhost:8080" has a port and no scheme; "mailto:somebody" the other way round.
        const std::string_view start = std::string_view(text).substr(0, text.find_first_of("/?#"));
        const bool otherScheme =
            start.contains(':') && !std::ranges::all_of(start.substr(start.find(':') + 1),
                                                        [](char c) { return c >= '0' && c <= '9'; });
        if (otherScheme) return fail(ErrorKind::refused, std::string(webOnly));
        text = "https://" + text;
    }
    const std::optional<Url> url = Url::parse(text);
    const bool usable = url && url->host() && text.size() <= longestAddress;
    if (!usable) return fail(ErrorKind::invalidData, "This is not a web address");
    if (!url->isWeb()) return fail(ErrorKind::refused, std::string(webOnly));
    const std::string authority = text.substr(text.find("://") + 3);
    if (authority.substr(0, authority.find_first_of("/?#")).contains('@'))
        return fail(ErrorKind::refused, "An address with a user name or password in it is not saved");
    if (ExcludedDomains(excludedDomains).contain(*url))
        return fail(ErrorKind::refused, "This site is among the excluded websites in Settings");
    return *url;
}

std::vector<std::string> browsers(const WorkspaceSnapshot& snapshot) {
    std::vector<std::string> identifiers;
    for (const ApplicationSnapshot& application : snapshot.applications) {
        if (browserAdapter(application) && !std::ranges::count(identifiers, application.bundleIdentifier))
            identifiers.push_back(application.bundleIdentifier);
    }
    return identifiers;
}

Result<void> addAddress(WorkspaceSnapshot& snapshot, std::string_view browser, const Url& address) {
    LeftOut::Whole whole = LeftOut::whole(snapshot);
    const auto found =
        std::ranges::find(whole.snapshot.applications, browser, &ApplicationSnapshot::bundleIdentifier);
    const ContextAdapter* adapter =
        found != whole.snapshot.applications.end() ? browserAdapter(*found) : nullptr;
    if (!adapter || whole.excluded.apps.contains(found->bundleIdentifier))
        return fail(ErrorKind::notFound, "The browser is not in this workspace any more");
    if (!found->context) found->context = AppContext{adapter->id(), {}};
    auto& windows = found->context->windows;
    for (const ContextWindow& window : windows) {
        if (std::ranges::find(window.urls, address) != window.urls.end())
            return fail(ErrorKind::refused, "This address is in the workspace already");
    }
    if (windows.empty()) {
        const auto& own = found->windows;
        windows.push_back({own.empty() ? std::nullopt : std::optional(own.front().index), {}, {}});
    }
    windows.front().urls.push_back(address);
    snapshot = LeftOut::without(std::move(whole));
    return {};
}

}  // namespace quillo::WorkspaceContents
