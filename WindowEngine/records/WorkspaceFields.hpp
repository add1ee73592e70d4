// Which keys each record has in a document, in ascending order. A field is optional in the document exactly
// where the record's member is a std::optional.
#pragma once
#include <array>
#include <string_view>
#include <tuple>
#include <utility>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/RecordFields.hpp"

namespace quillo {

template <>
inline constexpr auto fieldsOf<Workspace> = std::tuple{Field{"cleanSlate", &Workspace::cleanSlate},
                                                       Field{"color", &Workspace::color},
                                                       Field{"createdAt", &Workspace::createdAt},
                                                       Field{"icon", &Workspace::icon},
                                                       Field{"id", &Workspace::id},
                                                       Field{"lastRestoredAt", &Workspace::lastRestoredAt},
                                                       Field{"name", &Workspace::name},
                                                       Field{"schemaVersion", &Workspace::schemaVersion},
                                                       Field{"snapshot", &Workspace::snapshot},
                                                       Field{"updatedAt", &Workspace::updatedAt}};

template <>
inline constexpr auto fieldsOf<WorkspaceSnapshot> =
    std::tuple{Field{"applications", &WorkspaceSnapshot::applications},
               Field{"capturedAt", &WorkspaceSnapshot::capturedAt},
               Field{"desktops", &WorkspaceSnapshot::desktops},
               Field{"displays", &WorkspaceSnapshot::displays},
               Field{"layouts", &WorkspaceSnapshot::layouts},
               Field{"leftOut", &WorkspaceSnapshot::leftOut},
               Field{"notes", &WorkspaceSnapshot::notes}};

template <>
inline constexpr auto fieldsOf<DisplayLayout> =
    std::tuple{Field{"desktops", &DisplayLayout::desktops}, Field{"displays", &DisplayLayout::displays},
               Field{"windows", &DisplayLayout::windows}};

template <>
inline constexpr auto fieldsOf<PlacedWindow> =
    std::tuple{Field{"application", &PlacedWindow::application},
               Field{"desktop", &PlacedWindow::desktop},
               Field{"displayID", &PlacedWindow::displayID},
               Field{"frame", &PlacedWindow::frame},
               Field{"index", &PlacedWindow::index},
               Field{"isFullscreen", &PlacedWindow::isFullscreen},
               Field{"isMinimized", &PlacedWindow::isMinimized},
               Field{"normalizedFrame", &PlacedWindow::normalizedFrame}};

template <>
inline constexpr auto namesOf<LeftOutPart::Kind> =
    std::array{std::pair<std::string_view, LeftOutPart::Kind>{"application", LeftOutPart::Kind::application},
               std::pair<std::string_view, LeftOutPart::Kind>{"window", LeftOutPart::Kind::window},
               std::pair<std::string_view, LeftOutPart::Kind>{"address", LeftOutPart::Kind::address}};

template <>
inline constexpr auto fieldsOf<LeftOutPart> =
    std::tuple{Field{"application", &LeftOutPart::application}, Field{"kind", &LeftOutPart::kind},
               Field{"place", &LeftOutPart::place}};

template <>
inline constexpr auto fieldsOf<DisplaySnapshot> =
    std::tuple{Field{"connector", &DisplaySnapshot::connector},
               Field{"frame", &DisplaySnapshot::frame},
               Field{"id", &DisplaySnapshot::id},
               Field{"isPrimary", &DisplaySnapshot::isPrimary},
               Field{"model", &DisplaySnapshot::model},
               Field{"scale", &DisplaySnapshot::scale},
               Field{"visibleFrame", &DisplaySnapshot::visibleFrame}};

template <>
inline constexpr auto fieldsOf<DesktopSnapshot> =
    std::tuple{Field{"displayID", &DesktopSnapshot::displayID}, Field{"index", &DesktopSnapshot::index},
               Field{"uuid", &DesktopSnapshot::uuid}};

template <>
inline constexpr auto fieldsOf<ApplicationSnapshot> =
    std::tuple{Field{"applicationURL", &ApplicationSnapshot::applicationURL},
               Field{"bundleIdentifier", &ApplicationSnapshot::bundleIdentifier},
               Field{"context", &ApplicationSnapshot::context}, Field{"name", &ApplicationSnapshot::name},
               Field{"windows", &ApplicationSnapshot::windows}};

template <>
inline constexpr auto fieldsOf<WindowSnapshot> =
    std::tuple{Field{"desktop", &WindowSnapshot::desktop},
               Field{"displayID", &WindowSnapshot::displayID},
               Field{"documentURL", &WindowSnapshot::documentURL},
               Field{"frame", &WindowSnapshot::frame},
               Field{"fullscreenConfirmed", &WindowSnapshot::fullscreenConfirmed},
               Field{"index", &WindowSnapshot::index},
               Field{"isFullscreen", &WindowSnapshot::isFullscreen},
               Field{"isMinimized", &WindowSnapshot::isMinimized},
               Field{"normalizedFrame", &WindowSnapshot::normalizedFrame},
               Field{"subrole", &WindowSnapshot::subrole},
               Field{"tabs", &WindowSnapshot::tabs},
               Field{"title", &WindowSnapshot::title}};

template <>
inline constexpr auto fieldsOf<TabSnapshot> =
    std::tuple{Field{"documentURL", &TabSnapshot::documentURL}, Field{"title", &TabSnapshot::title}};

template <>
inline constexpr auto fieldsOf<AppContext> =
    std::tuple{Field{"adapter", &AppContext::adapter}, Field{"windows", &AppContext::windows}};

template <>
inline constexpr auto fieldsOf<ContextWindow> = std::tuple{
    Field{"profile", &ContextWindow::profile}, Field{"sourceWindowID", &ContextWindow::sourceWindowID},
    Field{"sourceWindowIndex", &ContextWindow::sourceWindowIndex}, Field{"urls", &ContextWindow::urls}};

}  // namespace quillo
