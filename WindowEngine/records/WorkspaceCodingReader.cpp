// Documents to records.
#include <simdjson.h>

#include <cmath>
#include <limits>
#include <span>
#include <system_error>
#include <utility>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/records/WorkspaceFields.hpp"
#include "WindowEngine/records/WorkspaceMigration.hpp"
#include "WindowEngine/support/JsonDamage.hpp"
#include "WindowEngine/support/JsonPath.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo::WorkspaceCoding {
namespace {

using Element = simdjson::dom::element;
using ElementType = simdjson::dom::element_type;

// Where in the document we are; lives on the stack and becomes text only for an error.
struct Place {
    const Place* parent = nullptr;
    std::string_view key{};
    std::int64_t index = -1;  // in an array, else -1

    std::string path() const {
        std::string path = parent ? parent->path() : std::string();
        if (index >= 0) {
            appendIndex(path, index);
        } else if (parent) {
            appendKey(path, key);
        }
        return path;
    }
};

struct Slot {
    Element value;
    bool present = false;
};

// Integral doubles (2.0, 1e3) count as whole numbers: JSON knows one kind of number only.
std::optional<std::int64_t> wholeNumber(Element element) {
    if (element.type() == ElementType::INT64) return element.get_int64().value_unsafe();
    if (element.type() != ElementType::DOUBLE) return std::nullopt;
    const double value = element.get_double().value_unsafe();
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (value != std::trunc(value) || value < -limit || value >= limit) return std::nullopt;
    return static_cast<std::int64_t>(value);
}

bool readPair(Element element, double& first, double& second) {
    simdjson::dom::array pair;
    if (element.get_array().get(pair) || pair.size() != 2) return false;
    return !pair.at(0).get_double().get(first) && !pair.at(1).get_double().get(second);
}

// Finds `key`, looking first where the order of our own documents puts it.
std::size_t keyIndex(std::span<const std::string_view> keys, std::string_view key, std::size_t expected) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const std::size_t candidate = expected + i < keys.size() ? expected + i : expected + i - keys.size();
        if (keys[candidate] == key) return candidate;
    }
    return keys.size();
}

// Every read leaves the first thing that is wrong in `failure` and answers false.
class RecordReader {
  public:
    std::optional<Error> failure;

    template <detail::Record R>
    bool read(Element element, const Place& place, R& record) {
        std::array<Slot, detail::keysOf<R>.size()> slots;
        if (!collect(element, place, detail::keysOf<R>, slots)) return false;
        return readFields(slots, place, record, std::make_index_sequence<slots.size()>{});
    }

  private:
    std::int64_t entries_ = 0;  // of all lists so far

    bool refuse(const Place& place, std::string_view reason) {
        const std::string path = place.path();
        failure = Error{ErrorKind::invalidData,
                        (path.empty() ? "the document" : path) + ": " + std::string(reason), 0};
        return false;
    }

    bool collect(Element element, const Place& place, std::span<const std::string_view> keys,
                 std::span<Slot> slots) {
        simdjson::dom::object object;
        if (element.get_object().get(object)) return refuse(place, "expected an object");
        std::size_t expected = 0;
        for (const auto field : object) {
            const std::size_t i = keyIndex(keys, field.key, expected);
            if (i == keys.size()) continue;
            if (slots[i].present) return refuse({&place, keys[i]}, "given twice");
            slots[i] = {field.value, true};
            expected = i + 1 < keys.size() ? i + 1 : 0;
        }
        return true;
    }

    template <detail::Record R, std::size_t... I>
    bool readFields(std::span<const Slot> slots, const Place& place, R& record, std::index_sequence<I...>) {
        constexpr const auto& fields = detail::fieldsOf<R>;
        return (
            readField(slots[I], {&place, std::get<I>(fields).key}, record.*(std::get<I>(fields).member)) &&
            ...);
    }

    template <class T>
    bool readField(const Slot& slot, const Place& place, T& value) {
        if constexpr (detail::isOptional<T>) {
            return !slot.present || slot.value.is_null() || readPresent(slot.value, place, value);
        } else {
            return slot.present ? read(slot.value, place, value) : refuse(place, "missing");
        }
    }

    template <class T>
    bool readPresent(Element element, const Place& place, std::optional<T>& value) {
        return read(element, place, value.emplace());
    }

    bool readPresent(Element element, const Place& place, std::optional<Url>& value) {
        std::string_view text;
        if (!element.get_string().get(text)) value = Url::parse(text);
        return value || refuse(place, "expected an absolute address");
    }

    template <class T>
    bool read(Element element, const Place& place, std::vector<T>& list) {
        simdjson::dom::array array;
        if (element.get_array().get(array)) return refuse(place, "expected a list");
        entries_ += static_cast<std::int64_t>(array.size());
        if (entries_ > mostEntries) {
            failure = tooLarge(place.path() + ": with it the lists have more than 200,000 entries").error();
            return false;
        }
        list.reserve(array.size());
        for (const Element entry : array) {
            if (!append(entry, {&place, {}, static_cast<std::int64_t>(list.size())}, list)) return false;
        }
        return true;
    }

    template <class T>
    bool append(Element entry, const Place& place, std::vector<T>& list) {
        return read(entry, place, list.emplace_back());
    }

    bool append(Element entry, const Place& place, std::vector<Url>& list) {
        std::optional<Url> url;
        if (!readPresent(entry, place, url)) return false;
        list.push_back(*std::move(url));
        return true;
    }

    bool read(Element element, const Place& place, std::string& value) {
        std::string_view text;
        if (element.get_string().get(text)) return refuse(place, "expected text");
        // The parser lets an escaped half of a surrogate pair through.
        if (!text::isValidUtf8(text)) return refuse(place, "the text holds half of a surrogate pair");
        value = text;
        return true;
    }

    bool read(Element element, const Place& place, Instant& value) {
        return readText(element, place, parseInstant, value, "expected a date such as 2025-03-14T09:26:53Z");
    }

    bool read(Element element, const Place& place, Uuid& value) {
        return readText(element, place, Uuid::parse, value,
                        "expected an identifier such as 6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60");
    }

    bool read(Element element, const Place& place, CleanSlateMode& value) {
        return readText(element, place, cleanSlateMode, value, "expected \"keep\", \"hide\" or \"quit\"");
    }

    template <class T>
    bool readText(Element element, const Place& place, std::optional<T> (*parse)(std::string_view), T& value,
                  std::string_view expectation) {
        std::string_view text;
        if (element.get_string().get(text)) return refuse(place, expectation);
        const std::optional<T> parsed = parse(text);
        if (!parsed) return refuse(place, expectation);
        value = *parsed;
        return true;
    }

    bool read(Element element, const Place& place, std::int64_t& value) {
        const auto number = wholeNumber(element);
        if (!number) return refuse(place, "expected a whole number of 64 bits");
        value = *number;
        return true;
    }

    bool read(Element element, const Place& place, std::uint32_t& value) {
        const auto number = wholeNumber(element);
        if (!number || !std::in_range<std::uint32_t>(*number)) {
            return refuse(place, "expected a whole number from 0 to 4294967295");
        }
        value = static_cast<std::uint32_t>(*number);
        return true;
    }

    bool read(Element element, const Place& place, double& value) {
        return !element.get_double().get(value) || refuse(place, "expected a number");
    }

    bool read(Element element, const Place& place, bool& value) {
        return !element.get_bool().get(value) || refuse(place, "expected true or false");
    }

    bool read(Element element, const Place& place, Rect& rect) {
        simdjson::dom::array array;
        if (!element.get_array().get(array) && array.size() == 2 &&
            readPair(array.at(0).value_unsafe(), rect.x, rect.y) &&
            readPair(array.at(1).value_unsafe(), rect.width, rect.height)) {
            return true;
        }
        return refuse(place, "expected [[x, y], [width, height]]");
    }
};

// The version is read before anything else: a document of a later version may have another shape altogether.
Result<void> checkVersion(Element root) {
    const auto version = root["schemaVersion"];
    if (version.error() != simdjson::SUCCESS) return {};  // the reading of the record says what is wrong
    const auto number = wholeNumber(version.value_unsafe());
    return number ? checkSchemaVersion(*number) : Result<void>();
}

Result<Workspace> readDocument(Element root) {
    if (auto known = checkVersion(root); !known) return std::unexpected(std::move(known.error()));
    RecordReader reader;
    Workspace workspace;
    if (!reader.read(root, Place{}, workspace)) return std::unexpected(*std::move(reader.failure));
    return migrated(std::move(workspace));
}

Result<Workspace> parse(simdjson::dom::parser& parser, std::string_view bytes, std::size_t readableBeyond) {
    if (bytes.empty()) return fail(ErrorKind::invalidData, describeJsonDamage(bytes));
    if (parser.capacity() == 0 && parser.allocate(bytes.size(), maximumJsonDepth) != simdjson::SUCCESS) {
        return fail(ErrorKind::invalidData, "the document: too large to read");
    }
    const auto root = parser.parse(bytes.data(), bytes.size(), readableBeyond < simdjson::SIMDJSON_PADDING);
    if (root.error() != simdjson::SUCCESS) return fail(ErrorKind::invalidData, describeJsonDamage(bytes));
    return readDocument(root.value_unsafe());
}

}  // namespace

std::unexpected<Error> tooLarge(std::string text) {
    return fail(ErrorKind::invalidData, std::move(text), static_cast<int>(std::errc::file_too_large));
}

bool isTooLarge(const Error& error) {
    return error.code == static_cast<int>(std::errc::file_too_large);
}

Result<Workspace> decode(std::string_view bytes, std::size_t readableBeyond) {
    if (bytes.size() > mostBytes) return tooLarge("the document: larger than 32 MB");
    constexpr std::size_t usualSize = 1 << 20;
    if (bytes.size() > usualSize) {  // its buffers are not kept
        simdjson::dom::parser parser;
        return parse(parser, bytes, readableBeyond);
    }
    thread_local simdjson::dom::parser parser;
    return parse(parser, bytes, readableBeyond);
}

}  // namespace quillo::WorkspaceCoding
