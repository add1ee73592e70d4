// The keys of a scene's records in the order they are written, and the names of its enumerations.
#pragma once
#include <array>
#include <tuple>
#include <utility>

#include "WindowEngine/support/RecordFields.hpp"
#include "platform/simulated/Scene.hpp"

namespace quillo {

template <>
inline constexpr auto fieldsOf<simulated::Scene> =
    std::tuple{Field{"trusted", &simulated::Scene::trusted},
               Field{"displays", &simulated::Scene::displays},
               Field{"applications", &simulated::Scene::applications},
               Field{"faults", &simulated::Scene::faults},
               Field{"missingFolders", &simulated::Scene::missingFolders},
               Field{"opensWindows", &simulated::Scene::opensWindows},
               Field{"likeX11", &simulated::Scene::likeX11},
               Field{"refusedDocuments", &simulated::Scene::refusedDocuments},
               Field{"desktopRefusal", &simulated::Scene::desktopRefusal}};

template <>
inline constexpr auto fieldsOf<simulated::RefusedDocument> =
    std::tuple{Field{"document", &simulated::RefusedDocument::document},
               Field{"reason", &simulated::RefusedDocument::reason}};

template <>
inline constexpr auto fieldsOf<simulated::SceneDisplay> =
    std::tuple{Field{"id", &simulated::SceneDisplay::id},
               Field{"frame", &simulated::SceneDisplay::frame},
               Field{"visibleFrame", &simulated::SceneDisplay::visibleFrame, &simulated::SceneDisplay::frame},
               Field{"scale", &simulated::SceneDisplay::scale},
               Field{"desktops", &simulated::SceneDisplay::desktops},
               Field{"shownDesktop", &simulated::SceneDisplay::shownDesktop},
               Field{"model", &simulated::SceneDisplay::model},
               Field{"connector", &simulated::SceneDisplay::connector}};

template <>
inline constexpr auto fieldsOf<simulated::SceneApplication> =
    std::tuple{Field{"identifier", &simulated::SceneApplication::identifier},
               Field{"name", &simulated::SceneApplication::name, &simulated::SceneApplication::identifier},
               Field{"policy", &simulated::SceneApplication::policy},
               Field{"installed", &simulated::SceneApplication::installed},
               Field{"running", &simulated::SceneApplication::running},
               Field{"hidden", &simulated::SceneApplication::hidden},
               Field{"launchSeconds", &simulated::SceneApplication::launchSeconds},
               Field{"windows", &simulated::SceneApplication::windows},
               Field{"reopens", &simulated::SceneApplication::reopens},
               Field{"documentSeconds", &simulated::SceneApplication::documentSeconds},
               Field{"language", &simulated::SceneApplication::language},
               Field{"singleWindow", &simulated::SceneApplication::singleWindow}};

template <>
inline constexpr auto fieldsOf<simulated::SceneWindow> =
    std::tuple{Field{"title", &simulated::SceneWindow::title},
               Field{"subrole", &simulated::SceneWindow::subrole},
               Field{"document", &simulated::SceneWindow::document},
               Field{"frame", &simulated::SceneWindow::frame},
               Field{"minimized", &simulated::SceneWindow::minimized},
               Field{"fullscreen", &simulated::SceneWindow::fullscreen},
               Field{"display", &simulated::SceneWindow::display},
               Field{"desktop", &simulated::SceneWindow::desktop},
               Field{"listed", &simulated::SceneWindow::listed},
               Field{"minimumSize", &simulated::SceneWindow::minimumSize},
               Field{"maximumSize", &simulated::SceneWindow::maximumSize},
               Field{"cell", &simulated::SceneWindow::cell},
               Field{"opensAfter", &simulated::SceneWindow::opensAfter},
               Field{"closesAfter", &simulated::SceneWindow::closesAfter},
               Field{"tabGroup", &simulated::SceneWindow::tabGroup},
               Field{"unsaved", &simulated::SceneWindow::unsaved},
               Field{"tabs", &simulated::SceneWindow::tabs},
               Field{"private", &simulated::SceneWindow::privateBrowsing},
               Field{"toolbar", &simulated::SceneWindow::toolbar},
               Field{"addressFieldDepth", &simulated::SceneWindow::addressFieldDepth},
               Field{"everyDesktop", &simulated::SceneWindow::everyDesktop},
               Field{"immovable", &simulated::SceneWindow::immovable}};

template <>
inline constexpr auto fieldsOf<simulated::Fault> = std::tuple{
    Field{"kind", &simulated::Fault::kind},       Field{"application", &simulated::Fault::application},
    Field{"title", &simulated::Fault::title},     Field{"value", &simulated::Fault::value},
    Field{"after", &simulated::Fault::after},     Field{"seconds", &simulated::Fault::seconds},
    Field{"onWrite", &simulated::Fault::onWrite}, Field{"onScript", &simulated::Fault::onScript},
    Field{"step", &simulated::Fault::step}};

template <>
inline constexpr auto namesOf<ActivationPolicy> =
    std::array<std::pair<std::string_view, ActivationPolicy>, 3>{{
        {"regular", ActivationPolicy::regular},
        {"accessory", ActivationPolicy::accessory},
        {"prohibited", ActivationPolicy::prohibited},
    }};

template <>
inline constexpr auto namesOf<simulated::FaultKind> =
    std::array<std::pair<std::string_view, simulated::FaultKind>, 45>{{
        {"launchRefused", simulated::FaultKind::launchRefused},
        {"slowLaunch", simulated::FaultKind::slowLaunch},
        {"lateWindows", simulated::FaultKind::lateWindows},
        {"requestWindowRefused", simulated::FaultKind::requestWindowRefused},
        {"openWindowRefused", simulated::FaultKind::openWindowRefused},
        {"openWindowIgnored", simulated::FaultKind::openWindowIgnored},
        {"openWindowLate", simulated::FaultKind::openWindowLate},
        {"openWindowOpensTwo", simulated::FaultKind::openWindowOpensTwo},
        {"moveRefused", simulated::FaultKind::moveRefused},
        {"moveIgnored", simulated::FaultKind::moveIgnored},
        {"positionClamped", simulated::FaultKind::positionClamped},
        {"sizeClamped", simulated::FaultKind::sizeClamped},
        {"minimizeRefused", simulated::FaultKind::minimizeRefused},
        {"unminimizeRefused", simulated::FaultKind::unminimizeRefused},
        {"minimizeIgnored", simulated::FaultKind::minimizeIgnored},
        {"fullscreenRefused", simulated::FaultKind::fullscreenRefused},
        {"fullscreenIgnored", simulated::FaultKind::fullscreenIgnored},
        {"fullscreenSlow", simulated::FaultKind::fullscreenSlow},
        {"fullscreenFlickers", simulated::FaultKind::fullscreenFlickers},
        {"windowDrifts", simulated::FaultKind::windowDrifts},
        {"titleChanges", simulated::FaultKind::titleChanges},
        {"windowVanishes", simulated::FaultKind::windowVanishes},
        {"desktopMoveRefused", simulated::FaultKind::desktopMoveRefused},
        {"desktopMoveIgnored", simulated::FaultKind::desktopMoveIgnored},
        {"overviewRefused", simulated::FaultKind::overviewRefused},
        {"addDesktopMissing", simulated::FaultKind::addDesktopMissing},
        {"addDesktopRefused", simulated::FaultKind::addDesktopRefused},
        {"addDesktopIgnored", simulated::FaultKind::addDesktopIgnored},
        {"applicationHangs", simulated::FaultKind::applicationHangs},
        {"applicationCrashes", simulated::FaultKind::applicationCrashes},
        {"quitRefused", simulated::FaultKind::quitRefused},
        {"hideRefused", simulated::FaultKind::hideRefused},
        {"displayUnplugged", simulated::FaultKind::displayUnplugged},
        {"screenBlank", simulated::FaultKind::screenBlank},
        {"screenLocked", simulated::FaultKind::screenLocked},
        {"permissionRevoked", simulated::FaultKind::permissionRevoked},
        {"documentRefused", simulated::FaultKind::documentRefused},
        {"documentIgnored", simulated::FaultKind::documentIgnored},
        {"documentLate", simulated::FaultKind::documentLate},
        {"automationRefused", simulated::FaultKind::automationRefused},
        {"automationSlow", simulated::FaultKind::automationSlow},
        {"newWindowUnidentified", simulated::FaultKind::newWindowUnidentified},
        {"turnsPrivate", simulated::FaultKind::turnsPrivate},
        {"windowRaised", simulated::FaultKind::windowRaised},
        {"privateWindowOpens", simulated::FaultKind::privateWindowOpens},
    }};

}  // namespace quillo
