// Reading a desktop of 200 windows: the engine's capture over the X11 layer, against a bare program that
// reads the same properties with all requests sent first, and against wmctrl. All three in one run on one
// private X server; the ratios are what is held: at most 2 times the bare reader, at most a quarter of
// wmctrl.
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "bench/X11Windows.hpp"
#include "platform/x11/X11Desktop.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace {

using namespace quillo;
constexpr int windowCount = 200;
constexpr int rounds = 30;

/// The comparison: what any reader of these properties has to ask and to wait for, and nothing more.
class BareReader {
  public:
    BareReader() {
        xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(xcb_, &ewmh_), nullptr);
        root_ = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data->root;
        constexpr std::array names{"_GTK_FRAME_EXTENTS", "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE",
                                   "_BAMF_DESKTOP_FILE"};
        properties_ = {XCB_ATOM_WM_CLASS,       ewmh_._NET_WM_NAME,         XCB_ATOM_WM_NAME,
                       ewmh_._NET_WM_PID,       XCB_ATOM_WM_CLIENT_MACHINE, ewmh_._NET_WM_DESKTOP,
                       ewmh_._NET_WM_STATE,     ewmh_._NET_WM_WINDOW_TYPE,  XCB_ATOM_WM_TRANSIENT_FOR,
                       ewmh_._NET_FRAME_EXTENTS};
        for (const auto* name : names) {
            auto* atom = xcb_intern_atom_reply(
                xcb_, xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr);
            properties_.push_back(atom->atom);
            free(atom);
        }
    }

    std::size_t read() {
        auto* list = xcb_get_property_reply(
            xcb_, xcb_get_property(xcb_, 0, root_, ewmh_._NET_CLIENT_LIST, XCB_ATOM_WINDOW, 0, 65536),
            nullptr);
        const auto* windows = static_cast<const xcb_window_t*>(xcb_get_property_value(list));
        const auto count = static_cast<std::size_t>(xcb_get_property_value_length(list)) / 4;
        std::vector<xcb_get_property_cookie_t> asked;
        std::vector<xcb_get_geometry_cookie_t> geometries;
        std::vector<xcb_translate_coordinates_cookie_t> origins;
        for (std::size_t i = 0; i < count; ++i) {
            for (const auto property : properties_) {
                asked.push_back(xcb_get_property(xcb_, 0, windows[i], property, XCB_ATOM_ANY, 0, 1024));
            }
            geometries.push_back(xcb_get_geometry(xcb_, windows[i]));
            origins.push_back(xcb_translate_coordinates(xcb_, windows[i], root_, 0, 0));
        }
        for (std::size_t i = 0; i < count; ++i) {
            for (std::size_t p = 0; p < properties_.size(); ++p) {
                free(xcb_get_property_reply(xcb_, asked[i * properties_.size() + p], nullptr));
            }
            free(xcb_get_geometry_reply(xcb_, geometries[i], nullptr));
            free(xcb_translate_coordinates_reply(xcb_, origins[i], nullptr));
        }
        free(list);
        return count;
    }

  private:
    xcb_connection_t* xcb_ = xcb_connect(nullptr, nullptr);
    xcb_ewmh_connection_t ewmh_{};
    xcb_window_t root_ = 0;
    std::vector<xcb_atom_t> properties_;
};

std::size_t capture(LoopExecutor& executor, DesktopAccess& access) {
    Job<WorkspaceSnapshot> job(executor, Capture::snapshot(access, {}));
    executor.runUntil([&] { return job.done(); }, std::chrono::seconds(10));
    std::size_t windows = 0;
    for (const auto& application : job.result().applications) windows += application.windows.size();
    return windows;
}

}  // namespace

int main() {
    x11test::PrivateDesktop desktop("openbox");
    LoopExecutor executor;
    bench::SilentLog log;
    const auto layer = X11Desktop::create(executor, {});
    if (!layer) {
        std::fprintf(stderr, "%s\n", layer.error().text.c_str());
        return 1;
    }
    const pid_t clients = bench::startWindows("Bench", windowCount);
    WindowHandleCache handles;
    DesktopAccess access{(*layer)->platform(log), handles};
    BareReader bare;
    const bool complete = x11test::waitFor(
        [&] { return capture(executor, access) == windowCount && bare.read() == windowCount; },
        std::chrono::seconds(60));

    if (!complete) {
        std::fprintf(stderr, "the windows did not come\n");
        return 1;
    }
    bench::Times captures, readings, listings, ofBare, ofWmctrl;
    for (int round = 0; round < rounds; ++round) {  // in turn, so that all see the same machine
        readings.all.push_back(bench::milliseconds([&] { bare.read(); }));
        captures.all.push_back(bench::milliseconds([&] { capture(executor, access); }));
        listings.all.push_back(bench::milliseconds([&] { desktop.run({"wmctrl", "-lGpx"}); }));
        ofBare.all.push_back(captures.all.back() / readings.all.back());
        ofWmctrl.all.push_back(captures.all.back() / listings.all.back());
    }
    // In the form of the other benchmarks: name, least, median, counters.
    const auto line = [](const char* name, bench::Times& times) {
        std::printf("x11/%s/windows:%d %.3f ms %.3f ms %d", name, windowCount, times.least(), times.median(),
                    rounds);
    };
    line("bare", readings);
    std::printf("\n");
    line("wmctrl", listings);
    std::printf("\n");
    line("capture", captures);
    std::printf(" of_bare=%.3f of_wmctrl=%.3f\n", ofBare.median(), ofWmctrl.median());
    bench::endWindows(clients);
    return 0;
}
