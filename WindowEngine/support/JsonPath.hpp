// Names a place in a JSON document for people: snapshot.applications[2].windows[0].frame
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace quillo {

inline void appendKey(std::string& path, std::string_view key) {
    if (!path.empty()) path += '.';
    path += key;
}

inline void appendIndex(std::string& path, std::int64_t index) {
    path += '[';
    path += std::to_string(index);
    path += ']';
}

}  // namespace quillo
