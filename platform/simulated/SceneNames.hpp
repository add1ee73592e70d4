// Names of the enumerations of a scene, in both directions.
#pragma once
#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>

#include "platform/simulated/Scene.hpp"

namespace quillo::simulated {

template <class T>
using NameTable = std::span<const std::pair<std::string_view, T>>;

inline constexpr std::array<std::pair<std::string_view, ActivationPolicy>, 3> policyNames{{
    {"regular", ActivationPolicy::regular},
    {"accessory", ActivationPolicy::accessory},
    {"prohibited", ActivationPolicy::prohibited},
}};

inline constexpr std::array<std::pair<std::string_view, FaultKind>, 36> faultNames{{
    {"launchRefused", FaultKind::launchRefused},
    {"slowLaunch", FaultKind::slowLaunch},
    {"lateWindows", FaultKind::lateWindows},
    {"requestWindowRefused", FaultKind::requestWindowRefused},
    {"moveRefused", FaultKind::moveRefused},
    {"moveIgnored", FaultKind::moveIgnored},
    {"positionClamped", FaultKind::positionClamped},
    {"sizeClamped", FaultKind::sizeClamped},
    {"minimizeRefused", FaultKind::minimizeRefused},
    {"unminimizeRefused", FaultKind::unminimizeRefused},
    {"minimizeIgnored", FaultKind::minimizeIgnored},
    {"fullscreenRefused", FaultKind::fullscreenRefused},
    {"fullscreenIgnored", FaultKind::fullscreenIgnored},
    {"fullscreenSlow", FaultKind::fullscreenSlow},
    {"fullscreenFlickers", FaultKind::fullscreenFlickers},
    {"titleChanges", FaultKind::titleChanges},
    {"windowVanishes", FaultKind::windowVanishes},
    {"desktopMoveRefused", FaultKind::desktopMoveRefused},
    {"desktopMoveIgnored", FaultKind::desktopMoveIgnored},
    {"overviewRefused", FaultKind::overviewRefused},
    {"addDesktopMissing", FaultKind::addDesktopMissing},
    {"addDesktopRefused", FaultKind::addDesktopRefused},
    {"addDesktopIgnored", FaultKind::addDesktopIgnored},
    {"applicationHangs", FaultKind::applicationHangs},
    {"applicationCrashes", FaultKind::applicationCrashes},
    {"quitRefused", FaultKind::quitRefused},
    {"hideRefused", FaultKind::hideRefused},
    {"displayUnplugged", FaultKind::displayUnplugged},
    {"permissionRevoked", FaultKind::permissionRevoked},
    {"documentRefused", FaultKind::documentRefused},
    {"documentIgnored", FaultKind::documentIgnored},
    {"documentLate", FaultKind::documentLate},
    {"automationRefused", FaultKind::automationRefused},
    {"automationSlow", FaultKind::automationSlow},
    {"newWindowUnidentified", FaultKind::newWindowUnidentified},
    {"turnsPrivate", FaultKind::turnsPrivate},
}};

template <class T>
std::optional<T> valueNamed(std::string_view name, NameTable<T> names) {
    const auto found = std::ranges::find(names, name, &std::pair<std::string_view, T>::first);
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

template <class T>
std::string_view nameOf(T value, NameTable<T> names) {
    return std::ranges::find(names, value, &std::pair<std::string_view, T>::second)->first;
}

template <class T>
std::string listed(NameTable<T> names) {
    std::string text;
    for (const auto& entry : names) text += (text.empty() ? "" : ", ") + std::string(entry.first);
    return text;
}

}  // namespace quillo::simulated
