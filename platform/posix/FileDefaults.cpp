#include "platform/posix/FileDefaults.hpp"

#include <simdjson.h>

#include <utility>

#include "WindowEngine/library/AtomicFile.hpp"
#include "WindowEngine/support/JsonDamage.hpp"
#include "WindowEngine/support/JsonWriter.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

using Json = simdjson::dom::element;

std::string asJsonString(std::string_view text) {
    JsonWriter writer;
    writer.text(text);
    std::string json = std::move(writer).finish().value();
    json.pop_back();  // the closing line feed
    return json;
}

/// One that may stand as it is within the file: nested far less than the parser follows.
bool isJsonObject(const std::string& bytes) {
    simdjson::dom::parser parser;
    if (bytes.starts_with(byteOrderMark) || parser.allocate(bytes.size(), maximumJsonDepth)) return false;
    return parser.parse(simdjson::padded_string(bytes)).is_object();
}

std::string withoutFinalLineFeed(std::string text) {
    if (text.ends_with('\n')) text.pop_back();
    return text;
}

}  // namespace

UserDefaults& FileDefaults::notes() {
    if (!notes_) notes_ = std::make_unique<FileDefaults>(files_, file_.parent_path() / "notes.json");
    return *notes_;
}

std::optional<std::string> FileDefaults::trouble() const {
    const auto& trouble = content().trouble;
    return trouble ? std::optional(trouble->text) : std::nullopt;
}

std::optional<std::string> FileDefaults::data(std::string_view key) const {
    const auto& values = content().values;
    const auto found = values.find(key);
    if (found == values.end()) return std::nullopt;
    simdjson::dom::parser parser;
    Json json;
    if (parser.parse(simdjson::padded_string(found->second)).get(json)) return std::nullopt;
    std::string_view text;
    if (!json.get_string().get(text)) return std::string(text);
    return json.is_bool() || json.is_null() ? std::nullopt : std::optional(found->second);
}

Result<void> FileDefaults::setData(std::string_view key, std::optional<std::string> bytes) {
    if (!bytes) return set(key, std::nullopt);
    if (!text::isValidUtf8(*bytes)) {
        return fail(ErrorKind::invalidArgument, "the value of " + std::string(key) + " is not valid UTF-8");
    }
    return set(key, isJsonObject(*bytes) ? withoutFinalLineFeed(*std::move(bytes)) : asJsonString(*bytes));
}

bool FileDefaults::boolean(std::string_view key) const {
    const auto& values = content().values;
    const auto found = values.find(key);
    return found != values.end() && found->second == "true";
}

Result<void> FileDefaults::setBoolean(std::string_view key, bool value) {
    return set(key, value ? std::optional<std::string>("true") : std::nullopt);
}

const FileDefaults::Content& FileDefaults::content() const {
    if (!content_) content_ = read();
    return *content_;
}

FileDefaults::Content FileDefaults::read() const {
    Content content;
    const Result<std::string> bytes = files_.read(file_);
    if (!bytes) {
        if (bytes.error().kind != ErrorKind::notFound) content.trouble = bytes.error();
        return content;
    }
    simdjson::dom::parser parser;
    simdjson::dom::object object;
    if (parser.parse(simdjson::padded_string(*bytes)).get_object().get(object)) {
        content.trouble =
            Error{ErrorKind::invalidData, file_.filename().string() + ": " + describeJsonDamage(*bytes), 0};
        return content;
    }
    for (const auto member : object) {
        content.values.insert_or_assign(std::string(member.key), simdjson::to_string(member.value));
    }
    return content;
}

Result<void> FileDefaults::set(std::string_view key, std::optional<std::string> json) {
    const std::filesystem::path directory = file_.parent_path();
    if (Result<void> created = files_.createDirectories(directory); !created) return created;
    const auto lock = files_.lock(directory);
    if (!lock) return std::unexpected(lock.error());
    Content now = read();
    if (now.trouble) {
        // One that cannot even be read may be sound: it is not replaced.
        if (now.trouble->kind != ErrorKind::invalidData) return std::unexpected(*now.trouble);
        if (const auto kept = moveAside(); !kept) return std::unexpected(kept.error());
        now.trouble.reset();
    }
    now.values.erase(std::string(key));
    if (json) now.values.emplace(key, *std::move(json));
    std::string bytes = "{";
    for (const auto& [name, value] : now.values) {
        bytes += (bytes.size() > 1 ? ",\n  " : "\n  ") + asJsonString(name) + ": " + value;
    }
    bytes += "\n}\n";
    Result<void> written = writeAtomically(files_, file_, bytes);
    content_.reset();  // a failure may come after the file was replaced: what stands there holds
    if (written) content_ = std::move(now);
    return written;
}

Result<std::string> FileDefaults::keepAside() {
    const auto lock = files_.lock(file_.parent_path());
    if (!lock) return std::unexpected(lock.error());
    const Content now = read();
    if (!now.trouble) return fail(ErrorKind::notFound, file_.string() + " can be read by now");
    if (now.trouble->kind != ErrorKind::invalidData) return std::unexpected(*now.trouble);
    const auto kept = moveAside();
    if (!kept) return std::unexpected(kept.error());
    content_.reset();
    return kept->string();
}

/// Under the first name that is free. There are few, so that a program that damages the file again and again
/// does not fill the disk.
Result<std::filesystem::path> FileDefaults::moveAside() const {
    constexpr int most = 9;
    for (int number = 1; number <= most; ++number) {
        std::filesystem::path aside = file_;
        aside += number == 1 ? ".damaged" : ".damaged-" + std::to_string(number);
        if (files_.exists(aside)) continue;
        if (const Result<void> moved = files_.rename(file_, aside); !moved)
            return std::unexpected(moved.error());
        return aside;
    }
    return fail(
        ErrorKind::io,
        file_.string() + " is damaged, and so were nine before it that are kept beside it; remove those");
}

}  // namespace quillo
