#include "platform/x11/ScreenSaver.hpp"

#include <sys/uio.h>
#include <xcb/xcbext.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>

#include "platform/x11/X11Connection.hpp"

namespace quillo::x11 {
namespace {

// One request of each extension is all that is wanted, so they are spelled out here instead of linking the
// two libraries that have all of them.
xcb_extension_t screenSaver{"MIT-SCREEN-SAVER", 0};
xcb_extension_t powerSaving{"DPMS", 0};
constexpr std::uint8_t queryInfo = 1, dpmsInfo = 7;   // requests
constexpr std::uint8_t saverOn = 1, saverCycles = 2;  // states of a screen saver

struct Header {  // the extension's and the request's number and the length are the library's to fill in
    std::uint8_t extension = 0, request = 0;
    std::uint16_t length = 0;
};
struct QueryInfo {
    Header header;
    xcb_drawable_t drawable;
};

/// What every reply begins with; what follows is the request's own.
struct ReplyHeader {
    std::uint8_t type, detail;
    std::uint16_t sequence;
    std::uint32_t length;
    std::uint16_t first;
    std::uint8_t second;
};

bool has(xcb_connection_t* xcb, xcb_extension_t& extension) {
    const auto* data = xcb_get_extension_data(xcb, &extension);
    return data && data->present;
}

unsigned int send(xcb_connection_t* xcb, xcb_extension_t& extension, std::uint8_t request, void* bytes,
                  std::size_t size) {
    const xcb_protocol_request_t protocol{1, &extension, request, 0};
    // The library writes in the two before the first.
    std::array<iovec, 3> parts{{{}, {}, {bytes, size}}};
    return xcb_send_request(xcb, XCB_REQUEST_CHECKED, &parts[2], &protocol);
}

Reply<ReplyHeader> receive(xcb_connection_t* xcb, unsigned int sequence) {
    xcb_generic_error_t* error = nullptr;
    Reply<ReplyHeader> reply(static_cast<ReplyHeader*>(xcb_wait_for_reply(xcb, sequence, &error)));
    std::free(error);
    return reply;
}

}  // namespace

bool isBlank(xcb_connection_t* xcb, xcb_window_t root) {
    xcb_prefetch_extension_data(xcb, &screenSaver);
    xcb_prefetch_extension_data(xcb, &powerSaving);
    std::optional<unsigned int> saver, power;
    QueryInfo saverRequest{.header = {}, .drawable = root};
    Header powerRequest;
    if (has(xcb, screenSaver)) saver = send(xcb, screenSaver, queryInfo, &saverRequest, sizeof saverRequest);
    if (has(xcb, powerSaving)) power = send(xcb, powerSaving, dpmsInfo, &powerRequest, sizeof powerRequest);
    bool blank = false;
    if (saver) {
        const auto reply = receive(xcb, *saver);
        blank = reply && (reply->detail == saverOn || reply->detail == saverCycles);
    }
    if (power) {
        const auto reply = receive(xcb, *power);
        const bool enabled = reply && reply->second != 0;
        blank = blank || (enabled && reply->first != 0);  // level 0: the displays are on
    }
    return blank;
}

}  // namespace quillo::x11
