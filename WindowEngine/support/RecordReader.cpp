#include "WindowEngine/support/RecordReader.hpp"

#include <cmath>

#include "WindowEngine/support/JsonPath.hpp"

namespace quillo {
namespace {

// Finds `key`, looking first where the order of our own documents puts it.
std::size_t keyIndex(std::span<const std::string_view> keys, std::string_view key, std::size_t expected) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const std::size_t candidate = expected + i < keys.size() ? expected + i : expected + i - keys.size();
        if (keys[candidate] == key) return candidate;
    }
    return keys.size();
}

}  // namespace

std::string JsonPlace::path() const {
    std::string path = parent ? parent->path() : std::string();
    if (index >= 0) {
        appendIndex(path, index);
    } else if (parent) {
        appendKey(path, key);
    }
    return path;
}

bool JsonReader::refuse(const JsonPlace& place, std::string_view reason) {
    std::string text = place.parent ? place.path() : std::string(place.key);
    failure = Error{ErrorKind::invalidData, text.append(": ").append(reason), 0};
    return false;
}

bool JsonReader::read(Element element, const JsonPlace& place, std::string& value) {
    std::string_view text;
    if (element.get_string().get(text)) return refuse(place, "expected text");
    value = text;
    return true;
}

bool JsonReader::read(Element element, const JsonPlace& place, std::int64_t& value) {
    const auto number = wholeNumber(element);
    if (number) value = *number;
    return number || refuse(place, "expected a whole number of 64 bits");
}

bool JsonReader::read(Element element, const JsonPlace& place, std::uint32_t& value) {
    const auto number = wholeNumber(element);
    if (!number || !std::in_range<std::uint32_t>(*number)) {
        return refuse(place, "expected a whole number from 0 to 4294967295");
    }
    value = static_cast<std::uint32_t>(*number);
    return true;
}

std::optional<std::int64_t> JsonReader::wholeNumber(Element element) {
    using enum simdjson::dom::element_type;
    if (element.type() == INT64) return element.get_int64().value_unsafe();
    if (element.type() != DOUBLE) return std::nullopt;
    const double value = element.get_double().value_unsafe();
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (value != std::trunc(value) || value < -limit || value >= limit) return std::nullopt;
    return static_cast<std::int64_t>(value);
}

bool JsonReader::collect(Element element, const JsonPlace& place, const ObjectRules& rules,
                         std::span<const std::string_view> keys, std::span<Slot> slots) {
    simdjson::dom::object object;
    if (element.get_object().get(object)) return refuse(place, "expected an object");
    std::size_t expected = 0;
    for (const auto field : object) {
        const std::size_t i = keyIndex(keys, field.key, expected);
        if (i == keys.size()) {
            if (!rules.unknownKeys) return refuse({&place, field.key}, "unknown name");
        } else if (!slots[i].present) {
            slots[i] = {field.value, true};
            expected = i + 1 < keys.size() ? i + 1 : 0;
        } else if (!rules.repeatedKeys) {
            return refuse({&place, keys[i]}, "given twice");
        }
    }
    return true;
}

bool JsonReader::readNumbers(Element element, std::initializer_list<double*> numbers) {
    simdjson::dom::array array;
    if (element.get_array().get(array) || array.size() != numbers.size()) return false;
    auto number = numbers.begin();
    for (const Element entry : array) {
        if (entry.get_double().get(**number++)) return false;
    }
    return true;
}

}  // namespace quillo
