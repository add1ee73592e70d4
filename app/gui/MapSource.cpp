#include "app/gui/MapSource.hpp"

#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

constexpr std::size_t mostCharacters = 200;

WindowSnapshot drawnPart(const WindowSnapshot& window) {
    WindowSnapshot drawn;
    if (window.title) drawn.title = text::clipped(*window.title, mostCharacters);
    drawn.frame = window.frame;
    drawn.displayID = window.displayID;
    drawn.desktop = window.desktop;
    drawn.isMinimized = window.isMinimized;
    drawn.isFullscreen = window.isFullscreen;
    drawn.index = window.index;
    return drawn;
}

}  // namespace

MapSource drawnPart(const WorkspaceSnapshot& snapshot) {
    auto drawn = std::make_shared<WorkspaceSnapshot>();
    drawn->displays = snapshot.displays;
    drawn->desktops = snapshot.desktops;
    drawn->applications.reserve(snapshot.applications.size());
    for (const ApplicationSnapshot& application : snapshot.applications) {
        ApplicationSnapshot& part = drawn->applications.emplace_back();
        part.bundleIdentifier = application.bundleIdentifier;
        part.name = text::clipped(application.name, mostCharacters);
        part.windows.reserve(application.windows.size());
        for (const WindowSnapshot& window : application.windows) part.windows.push_back(drawnPart(window));
    }
    return drawn;
}

}  // namespace quillo
