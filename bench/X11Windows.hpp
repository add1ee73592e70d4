// What the benchmarks on a real X server share: windows of other processes, and how times are taken.
#pragma once
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "WindowEngine/services/SystemLog.hpp"

namespace quillo::bench {

/// Windows of 200 x 150 in a process of their own, which ends with this one: an application by their class.
inline pid_t startWindows(const std::string& className, int count) {
    const pid_t child = fork();
    if (child != 0) return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    auto* xcb = xcb_connect(nullptr, nullptr);
    xcb_ewmh_connection_t ewmh{};
    xcb_ewmh_init_atoms_replies(&ewmh, xcb_ewmh_init_atoms(xcb, &ewmh), nullptr);
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data;
    const std::string classes = className + '\0' + className + '\0';
    for (int i = 0; i < count; ++i) {
        const auto window = xcb_generate_id(xcb);
        xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, screen->root, static_cast<std::int16_t>(i * 5),
                          40, 200, 150, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        const auto title =
            className + " document " + std::to_string(i) + " \xE2\x80\x94 a title of ordinary length";
        xcb_ewmh_set_wm_name(&ewmh, window, static_cast<std::uint32_t>(title.size()), title.c_str());
        xcb_ewmh_set_wm_pid(&ewmh, window, static_cast<std::uint32_t>(getpid()));
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(classes.size()), classes.data());
        xcb_map_window(xcb, window);
    }
    xcb_flush(xcb);
    while (auto* event = xcb_wait_for_event(xcb)) free(event);
    _exit(0);
}

inline void endWindows(pid_t clients) {
    kill(clients, SIGTERM);
    waitpid(clients, nullptr, 0);
}

inline double milliseconds(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

struct Times {
    std::vector<double> all;
    double median() {
        std::ranges::sort(all);
        return all[all.size() / 2];
    }
    double least() { return *std::ranges::min_element(all); }
};

struct SilentLog : SystemLog {
    void write(std::string_view, LogLevel, std::string_view) override {}
};

}  // namespace quillo::bench
