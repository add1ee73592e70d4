#include "WindowEngine/integrations/FirefoxSession.hpp"

#include <lz4.h>
#include <simdjson.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

namespace quillo::FirefoxSession {
namespace {

using simdjson::dom::array;
using simdjson::dom::element;
using simdjson::dom::object;

constexpr std::string_view magic{"mozLz40\0", 8}, encryptedMagic{"mozEnc0\0", 8};
constexpr std::size_t headerSize = magic.size() + sizeof(std::uint32_t);
constexpr std::size_t largestUnpacked = std::size_t{256} << 20;  // bytes
constexpr std::size_t mostOfOneByte = 255;                       // an LZ4 block grows no further

std::unexpected<Error> damaged() {
    return fail(ErrorKind::invalidData, "its session file is damaged");
}

Result<simdjson::padded_string> unpacked(std::string_view file) {
    if (file.starts_with(encryptedMagic))
        return fail(ErrorKind::unavailable, "its session file is encrypted");
    if (!file.starts_with(magic) || file.size() < headerSize)
        return fail(ErrorKind::invalidData, "its session file is none");
    std::uint32_t size = 0;
    std::memcpy(&size, file.data() + magic.size(), sizeof size);
    const std::string_view block = file.substr(headerSize);
    if (file.size() > largestSessionFile || size > largestUnpacked)
        return fail(ErrorKind::invalidData, "its session file is too large");
    if (size > block.size() * mostOfOneByte) return damaged();
    simdjson::padded_string json(size);
    const int got = LZ4_decompress_safe(block.data(), json.data(), static_cast<int>(block.size()),
                                        static_cast<int>(size));
    if (got < 0 || static_cast<std::uint32_t>(got) != size) return damaged();
    return json;
}

// What is missing or of another type is as if it said nothing.
std::string text(const object& from, std::string_view key) {
    std::string_view value;
    return from[key].get_string().get(value) ? std::string() : std::string(value);
}

std::optional<std::int64_t> number(const object& from, std::string_view key) {
    std::int64_t value = 0;
    if (!from[key].get_int64().get(value)) return value;
    return std::nullopt;
}

bool flag(const object& from, std::string_view key) {
    bool value = false;
    return !from[key].get_bool().get(value) && value;
}

/// Calls `visit` for each object of the list.
void forEach(const object& from, std::string_view key, auto visit) {
    array list;
    if (from[key].get_array().get(list)) return;
    for (const element item : list) {
        object value;
        if (!item.get_object().get(value)) visit(value);
    }
}

BrowserTab tabFrom(const object& saved) {
    std::vector<object> entries;
    forEach(saved, "entries", [&](const object& entry) { entries.push_back(entry); });
    if (entries.empty()) return {text(saved, "userTypedValue"), {}};  // it was never loaded
    const auto last = static_cast<std::int64_t>(entries.size());
    const std::int64_t current = std::clamp(number(saved, "index").value_or(last), std::int64_t{1}, last);
    const object& entry = entries[static_cast<std::size_t>(current - 1)];
    return {text(entry, "url"), text(entry, "title")};
}

std::optional<Rect> frame(const object& window) {
    std::array<double, 4> sides{};
    constexpr std::array<std::string_view, 4> keys{"screenX", "screenY", "width", "height"};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const auto side = number(window, keys[i]);
        if (!side) return std::nullopt;
        sides[i] = static_cast<double>(*side);
    }
    return Rect{sides[0], sides[1], sides[2], sides[3]};
}

std::optional<std::int64_t> desktop(const object& window) {
    const std::string name = text(window, "workspaceID");
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), value);
    const bool whole = error == std::errc() && end == name.data() + name.size() && value >= 0;
    return whole ? std::optional(value) : std::nullopt;
}

BrowserWindow windowFrom(const object& saved) {
    BrowserWindow window{
        .frame = frame(saved), .isPlain = text(saved, "sizemode") == "normal", .desktop = desktop(saved)};
    const std::int64_t selected = number(saved, "selected").value_or(1) - 1;
    std::int64_t place = 0;
    forEach(saved, "tabs", [&](const object& tab) {
        if (!flag(tab, "hidden")) {
            if (place <= selected) window.selected = window.tabs.size();
            window.tabs.push_back(tabFrom(tab));
        }
        ++place;
    });
    return window;
}

}  // namespace

Result<BrowserSession> read(std::string_view file) {
    const auto json = unpacked(file);
    if (!json) return std::unexpected(json.error());
    simdjson::dom::parser parser;
    object state;
    if (parser.parse(*json).get_object().get(state)) return damaged();
    array windows;
    if (state["windows"].get_array().get(windows)) return damaged();
    BrowserSession session;
    // The last ordinary window was closed; the file keeps it until another one opens.
    if (number(state, "selectedWindow") == 0) return session;
    std::int64_t order = 0;
    forEach(state, "windows", [&](const object& saved) {
        if (flag(saved, "isPrivate") || flag(saved, "isPopup")) return;
        BrowserWindow window = windowFrom(saved);
        window.order = order++;
        if (!window.tabs.empty()) session.windows.push_back(std::move(window));
    });
    return session;
}

}  // namespace quillo::FirefoxSession
