// The saved records: plain copyable values that describe a named desktop. WorkspaceCoding writes and reads
// them; nothing here touches a platform.
#pragma once
#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/support/Instant.hpp"
#include "WindowEngine/support/Rect.hpp"
#include "WindowEngine/support/Url.hpp"
#include "WindowEngine/support/Uuid.hpp"

namespace quillo {

/// What happens to other running applications before a workspace is restored.
enum class CleanSlateMode { keep, hide, quit };
inline constexpr std::array allCleanSlateModes{CleanSlateMode::keep, CleanSlateMode::hide,
                                               CleanSlateMode::quit};
std::string_view storedValue(CleanSlateMode mode);  // "keep", "hide", "quit"
std::string_view label(CleanSlateMode mode);        // "Keep other apps", ...
std::optional<CleanSlateMode> cleanSlateMode(std::string_view storedValue);

struct DisplaySnapshot {
    std::string id;
    Rect frame;         // full bounds
    Rect visibleFrame;  // bounds less menu bar, dock and panels
    double scale = 1;   // backing pixels to a point
    bool isPrimary = false;
    std::optional<std::string> model = std::nullopt;      // shared by identical displays
    std::optional<std::string> connector = std::nullopt;  // where it was plugged in

    bool operator==(const DisplaySnapshot&) const = default;
};

/// One desktop (Space) of one display.
struct DesktopSnapshot {
    std::string displayID;
    std::int64_t index = 0;           // position among the display's ordinary desktops, from 0
    std::optional<std::string> uuid;  // the window server's identifier, where it has one

    /// displayID + "#desktop" + index; two desktops that differ only in uuid share it.
    std::string id() const;
    /// As people are told it, from 1; of an impossible index from a stranger's file the nearest possible one.
    std::int64_t number() const;
    auto operator<=>(const DesktopSnapshot&) const = default;
};

struct TabSnapshot {
    std::optional<std::string> title;
    std::optional<Url> documentURL;

    bool operator==(const TabSnapshot&) const = default;
};

struct WindowSnapshot {
    std::optional<std::vector<TabSnapshot>> tabs;  // native tabs folded into this window, itself first
    std::optional<std::string> title;
    std::optional<std::string> subrole;
    std::optional<Url> documentURL;
    Rect frame;
    std::optional<std::string> displayID;  // the display that holds it
    std::optional<DesktopSnapshot> desktop;
    Rect normalizedFrame;  // frame as fractions of its display's frame
    bool isMinimized = false;
    bool isFullscreen = false;
    std::optional<bool> fullscreenConfirmed;
    std::int64_t index = 0;  // place in its application's window list at capture

    bool operator==(const WindowSnapshot&) const = default;
};

struct ContextWindow {
    std::optional<std::int64_t> sourceWindowIndex;
    std::vector<Url> urls;  // in the application's order
    std::optional<std::uint32_t> sourceWindowID;
    /// The folder of the browser's profile that it belongs to, by its plain name; of a browser that tells.
    std::optional<std::string> profile = std::nullopt;

    bool operator==(const ContextWindow&) const = default;
};

/// What an integration recorded for one application.
struct AppContext {
    std::string adapter;
    std::vector<ContextWindow> windows;

    std::int64_t urlCount() const;
    bool operator==(const AppContext&) const = default;
};

struct ApplicationSnapshot {
    std::string bundleIdentifier;
    std::string name;
    std::optional<Url> applicationURL;
    std::vector<WindowSnapshot> windows;
    std::optional<AppContext> context;

    bool operator==(const ApplicationSnapshot&) const = default;
};

/// Something that a person left out of a saved workspace, kept so that it can be brought back (LeftOut).
struct LeftOutPart {
    enum class Kind { application, window, address };

    Kind kind = Kind::application;
    std::int64_t place = 0;  // in the list it was taken from, where nothing is left out of that
    /// Itself; of a window or an address the application with nothing else: a window with what is open in it,
    /// an address in its context window.
    ApplicationSnapshot application;

    bool operator==(const LeftOutPart&) const = default;
};

/// Where one window stands on another set of displays than that of its snapshot.
struct PlacedWindow {
    std::string application;  // bundleIdentifier
    std::int64_t index = 0;   // WindowSnapshot.index
    Rect frame;
    Rect normalizedFrame;
    std::optional<std::string> displayID;
    std::optional<DesktopSnapshot> desktop;
    bool isMinimized = false;
    bool isFullscreen = false;

    bool operator==(const PlacedWindow&) const = default;
};

/// How a workspace is arranged on a set of displays: no title, no document, no address.
struct DisplayLayout {
    std::vector<DisplaySnapshot> displays;
    std::optional<std::vector<DesktopSnapshot>> desktops;
    std::vector<PlacedWindow> windows;

    bool operator==(const DisplayLayout&) const = default;
};

struct WorkspaceSnapshot {
    Instant capturedAt{};
    std::vector<DisplaySnapshot> displays;
    std::optional<std::vector<DesktopSnapshot>> desktops;
    std::optional<std::vector<std::string>> notes;
    std::vector<ApplicationSnapshot> applications;
    /// Not among the applications: who acts on those, or counts them, need not know of it. Never empty.
    std::optional<std::vector<LeftOutPart>> leftOut = std::nullopt;
    /// On other sets of displays than `displays`, the latest first; no set twice. Never empty.
    std::optional<std::vector<DisplayLayout>> layouts = std::nullopt;

    // A sum that overflows ends the program: such a record cannot be real.
    std::int64_t desktopCount() const;
    std::int64_t windowCount() const;
    std::int64_t folderCount() const;  // Finder context locations
    std::int64_t tabCount() const;     // other context locations, and native tabs of all but Finder
    bool operator==(const WorkspaceSnapshot&) const = default;
};

struct Workspace {
    static constexpr std::int64_t currentSchemaVersion = 2;
    static constexpr std::array<std::string_view, 8> colors{"coral", "amber",  "lime", "teal",
                                                            "sky",   "violet", "rose", "slate"};

    std::int64_t schemaVersion = currentSchemaVersion;
    Uuid id;
    std::string name;
    std::string icon;
    std::string color;
    Instant createdAt{};
    Instant updatedAt{};
    std::optional<Instant> lastRestoredAt;
    std::optional<CleanSlateMode> cleanSlate;
    WorkspaceSnapshot snapshot;

    /// A new record: createdAt = updatedAt = now, never restored, no clean-slate choice.
    static Workspace create(Uuid id, std::string name, std::string icon, std::string color,
                            WorkspaceSnapshot snapshot, Instant now);
    /// The same desktop under a fresh random identity; restore time and clean-slate choice are dropped.
    Workspace importedCopy(std::string named, Instant now) const;
    bool operator==(const Workspace&) const = default;
};

/// A window as it is now; never stored. Fields mirror WindowSnapshot.
struct LiveWindowInfo {
    std::optional<std::string> title;
    std::optional<std::string> subrole;
    std::optional<Url> documentURL;
    Rect frame;
    bool isMinimized = false;
    bool isFullscreen = false;
    std::int64_t index = 0;

    bool operator==(const LiveWindowInfo&) const = default;
};

}  // namespace quillo
