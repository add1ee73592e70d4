// Records to documents.
#include <algorithm>
#include <tuple>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/records/WorkspaceFields.hpp"
#include "WindowEngine/support/JsonWriter.hpp"

namespace quillo::WorkspaceCoding {
namespace {

void write(JsonWriter& json, const std::string& value) {
    json.text(value);
}
void write(JsonWriter& json, const Url& value) {
    json.text(value.string());
}
void write(JsonWriter& json, const Uuid& value) {
    json.text(value.upper());
}
void write(JsonWriter& json, Instant value) {
    json.text(formatInstant(value));
}
void write(JsonWriter& json, CleanSlateMode value) {
    json.text(storedValue(value));
}
void write(JsonWriter& json, std::int64_t value) {
    json.integer(value);
}
void write(JsonWriter& json, std::uint32_t value) {
    json.integer(value);
}
void write(JsonWriter& json, double value) {
    json.number(value);
}
void write(JsonWriter& json, bool value) {
    json.boolean(value);
}
void write(JsonWriter& json, const Rect& r) {
    json.pairs(r.x, r.y, r.width, r.height);
}

template <detail::Record R>
void write(JsonWriter& json, const R& record);

template <class T>
void write(JsonWriter& json, const std::vector<T>& list) {
    json.beginArray();
    for (const T& entry : list) write(json, entry);
    json.endArray();
}

template <class T>
void writeField(JsonWriter& json, std::string_view key, const T& value) {
    json.key(key);
    write(json, value);
}

template <class T>
void writeField(JsonWriter& json, std::string_view key, const std::optional<T>& value) {
    if (value) writeField(json, key, *value);
}

template <detail::Record R>
void write(JsonWriter& json, const R& record) {
    static_assert(std::ranges::is_sorted(detail::keysOf<R>), "documents have their keys in ascending order");
    json.beginObject();
    std::apply([&](const auto&... field) { (writeField(json, field.key, record.*field.member), ...); },
               detail::fieldsOf<R>);
    json.endObject();
}

template <detail::Record R>
Result<std::string> document(const R& record) {
    JsonWriter json;
    write(json, record);
    return std::move(json).finish();
}

}  // namespace

Result<std::string> encode(const Workspace& workspace) {
    auto bytes = document(workspace);
    if (bytes && bytes->size() > mostBytes) return tooLarge("the document: larger than 32 MB");
    return bytes;
}
Result<std::string> encode(const WorkspaceSnapshot& snapshot) {
    return document(snapshot);
}
Result<std::string> encode(const WindowSnapshot& window) {
    return document(window);
}

}  // namespace quillo::WorkspaceCoding
