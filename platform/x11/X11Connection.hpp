// One connection to an X server: atoms, replies that free themselves, and requests whose errors are looked
// at. libxcb never ends the program: a connection that breaks only makes every later answer come back empty.
#pragma once
#include <xcb/randr.h>
#include <xcb/res.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo::x11 {

struct FreeReply {
    void operator()(void* reply) const noexcept { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, FreeReply>;

/// What a request about a window can end with, as codes of AccessibilityCode and AttributeMiss.
inline constexpr std::int32_t codeDone = 0;
inline constexpr std::int32_t codeGone = XCB_WINDOW;  // the server's own BadWindow
inline constexpr std::int32_t codeUnsupported =
    -1;  // no such attribute or action, or a value of the wrong type
inline constexpr std::int32_t codeNoConnection = -2;  // the X server went away

/// Atoms that xcb-ewmh does not know.
struct ExtraAtoms {
    xcb_atom_t gtkFrameExtents = 0, gtkApplicationID = 0, kdeDesktopFile = 0, bamfDesktopFile = 0;
    xcb_atom_t changeState = 0, deleteWindow = 0, edid = 0, accessibilityBus = 0, i3Floating = 0;
    xcb_atom_t windowRole = 0;
};

/// The value of one property; empty when it is missing or has another format than the one asked for.
class Property {
  public:
    explicit Property(xcb_get_property_reply_t* reply) : reply_(reply) {}
    bool exists() const { return reply_ && reply_->type != XCB_ATOM_NONE; }
    xcb_atom_t type() const { return reply_ ? reply_->type : xcb_atom_t{XCB_ATOM_NONE}; }
    std::span<const std::uint32_t> words() const;
    std::string_view bytes() const;
    std::optional<std::uint32_t> firstWord() const;

  private:
    Reply<xcb_get_property_reply_t> reply_;
};

class X11Connection {
  public:
    /// `display` may be empty: $DISPLAY. `unavailable` with a text that says what to do.
    static Result<std::unique_ptr<X11Connection>> open(const std::string& display);
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;
    ~X11Connection();

    xcb_connection_t* xcb() const { return xcb_; }
    xcb_window_t root() const { return screen_->root; }
    const xcb_ewmh_connection_t& atoms() const { return ewmh_; }
    const ExtraAtoms& extra() const { return extra_; }
    const std::string& displayName() const { return displayName_; }
    bool hasMonitors() const { return hasMonitors_; }  // RandR 1.5
    /// Whether the server can tell which process here holds a connection (X-Resource 1.2).
    bool hasClientProcesses() const { return hasClientIds_; }
    xcb_res_query_client_ids_cookie_t askProcess(std::uint32_t resource) const;
    /// Of the connection that made the resource; 0 where it comes from elsewhere.
    ProcessID processIn(xcb_res_query_client_ids_cookie_t cookie) const;
    /// Whether this server only shows X11 programs within a Wayland session, whose own windows it knows
    /// nothing of: an Xwayland from 24.1 on has an extension of that name, an older one calls its monitors
    /// so.
    bool isXwayland() const;
    bool alive() const { return xcb_connection_has_error(xcb_) == 0; }

    xcb_get_property_cookie_t ask(xcb_window_t window, xcb_atom_t property, std::uint32_t words) const;
    Property take(xcb_get_property_cookie_t cookie) const;

    /// Sends the window manager a message about `window`. One round trip; codeGone when there is no such
    /// window. That the window manager heard it does not mean that it complies.
    std::int32_t askWindowManager(xcb_window_t window, xcb_atom_t message, std::array<std::uint32_t, 5> data);
    /// Whether a checked request succeeded: a code as above, else the X error's.
    std::int32_t check(xcb_void_cookie_t cookie);

    /// Errors that no request of ours was waiting for; always 0 unless this layer has a fault.
    std::size_t strayErrors();

  private:
    X11Connection(xcb_connection_t* xcb, xcb_screen_t* screen, std::string displayName);
    bool internAtoms();
    void learnExtensions();

    xcb_connection_t* xcb_;
    xcb_screen_t* screen_;
    std::string displayName_;
    xcb_ewmh_connection_t ewmh_{};
    ExtraAtoms extra_;
    bool hasMonitors_ = false;
    bool hasClientIds_ = false;
    std::size_t strayErrors_ = 0;
};

}  // namespace quillo::x11
