// Desktops to draw: windows are given in hundredths of their display.
#pragma once
#include <string>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/records/Workspace.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo::samples {

class MapSample {
  public:
    MapSample& display(std::string id, Rect frame, bool isPrimary = false) {
        made.displays.push_back(samples::display(std::move(id), frame, isPrimary));
        return *this;
    }
    MapSample& desktops(const std::string& display, std::int64_t count) {
        if (!made.desktops) made.desktops.emplace();
        for (std::int64_t i = 0; i < count; ++i) made.desktops->push_back({display, i, std::nullopt});
        return *this;
    }
    /// A window of the last display, on its first desktop, unless `change` says something else.
    MapSample& window(const std::string& name, Rect hundredths, std::string title = {},
                      void (*change)(WindowSnapshot&) = nullptr) {
        const DisplaySnapshot& on = made.displays.back();
        WindowSnapshot window;
        window.title = std::move(title);
        window.frame = {on.frame.x + hundredths.x * on.frame.width / 100,
                        on.frame.y + hundredths.y * on.frame.height / 100,
                        hundredths.width * on.frame.width / 100, hundredths.height * on.frame.height / 100};
        window.displayID = on.id;
        window.desktop = DesktopSnapshot{on.id, 0, std::nullopt};
        ApplicationSnapshot& application = named(name);
        window.index = static_cast<std::int64_t>(application.windows.size());
        if (change) change(window);
        application.windows.push_back(window);
        return *this;
    }

    WorkspaceSnapshot made;

  private:
    ApplicationSnapshot& named(const std::string& name) {
        for (ApplicationSnapshot& application : made.applications) {
            if (application.name == name) return application;
        }
        return made.applications.emplace_back(
            ApplicationSnapshot{"org.example." + name, name, std::nullopt, {}, std::nullopt});
    }
};

inline void minimized(WindowSnapshot& window) {
    window.isMinimized = true;
}
inline void onSecondDesktop(WindowSnapshot& window) {
    window.desktop->index = 1;
}
inline void inFullScreen(WindowSnapshot& window) {
    window.isFullscreen = true;
    window.desktop.reset();
}
inline std::string keyOf(const std::string& name, std::int64_t index = 0) {
    return CaptureFilter::windowKey("org.example." + name, index);
}

/// Two displays of different size, three desktops on one, a minimized window.
inline WorkspaceSnapshot productLaunch() {
    MapSample sample;
    sample.display("large", {0, 0, 2560, 1440}, true).desktops("large", 3);
    sample.window("Browser", {2, 5, 50, 87}, "Press kit - Start page")
        .window("Keynote", {33, 14, 36, 53}, "Launch deck")
        .window("Notes", {66, 5, 31, 40}, "Launch checklist")
        .window("Calendar", {60, 36, 37, 56}, "Calendar")
        .window("Preview", {30, 30, 30, 30}, "Poster", minimized)
        .window("TextEdit", {10, 10, 50, 50}, "Quotes", onSecondDesktop);
    sample.display("small", {2560, 460, 1512, 980}).desktops("small", 1);
    sample.window("Mail", {3, 6, 62, 80}, "Inbox").window("Messages", {52, 22, 46, 65}, "Launch team");
    return sample.made;
}

/// One display, and a full-screen window on the other.
inline WorkspaceSnapshot withFullScreen() {
    MapSample sample;
    sample.display("large", {0, 0, 2560, 1440}, true).desktops("large", 3);
    sample.window("Editor", {2, 5, 57, 90}, "main.cpp")
        .window("Simulator", {47, 20, 14, 60})
        .window("Browser", {62, 5, 36, 43})
        .window("Terminal", {62, 50, 36, 43});
    sample.display("small", {2560, 460, 1512, 980}).desktops("small", 1);
    sample.window("Music", {0, 0, 100, 100}, "Music", inFullScreen);
    return sample.made;
}

/// 60 windows of 12 applications all over one display.
inline WorkspaceSnapshot crowded() {
    MapSample sample;
    sample.display("large", {0, 0, 2560, 1440}, true).desktops("large", 1);
    Random random(7);
    for (int i = 0; i < 60; ++i) {
        const std::string name = "Application " + std::to_string(i % 12);
        sample.window(
            name, {random.length(0, 60), random.length(3, 50), random.length(15, 40), random.length(15, 50)},
            "Document " + std::to_string(i));
    }
    for (int i = 0; i < 9; ++i) sample.window("Preview", {0, 0, 30, 30}, "Picture", minimized);
    return sample.made;
}

}  // namespace quillo::samples
