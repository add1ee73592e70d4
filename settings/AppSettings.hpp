// What the person has chosen: one plain value, kept as one JSON document in the defaults. Shared by the
// application and the command line.
#pragma once
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/support/Uuid.hpp"
#include "platform/services/Appearance.hpp"
#include "platform/services/UserDefaults.hpp"
#include "settings/Shortcut.hpp"
#include "settings/WorkspaceAutomation.hpp"

namespace quillo {

/// What closing the window does where no tray keeps the program at hand.
enum class WithoutTray : std::uint8_t { ask, keepRunning, quit };

struct AppSettings {
    static constexpr std::string_view defaultsKey = "settings";

    std::int64_t autoSnapshotMinutes = 0;  // between automatic session snapshots; below 1 is off
    bool onboarded = false;                // the introduction of the first start is done
    std::set<std::string> enabledAdapters = {};
    std::set<std::string> excludedBundleIdentifiers = {};
    std::set<std::string> excludedDomains = {};  // each with its subdomains
    bool shortcutsEnabled = true;
    std::map<std::string, Shortcut> shortcuts = {};  // by the action's number in decimal
    Appearance appearance = Appearance::system;
    WithoutTray withoutTray = WithoutTray::ask;
    static constexpr std::int64_t mostLateMinutes = 60;
    std::int64_t lateMinutes = 5;  // in which windows that open after a restore are placed; 0: none are
    bool offersLayouts = true;     // when displays come that a workspace was arranged on
    std::set<std::string> arrangedWorkspaces = {};  // identifiers of those that then need no offer
    std::map<std::string, WorkspaceAutomation> automation = {};  // by the workspace's identifier, lower case

    bool operator==(const AppSettings&) const = default;

    /// The stored settings; the defaults where there are none, or none that can be read.
    static AppSettings load(const UserDefaults& defaults);
    /// On failure what was stored before stays.
    Result<void> save(UserDefaults& defaults) const;

    /// A missing field takes its default; one of the wrong type makes the whole text undecodable: absent.
    static std::optional<AppSettings> decode(std::string_view json);
    std::string encode() const;

    /// The chosen or the default combination.
    Shortcut shortcut(HotKeyAction action) const;

    /// The usual for a workspace that nothing was chosen for.
    WorkspaceAutomation automationOf(const Uuid& workspace) const;
    /// One that comes back at login takes the place of the one that did.
    void setAutomation(const Uuid& workspace, const WorkspaceAutomation& chosen);

    /// What every capture of the person's desktop is taken with; `recoverHidden` keeps its default.
    Capture::Options captureOptions() const;

    /// Adds the hosts in what the person typed or pasted, with white space or commas between them
    /// ("HTTPS://Shop.example:8080/cart" adds "shop.example"). Refused with what would be right, and nothing
    /// changes, where there is none, or something among them is none; a single word is one only where it
    /// comes with a scheme, a port or a path, for it is a name without its ending as a rule.
    Result<void> excludeDomains(std::string_view typed);
};

}  // namespace quillo
