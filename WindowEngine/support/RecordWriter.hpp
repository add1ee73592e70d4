// Records to JSON, by their lists of fields. A format derives its writer from RecordWriter and says how
// values of its own types look and which fields it leaves out.
#pragma once
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "WindowEngine/support/JsonWriter.hpp"
#include "WindowEngine/support/RecordFields.hpp"

namespace quillo {

/// `Format` derives from RecordWriter<Format> and has writes of further types, or other ways to write these,
/// beside `using RecordWriter::write`.
template <class Format>
class RecordWriter {
  public:
    /// The record's document; fails where JsonWriter does.
    template <Record R>
    Result<std::string> document(const R& record) && {
        format().write(record);
        return std::move(json_).finish();
    }

    void write(const std::string& value) { json_.text(value); }
    void write(std::int64_t value) { json_.integer(value); }
    void write(std::uint32_t value) { json_.integer(value); }
    void write(double value) { json_.number(value); }
    void write(bool value) { json_.boolean(value); }

    template <Named T>
    void write(T value) {
        json_.text(nameOf(value));
    }

    /// One that is there.
    template <class T>
    void write(const std::optional<T>& value) {
        format().write(*value);
    }

    template <class T>
    void write(const std::vector<T>& list) {
        writeList(list);
    }

    template <Record R>
    void write(const R& record) {
        static_assert(listsEachMember<R>(), "fieldsOf lists each member of its record once");
        json_.beginObject();
        std::apply([&](const auto&... field) { (writeField(record, field), ...); }, fieldsOf<R>);
        json_.endObject();
    }

  protected:
    JsonWriter json_;

    template <class List>
    void writeList(const List& list) {
        json_.beginArray();
        for (const auto& entry : list) format().write(entry);
        json_.endArray();
    }

    /// Whether the record's document goes without the field.
    template <class R, class T>
    static bool omits(const R& record, const Field<R, T>& field) {
        if constexpr (isOptional<T>) return !(record.*field.member);
        return false;
    }

  private:
    Format& format() { return static_cast<Format&>(*this); }

    template <class R, class T>
    void writeField(const R& record, const Field<R, T>& field) {
        if (Format::omits(record, field)) return;
        json_.key(field.key);
        format().write(record.*field.member);
    }
};

}  // namespace quillo
