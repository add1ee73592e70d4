#include "ctl/JsonLine.hpp"

#include <simdjson.h>

namespace quillo::ctl {

JsonLine& JsonLine::add(std::string_view key, std::string_view value) {
    writer_.key(key);
    writer_.text(value);
    return *this;
}

JsonLine& JsonLine::flag(std::string_view key, bool value) {
    writer_.key(key);
    writer_.boolean(value);
    return *this;
}

JsonLine& JsonLine::add(std::string_view key, std::int64_t value) {
    writer_.key(key);
    writer_.integer(value);
    return *this;
}

JsonLine& JsonLine::add(std::string_view key, double value) {
    writer_.key(key);
    writer_.number(value);
    return *this;
}

JsonLine& JsonLine::add(std::string_view key, Instant value) {
    return add(key, formatInstant(value));
}

JsonLine& JsonLine::add(std::string_view key, const Rect& value) {
    writer_.key(key);
    writer_.pairs(value.x, value.y, value.width, value.height);
    return *this;
}

JsonLine& JsonLine::add(std::string_view key, const std::vector<std::string>& values) {
    writer_.key(key);
    writer_.beginArray();
    for (const std::string& value : values) writer_.text(value);
    writer_.endArray();
    return *this;
}

Result<std::string> JsonLine::finish() && {
    writer_.endObject();
    Result<std::string> text = std::move(writer_).finish();
    if (text) *text = onOneLine(*text);
    return text;
}

std::string onOneLine(std::string_view json) {
    std::string line(json.size(), '\0');
    std::size_t length = 0;
    // Only an unclosed string can make this fail, and the writer closes its strings.
    if (simdjson::minify(json.data(), json.size(), line.data(), length) != simdjson::SUCCESS) length = 0;
    line.resize(length);
    return line;
}

}  // namespace quillo::ctl
