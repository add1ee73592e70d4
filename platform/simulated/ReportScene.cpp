#include "platform/simulated/ReportScene.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "WindowEngine/integrations/Adapters.hpp"
#include "WindowEngine/records/NativeTabs.hpp"
#include "WindowEngine/records/OwnIdentity.hpp"
#include "WindowEngine/restore/ContextRestore.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"

namespace quillo::simulated {
namespace {

/// Programs that every distribution or Mac has; beside those that Quillo treats in a way of their own.
bool everybodyKnows(const std::string& identifier) {
    static const std::set<std::string, std::less<>> known{"Thunar",
                                                          "caja",
                                                          "code",
                                                          "com.apple.Notes",
                                                          "com.apple.Preview",
                                                          "com.apple.TextEdit",
                                                          "com.apple.iCal",
                                                          "com.apple.mail",
                                                          "debian-uxterm",
                                                          "debian-xterm",
                                                          "gimp",
                                                          "libreoffice-calc",
                                                          "libreoffice-impress",
                                                          "libreoffice-writer",
                                                          "nemo",
                                                          "org.gnome.Evince",
                                                          "org.gnome.Nautilus",
                                                          "org.gnome.Terminal",
                                                          "org.gnome.TextEditor",
                                                          "org.gnome.gedit",
                                                          "org.inkscape.Inkscape",
                                                          "org.kde.dolphin",
                                                          "org.kde.kate",
                                                          "org.kde.konsole",
                                                          "org.xfce.mousepad",
                                                          "pcmanfm",
                                                          "thunar",
                                                          "thunderbird",
                                                          "xfce4-terminal",
                                                          "xterm"};
    if (identifier == ownBundleIdentifier || known.contains(identifier)) return true;
    if (NativeTabs::applications().contains(identifier)) return true;
    return std::ranges::any_of(Adapters::all(), [&](const ContextAdapter* adapter) {
        return adapter->bundleIdentifiers().contains(identifier);
    });
}

/// "Default", "Profile 2": as a browser names the folders itself.
bool isUsualProfile(std::string_view folder) {
    constexpr std::string_view numbered = "Profile ";
    return folder == "Default" || (folder.starts_with(numbered) &&
                                   folder.find_first_not_of("0123456789", numbered.size()) == folder.npos);
}

class Disguise {
  public:
    Disguise(Pseudonyms& names, Applications& applications) : names_(names), applications_(applications) {}

    std::string identifier(const std::string& identifier) {
        return everybodyKnows(identifier) ? identifier : "app." + names_.word(identifier);
    }
    /// That of the installed application, where everybody knows it, is its identifier.
    std::string name(const std::string& bundleIdentifier, const std::string& name) {
        const bool known =
            everybodyKnows(bundleIdentifier) && applications_.name(bundleIdentifier).value_or("") == name;
        return known ? bundleIdentifier : names_.word(name);
    }
    std::string display(const std::string& id) {
        return displays_.try_emplace(id, fmt::format("display-{}", displays_.size() + 1)).first->second;
    }
    void knowDesktop(const std::string& uuid, std::string as) { desktops_[uuid] = std::move(as); }
    std::optional<std::string> desktop(const std::optional<std::string>& uuid) {
        if (!uuid) return std::nullopt;
        const auto known = desktops_.find(*uuid);
        return known == desktops_.end() ? names_.word(*uuid) : known->second;
    }
    std::optional<std::string> title(const std::optional<std::string>& title) {
        return title ? std::optional(names_.title(*title)) : std::nullopt;
    }
    std::optional<Url> url(const std::optional<Url>& url) {
        return url ? std::optional(names_.url(*url)) : std::nullopt;
    }
    Url url(const Url& url) { return names_.url(url); }
    std::string word(const std::string& text) { return names_.word(text); }
    std::optional<std::string> word(const std::optional<std::string>& text) {
        return text ? std::optional(names_.word(*text)) : std::nullopt;
    }

  private:
    Pseudonyms& names_;
    Applications& applications_;
    std::map<std::string, std::string> displays_, desktops_;
};

void disguise(Disguise& as, DesktopSnapshot& desktop) {
    desktop.displayID = as.display(desktop.displayID);
    desktop.uuid = as.desktop(desktop.uuid);
}

/// Of a snapshot, or of a layout.
void disguiseDisplays(Disguise& as, auto& arranged) {
    for (DisplaySnapshot& display : arranged.displays) {
        display.id = as.display(display.id);
        display.model = as.word(display.model);  // may hold a serial number
        display.connector = as.word(display.connector);
    }
    if (!arranged.desktops) return;
    for (DesktopSnapshot& desktop : *arranged.desktops) disguise(as, desktop);
}

/// Of a window, or of its place in a layout.
void disguisePlace(Disguise& as, auto& window) {
    if (window.displayID) window.displayID = as.display(*window.displayID);
    if (window.desktop) disguise(as, *window.desktop);
}

void disguise(Disguise& as, DisplayLayout& layout) {
    disguiseDisplays(as, layout);
    for (PlacedWindow& window : layout.windows) {
        window.application = as.identifier(window.application);
        disguisePlace(as, window);
    }
}

void disguise(Disguise& as, WindowSnapshot& window) {
    window.title = as.title(window.title);
    window.documentURL = as.url(window.documentURL);
    disguisePlace(as, window);
    if (!window.tabs) return;
    for (TabSnapshot& tab : *window.tabs) {
        tab.title = as.title(tab.title);
        tab.documentURL = as.url(tab.documentURL);
    }
}

void disguise(Disguise& as, AppContext& context) {
    if (!Adapters::named(context.adapter)) context.adapter = as.word(context.adapter);
    for (ContextWindow& window : context.windows) {
        for (Url& url : window.urls) url = as.url(url);
        if (window.profile && !isUsualProfile(*window.profile)) window.profile = as.word(*window.profile);
    }
}

void disguise(Disguise& as, Workspace& workspace) {
    workspace.id = Uuid::random();
    workspace.name = "Workspace";
    workspace.icon = "square.stack.3d.up";
    workspace.color = Workspace::colors.back();
    workspace.createdAt = workspace.updatedAt = {};
    workspace.lastRestoredAt.reset();
    WorkspaceSnapshot& snapshot = workspace.snapshot;
    snapshot.capturedAt = {};
    snapshot.notes.reset();
    snapshot.leftOut.reset();
    disguiseDisplays(as, snapshot);
    if (snapshot.layouts)
        for (DisplayLayout& layout : *snapshot.layouts) disguise(as, layout);
    for (ApplicationSnapshot& application : snapshot.applications) {
        application.name = as.name(application.bundleIdentifier, application.name);
        application.bundleIdentifier = as.identifier(application.bundleIdentifier);
        application.applicationURL.reset();  // where it is installed the scene says
        for (WindowSnapshot& window : application.windows) disguise(as, window);
        if (application.context) disguise(as, *application.context);
    }
}

std::vector<std::string> titlesIn(const WorkspaceSnapshot& snapshot, const RestorePreview& preview) {
    std::vector<std::string> titles;
    const auto add = [&titles](const std::optional<std::string>& title) {
        if (title) titles.push_back(*title);
    };
    for (const ApplicationSnapshot& application : snapshot.applications) {
        for (const WindowSnapshot& window : application.windows) {
            add(window.title);
            for (const TabSnapshot& tab : window.tabs.value_or(std::vector<TabSnapshot>())) add(tab.title);
        }
    }
    for (const PlannedApplication& application : preview.applications)
        for (const LiveWindow& window : application.live) add(window.info.title);
    return titles;
}

/// What one application shows by its integration.
void placeTabs(Disguise& as, SceneApplication& scene, const PlannedApplication& application,
               const AdapterCaptureResult& shown) {
    const auto sceneWindow = [&](const LiveWindow& live) -> SceneWindow& {
        return scene.windows[static_cast<std::size_t>(live.info.index)];
    };
    for (const LiveWindow& live : application.live)
        sceneWindow(live).privateBrowsing = shown.excludedWindowIndices.contains(live.info.index);
    for (const ContextWindow& tabs : shown.context.value_or(AppContext()).windows) {
        const auto isIts = [&](const LiveWindow& live) {
            if (tabs.sourceWindowID) return live.windowID == tabs.sourceWindowID;
            return tabs.sourceWindowIndex == live.info.index;
        };
        const auto isFree = [&](const LiveWindow& live) {
            return sceneWindow(live).tabs.empty() && !sceneWindow(live).privateBrowsing;
        };
        auto its = std::ranges::find_if(application.live, isIts);
        if (its == application.live.end()) its = std::ranges::find_if(application.live, isFree);
        if (its == application.live.end()) continue;
        for (const Url& url : tabs.urls) sceneWindow(*its).tabs.push_back(as.url(url).string());
    }
}

class Builder {
  public:
    Builder(DesktopAccess& desktop, const RestorePreview& preview, Disguise& as)
        : platform_(desktop.platform),
          preview_(preview),
          as_(as),
          desktops_(DesktopSpaces::current(desktop)) {
        scene_.likeX11 = !platform_.accessibility.listsTabsAsWindows();
        if (const Capability making = platform_.windowServer.desktopCreation(); !making)
            scene_.desktopRefusal = making.reason();
        addDisplays();
        addApplications();
    }

    SceneApplication* application(const std::string& identifier) {
        const auto found =
            std::ranges::find(scene_.applications, as_.identifier(identifier), &SceneApplication::identifier);
        return found == scene_.applications.end() ? nullptr : &*found;
    }
    Scene& scene() { return scene_; }

  private:
    void addDisplays() {
        for (const DisplaySnapshot& display : preview_.displays) {
            const auto count = DesktopSpaces::desktopCount(desktops_, display.id);
            scene_.displays.push_back({.id = as_.display(display.id),
                                       .frame = display.frame,
                                       .visibleFrame = display.visibleFrame,
                                       .scale = display.scale,
                                       .desktops = std::max<std::int64_t>(count, 1),
                                       .shownDesktop = shownOn(display.id),
                                       .model = as_.word(display.model),
                                       .connector = as_.word(display.connector)});
        }
        // As the simulated window server calls them.
        for (std::size_t i = 0; i < desktops_.size(); ++i)
            if (desktops_[i].uuid) as_.knowDesktop(*desktops_[i].uuid, fmt::format("space-{}", i + 1));
    }

    /// Where nobody tells, the one that explains best why windows are listed in their order: those of
    /// desktops that are not in front come last.
    std::int64_t shownOn(const std::string& displayID) {
        const std::vector<SpaceID> shown = platform_.windowServer.spacesInFront();
        std::map<std::int64_t, std::int64_t> unexplained;  // by number
        for (const NativeDesktop& desktop : desktops_) {
            if (desktop.displayID != displayID) continue;
            if (std::ranges::find(shown, desktop.id) != shown.end()) return desktop.index;
            unexplained[desktop.index] = 0;
            for (const PlannedApplication& application : preview_.applications)
                unexplained[desktop.index] += outOfOrder(application, displayID, desktop.id);
        }
        const auto best =
            std::ranges::min_element(unexplained, {}, [](const auto& one) { return one.second; });
        return best == unexplained.end() ? 0 : best->first;
    }

    /// How many windows would be out of sight, and still stand before one that is not, if this desktop were
    /// in front on the display.
    std::int64_t outOfOrder(const PlannedApplication& application, const std::string& displayID,
                            SpaceID inFront) {
        std::int64_t count = 0, hidden = 0;
        for (std::size_t i = 0; i < application.live.size() && i < application.liveSpaces.size(); ++i) {
            const LiveWindowInfo& info = application.live[i].info;
            const std::vector<SpaceID>& spaces = application.liveSpaces[i];
            const auto on = std::ranges::find_if(desktops_, [&](const NativeDesktop& one) {
                return !spaces.empty() && one.id == spaces.front() && one.displayID == displayID;
            });
            const bool seen = info.isMinimized || info.isFullscreen || spaces == std::vector{inFront};
            if (seen)
                count += hidden;
            else if (on != desktops_.end())
                ++hidden;
        }
        return count;
    }

    void addApplications() {
        const std::vector<std::string> own = platform_.applications.ownIdentifiers();
        for (const RunningApplication& running : platform_.applications.running()) {
            if (!running.bundleIdentifier || application(*running.bundleIdentifier)) continue;
            const PlannedApplication* saved = planned(*running.bundleIdentifier);
            if (!saved && std::ranges::find(own, *running.bundleIdentifier) != own.end()) continue;
            SceneApplication& one = add(*running.bundleIdentifier, running.localizedName.value_or(""));
            one.policy = running.activationPolicy;
            if (saved) addWindows(one, *saved);
        }
        for (const PlannedApplication& one : preview_.applications) {
            const std::string& identifier = one.saved->bundleIdentifier;
            addRefused(one);
            if (one.presence != Presence::installed || application(identifier)) continue;
            SceneApplication& scene = add(identifier, one.saved->name);
            scene.running = false;
            scene.installed = true;
        }
    }

    SceneApplication& add(const std::string& identifier, const std::string& name) {
        Applications& applications = platform_.applications;
        const auto installed = applications.name(identifier);
        SceneApplication& one = scene_.applications.emplace_back();
        one.identifier = as_.identifier(identifier);
        one.name = as_.name(identifier, installed.value_or(name));
        one.installed = applications.location(identifier).has_value();
        one.singleWindow = !applications.openingWindows(identifier);
        if (!one.singleWindow) scene_.opensWindows = true;
        return one;
    }

    const PlannedApplication* planned(const std::string& identifier) const {
        const auto found = std::ranges::find_if(preview_.applications, [&](const PlannedApplication& one) {
            return one.saved->bundleIdentifier == identifier;
        });
        return found == preview_.applications.end() ? nullptr : &*found;
    }

    void addWindows(SceneApplication& scene, const PlannedApplication& application) {
        if (application.hangs)
            scene_.faults.push_back({.kind = FaultKind::applicationHangs,
                                     .application = scene.identifier,
                                     .title = {},
                                     .value = {}});
        for (std::size_t i = 0; i < application.live.size(); ++i) {
            const auto place = static_cast<std::size_t>(application.live[i].info.index);
            while (scene.windows.size() < place) scene.windows.push_back(unseen());
            scene.windows.push_back(window(application.live[i], application.liveSpaces.empty()
                                                                    ? std::vector<SpaceID>()
                                                                    : application.liveSpaces[i]));
        }
        if (!platform_.accessibility.listsTabsAsWindows() ||
            !NativeTabs::applications().contains(application.saved->bundleIdentifier))
            return;
        for (SceneWindow& one : scene.windows)  // native tabs stand in one place
            for (const SceneWindow& other : scene.windows)
                if (&one != &other && one.frame == other.frame && one.desktop == other.desktop)
                    one.tabGroup = fmt::format("{}-{}-{}-{}", one.frame.x, one.frame.y, one.frame.width,
                                               one.frame.height);
    }

    /// One that stands for nothing, and keeps the place of others in the list: a private one.
    static SceneWindow unseen() {
        SceneWindow window;
        window.frame = {0, 0, 200, 200};
        window.minimized = true;  // so that it is listed
        window.privateBrowsing = true;
        return window;
    }

    SceneWindow window(const LiveWindow& live, const std::vector<SpaceID>& spaces) {
        const LiveWindowInfo& info = live.info;
        SceneWindow window;
        window.title = as_.title(info.title);
        if (info.subrole) window.subrole = *info.subrole;
        if (info.documentURL) window.document = as_.url(*info.documentURL).string();
        window.frame = info.frame;
        window.minimized = info.isMinimized;
        window.fullscreen = info.isFullscreen;
        window.everyDesktop = spaces.size() > 1;
        for (const NativeDesktop& desktop : desktops_) {
            if (spaces.empty() || desktop.id != spaces.front()) continue;
            window.desktop = desktop.index;
            if (!scene_.likeX11) window.display = as_.display(desktop.displayID);
        }
        if (const Capability placement = platform_.accessibility.placement(live.element); !placement)
            window.immovable = placement.reason();
        return window;
    }

    void addRefused(const PlannedApplication& application) {
        for (const SavedDocument& document : application.reopening.documents.refused)
            scene_.refusedDocuments.push_back({as_.url(document.url).string(), document.refusal});
    }

    const Platform& platform_;
    const RestorePreview& preview_;
    Disguise& as_;
    const std::vector<NativeDesktop> desktops_;
    Scene scene_;
};

}  // namespace

Task<ReportScene> reportScene(DesktopAccess& desktop, Workspace workspace, const RestorePreview& preview,
                              Restore::Options options, Pseudonyms& names) {
    names.learnTitles(titlesIn(workspace.snapshot, preview));
    Disguise as(names, desktop.platform.applications);
    Builder builder(desktop, preview, as);
    for (const PlannedApplication& application : preview.applications) {
        const std::string& identifier = application.saved->bundleIdentifier;
        const ContextAdapter* adapter =
            Restore::contextAdapter(desktop.platform, *application.saved, options.enabledAdapters);
        if (!adapter || application.presence != Presence::running) continue;
        const AdapterCaptureResult shown = co_await adapter->capture(desktop, identifier);
        SceneApplication* const scene = builder.application(identifier);
        if (!scene) continue;
        if (shown.failure)
            builder.scene().faults.push_back({.kind = FaultKind::automationRefused,
                                              .application = scene->identifier,
                                              .title = {},
                                              .value = {}});
        else
            placeTabs(as, *scene, application, shown);
    }
    disguise(as, workspace);
    co_return ReportScene{std::move(workspace), std::move(builder.scene())};
}

}  // namespace quillo::simulated
