// Records from parsed JSON, by their lists of fields. A format derives its reader from RecordReader and says
// what is its own: which keys must be there, and how values of its types look.
#pragma once
#include <simdjson.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "WindowEngine/support/Error.hpp"
#include "WindowEngine/support/RecordFields.hpp"

namespace quillo {

/// Where in the document we are; lives on the stack and becomes text only for an error.
struct JsonPlace {
    const JsonPlace* parent = nullptr;
    std::string_view key;     // without a parent what the document is called: "the document"
    std::int64_t index = -1;  // in an array, else -1

    /// snapshot.applications[2].windows[0].frame
    std::string path() const;
};

/// What formats differ in, besides their values.
struct ObjectRules {
    bool unknownKeys = true;    // they are passed over; otherwise refused
    bool repeatedKeys = true;   // the first one counts; otherwise refused
    bool nullIsMissing = true;  // where the key may be missing
};

/// What needs no list of fields. Every read answers false where it leaves the first thing that is wrong in
/// `failure`.
class JsonReader {
  public:
    using Element = simdjson::dom::element;

    std::optional<Error> failure;

    bool refuse(const JsonPlace& place, std::string_view reason);

    bool read(Element element, const JsonPlace& place, bool& value) {
        return !element.get_bool().get(value) || refuse(place, "expected true or false");
    }
    bool read(Element element, const JsonPlace& place, double& value) {
        return !element.get_double().get(value) || refuse(place, "expected a number");
    }
    bool read(Element element, const JsonPlace& place, std::string& value);
    bool read(Element element, const JsonPlace& place, std::int64_t& value);
    bool read(Element element, const JsonPlace& place, std::uint32_t& value);

    /// Integral doubles (2.0, 1e3) count as whole numbers: JSON knows one kind of number only.
    static std::optional<std::int64_t> wholeNumber(Element element);

  protected:
    struct Slot {
        Element value;
        bool present = false;
    };

    /// Each key's value into its slot.
    bool collect(Element element, const JsonPlace& place, const ObjectRules& rules,
                 std::span<const std::string_view> keys, std::span<Slot> slots);

    /// A list of exactly so many numbers; it leaves no failure.
    static bool readNumbers(Element element, std::initializer_list<double*> numbers);

    template <class T, class Value>
    bool readText(Element element, const JsonPlace& place, std::optional<T> (*parse)(std::string_view),
                  Value& value, std::string_view expectation) {
        std::string_view text;
        if (element.get_string().get(text)) return refuse(place, expectation);
        std::optional<T> parsed = parse(text);
        if (!parsed) return refuse(place, expectation);
        value = *std::move(parsed);
        return true;
    }
};

/// `Format` derives from RecordReader<Format>. It has `static constexpr ObjectRules rules` and
/// `template <class R, class T> static constexpr bool isRequired`, whether R's keys of type T must be there.
/// It may read further types, or these in another way, beside `using RecordReader::read`.
template <class Format>
class RecordReader : public JsonReader {
  public:
    using JsonReader::read;

    template <Record R>
    bool read(Element element, const JsonPlace& place, R& record) {
        static_assert(listsEachMember<R>(), "fieldsOf lists each member of its record once");
        std::array<Slot, keysOf<R>.size()> slots;
        return collect(element, place, Format::rules, keysOf<R>, slots) &&
               readFields(slots, place, record, std::make_index_sequence<slots.size()>{}) &&
               format().check(place, record);
    }

    template <class T>
    bool read(Element element, const JsonPlace& place, std::optional<T>& value) {
        return format().read(element, place, value.emplace());
    }

    template <class T>
    bool read(Element element, const JsonPlace& place, std::vector<T>& list) {
        simdjson::dom::array array;
        if (element.get_array().get(array)) return refuse(place, "expected a list");
        if (!format().admit(place, array.size())) return false;
        list.reserve(array.size());
        for (const Element entry : array) {
            if (!append(entry, {&place, {}, static_cast<std::int64_t>(list.size())}, list)) return false;
        }
        return true;
    }

    template <Named T>
    bool read(Element element, const JsonPlace& place, T& value) {
        std::string_view text;
        if (element.get_string().get(text)) return refuse(place, "expected text");
        const std::optional<T> named = valueNamed<T>(text);
        if (named) value = *named;
        return named || refuse(place, "unknown value, expected one of " + listedNames<T>());
    }

  protected:
    /// What else must hold of a record that was read; a format adds its own.
    template <class R>
    bool check(const JsonPlace& /*place*/, const R& /*record*/) {
        return true;
    }

    /// Whether a list of so many entries may be read.
    bool admit(const JsonPlace& /*place*/, std::size_t /*entries*/) { return true; }

  private:
    Format& format() { return static_cast<Format&>(*this); }

    template <Record R, std::size_t... I>
    bool readFields(std::span<const Slot> slots, const JsonPlace& place, R& record,
                    std::index_sequence<I...>) {
        return (readField(slots[I], {&place, keysOf<R>[I]}, record, std::get<I>(fieldsOf<R>)) && ...);
    }

    template <class R, class T>
    bool readField(const Slot& slot, const JsonPlace& place, R& record, const Field<R, T>& field) {
        constexpr bool required = Format::template isRequired<R, T>;
        constexpr bool nullIsMissing = Format::rules.nullIsMissing && !required;
        if (slot.present && !(nullIsMissing && slot.value.is_null()))
            return format().read(slot.value, place, record.*field.member);
        if (field.usual) record.*field.member = record.*field.usual;
        return !required || refuse(place, "missing");
    }

    template <class T>
    bool append(Element entry, const JsonPlace& place, std::vector<T>& list) {
        if constexpr (std::default_initializable<T>) {
            return format().read(entry, place, list.emplace_back());
        } else {
            std::optional<T> value;
            if (!format().read(entry, place, value)) return false;
            list.push_back(*std::move(value));
            return true;
        }
    }

    template <class T>
    static std::string listedNames() {
        std::string text;
        for (const auto& [name, value] : namesOf<T>) text += (text.empty() ? "" : ", ") + std::string(name);
        return text;
    }
};

}  // namespace quillo
