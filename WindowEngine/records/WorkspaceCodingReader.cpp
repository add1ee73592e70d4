// Documents to records.
#include <simdjson.h>

#include <system_error>
#include <utility>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/records/WorkspaceFields.hpp"
#include "WindowEngine/records/WorkspaceMigration.hpp"
#include "WindowEngine/support/JsonDamage.hpp"
#include "WindowEngine/support/JsonNumbers.hpp"
#include "WindowEngine/support/RecordReader.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo::WorkspaceCoding {
namespace {

using Element = JsonReader::Element;

class WorkspaceReader : public RecordReader<WorkspaceReader> {
  public:
    static constexpr ObjectRules rules{.unknownKeys = true, .repeatedKeys = false, .nullIsMissing = true};
    template <class R, class T>
    static constexpr bool isRequired = !isOptional<T>;

    using RecordReader::read;

    bool read(Element element, const JsonPlace& place, std::string& value) {
        if (!RecordReader::read(element, place, value)) return false;
        // The parser lets an escaped half of a surrogate pair through.
        return text::isValidUtf8(value) || refuse(place, "the text holds half of a surrogate pair");
    }

    bool read(Element element, const JsonPlace& place, std::optional<Url>& value) {
        return readText(element, place, Url::parse, value, "expected an absolute address");
    }

    bool read(Element element, const JsonPlace& place, Instant& value) {
        return readText(element, place, parseInstant, value, "expected a date such as 2025-03-14T09:26:53Z");
    }

    bool read(Element element, const JsonPlace& place, Uuid& value) {
        return readText(element, place, Uuid::parse, value,
                        "expected an identifier such as 6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60");
    }

    bool read(Element element, const JsonPlace& place, CleanSlateMode& value) {
        return readText(element, place, cleanSlateMode, value, "expected \"keep\", \"hide\" or \"quit\"");
    }

    bool read(Element element, const JsonPlace& place, Rect& rect) {
        simdjson::dom::array array;
        if (!element.get_array().get(array) && array.size() == 2 &&
            readNumbers(array.at(0).value_unsafe(), {&rect.x, &rect.y}) &&
            readNumbers(array.at(1).value_unsafe(), {&rect.width, &rect.height})) {
            return true;
        }
        return refuse(place, "expected [[x, y], [width, height]]");
    }

    bool admit(const JsonPlace& place, std::size_t entries) {
        entries_ += static_cast<std::int64_t>(entries);
        if (entries_ <= mostEntries) return true;
        failure = tooLarge(place.path() + ": with it the lists have more than 200,000 entries").error();
        return false;
    }

  private:
    std::int64_t entries_ = 0;  // of all lists so far
};

// The version is read before anything else: a document of a later version may have another shape altogether.
Result<void> checkVersion(Element root) {
    const auto version = root["schemaVersion"];
    if (version.error() != simdjson::SUCCESS) return {};  // the reading of the record says what is wrong
    const auto number = JsonReader::wholeNumber(version.value_unsafe());
    return number ? checkSchemaVersion(*number) : Result<void>();
}

Result<Workspace> readDocument(Element root) {
    if (auto known = checkVersion(root); !known) return std::unexpected(std::move(known.error()));
    WorkspaceReader reader;
    Workspace workspace;
    if (!reader.read(root, JsonPlace{.key = "the document"}, workspace))
        return std::unexpected(*std::move(reader.failure));
    return migrated(std::move(workspace));
}

Result<Workspace> parse(simdjson::dom::parser& parser, std::string_view bytes, std::size_t readableBeyond) {
    if (bytes.empty() || bytes.starts_with(byteOrderMark))
        return fail(ErrorKind::invalidData, describeJsonDamage(bytes));
    if (parser.capacity() == 0 && parser.allocate(bytes.size(), maximumJsonDepth) != simdjson::SUCCESS) {
        return fail(ErrorKind::invalidData, "the document: too large to read");
    }
    const auto root = parser.parse(bytes.data(), bytes.size(), readableBeyond < simdjson::SIMDJSON_PADDING);
    if (root.error() != simdjson::SUCCESS) {
        // What stands under a key that we do not know may be any number.
        if (const auto inRange = withNumbersInRange(bytes)) return parse(parser, *inRange, 0);
        return fail(ErrorKind::invalidData, describeJsonDamage(bytes));
    }
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
