// Session files as browsers write them, byte by byte: Chromium's log of commands, and Firefox's packed JSON.
#pragma once
#include <lz4.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quillo::samples::sessions {

template <class... Numbers>
inline std::string raw(Numbers... numbers) {
    std::string bytes;
    ((bytes.append(reinterpret_cast<const char*>(&numbers), sizeof numbers)), ...);
    return bytes;
}
inline std::string field(std::string_view text, std::size_t unit = 1) {
    std::string bytes = raw(static_cast<std::int32_t>(text.size() / unit)) + std::string(text);
    return bytes.append((4 - bytes.size() % 4) % 4, '\0');
}
inline std::string pickle(const std::string& fields) {
    return raw(static_cast<std::uint32_t>(fields.size())) + fields;
}
inline std::string record(std::uint8_t command, const std::string& body) {
    return raw(static_cast<std::uint16_t>(body.size() + 1), command) + body;
}
inline std::string log(const std::string& records, std::uint32_t version = 3) {
    return "SNSS" + raw(version) + records + (version == 3 ? record(255, "") : "");
}
inline std::string entry(int tab, int index, std::string_view address, std::string_view title = {}) {
    return record(6, pickle(raw(tab, index) + field(address) + field(title, 2)));
}
/// A tab at its place in a window, last in front at that time.
inline std::string tab(int window, int number, int place, std::string_view address, std::int64_t when = 0) {
    return record(0, raw(window, number)) + record(2, raw(number, place)) + entry(number, 0, address) +
           record(7, raw(number, 0)) + record(21, raw(number, 0, when));
}
inline std::string window(int number, int type = 0) {
    return record(9, raw(number, type));
}

inline std::string packed(std::string_view json, std::uint32_t claimed) {
    std::string block(static_cast<std::size_t>(LZ4_compressBound(static_cast<int>(json.size()))), '\0');
    const int length = LZ4_compress_default(json.data(), block.data(), static_cast<int>(json.size()),
                                            static_cast<int>(block.size()));
    return std::string("mozLz40\0", 8) + raw(claimed) + block.substr(0, static_cast<std::size_t>(length));
}
inline std::string packed(std::string_view json) {
    return packed(json, static_cast<std::uint32_t>(json.size()));
}

}  // namespace quillo::samples::sessions
