// Settings to JSON and back.
#include <simdjson.h>

#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "WindowEngine/library/AutoSnapshotPolicy.hpp"
#include "WindowEngine/support/JsonWriter.hpp"
#include "settings/AppSettings.hpp"

namespace quillo {
namespace {

using Json = simdjson::dom::element;

constexpr std::array<std::pair<Appearance, std::string_view>, 3> appearances{
    {{Appearance::system, "system"}, {Appearance::light, "light"}, {Appearance::dark, "dark"}}};

// Each answers false for a value of another type, which makes the whole document undecodable.

bool read(Json json, bool& value) {
    return !json.get_bool().get(value);
}

bool read(Json json, std::string& value) {
    std::string_view text;
    if (json.get_string().get(text)) return false;
    value = text;
    return true;
}

/// JSON knows one kind of number only: 10.0 is a whole one.
bool read(Json json, std::int64_t& value) {
    if (!json.get_int64().get(value)) return true;
    double number = 0;
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (!json.is_double() || json.get_double().get(number)) return false;
    if (number != std::trunc(number) || number < -limit || number >= limit) return false;
    value = static_cast<std::int64_t>(number);
    return true;
}

bool read(Json json, std::uint32_t& value) {
    std::int64_t wide = 0;
    if (!read(json, wide) || wide < 0 || wide > std::numeric_limits<std::uint32_t>::max()) return false;
    value = static_cast<std::uint32_t>(wide);
    return true;
}

bool read(Json json, Appearance& value) {
    std::string text;
    if (!read(json, text)) return false;
    for (const auto& [appearance, name] : appearances) {
        if (text != name) continue;
        value = appearance;
        return true;
    }
    return false;
}

bool read(Json json, std::set<std::string>& values) {
    simdjson::dom::array array;
    if (json.get_array().get(array)) return false;
    for (const Json element : array) {
        std::string value;
        if (!read(element, value)) return false;
        values.insert(std::move(value));
    }
    return true;
}

template <class T>
bool readMember(const simdjson::dom::object& object, std::string_view key, T& value) {
    Json member;
    return !object.at_key(key).get(member) && read(member, value);
}

bool read(Json json, Shortcut& shortcut) {
    simdjson::dom::object object;
    return !json.get_object().get(object) && readMember(object, "keyCode", shortcut.keyCode) &&
           readMember(object, "modifiers", shortcut.modifiers) && readMember(object, "key", shortcut.key);
}

bool read(Json json, std::map<std::string, Shortcut>& shortcuts) {
    simdjson::dom::object object;
    if (json.get_object().get(object)) return false;
    for (const auto member : object) {
        if (!read(member.value, shortcuts[std::string(member.key)])) return false;
    }
    return true;
}

/// A missing member, or null, leaves the default.
template <class T>
bool readIfPresent(const simdjson::dom::object& object, std::string_view key, T& value) {
    Json member;
    if (object.at_key(key).get(member) || member.is_null()) return true;
    return read(member, value);
}

void write(JsonWriter& writer, std::string_view key, const std::set<std::string>& values) {
    writer.key(key);
    writer.beginArray();
    for (const std::string& value : values) writer.text(value);
    writer.endArray();
}

void write(JsonWriter& writer, const Shortcut& shortcut) {
    writer.beginObject();
    writer.key("keyCode");
    writer.integer(shortcut.keyCode);
    writer.key("modifiers");
    writer.integer(shortcut.modifiers);
    writer.key("key");
    writer.text(shortcut.key);
    writer.endObject();
}

std::string_view name(Appearance appearance) {
    return appearances[static_cast<std::size_t>(appearance)].second;
}

}  // namespace

std::optional<AppSettings> AppSettings::decode(std::string_view json) {
    simdjson::dom::parser parser;
    simdjson::dom::object object;
    if (parser.parse(simdjson::padded_string(json)).get_object().get(object)) return std::nullopt;
    AppSettings settings;
    std::optional<std::int64_t> minutes;
    if (Json member; !object.at_key("autoSnapshotMinutes").get(member) && !member.is_null()) {
        if (!read(member, minutes.emplace())) return std::nullopt;
    }
    settings.autoSnapshotMinutes = AutoSnapshotPolicy::interval(minutes);
    const bool whole =
        readIfPresent(object, "onboarded", settings.onboarded) &&
        readIfPresent(object, "enabledAdapters", settings.enabledAdapters) &&
        readIfPresent(object, "excludedBundleIdentifiers", settings.excludedBundleIdentifiers) &&
        readIfPresent(object, "excludedDomains", settings.excludedDomains) &&
        readIfPresent(object, "shortcutsEnabled", settings.shortcutsEnabled) &&
        readIfPresent(object, "shortcuts", settings.shortcuts) &&
        readIfPresent(object, "appearance", settings.appearance);
    if (!whole) return std::nullopt;
    return settings;
}

std::string AppSettings::encode() const {
    JsonWriter writer;
    writer.beginObject();
    writer.key("autoSnapshotMinutes");
    writer.integer(autoSnapshotMinutes);
    writer.key("onboarded");
    writer.boolean(onboarded);
    write(writer, "enabledAdapters", enabledAdapters);
    write(writer, "excludedBundleIdentifiers", excludedBundleIdentifiers);
    write(writer, "excludedDomains", excludedDomains);
    writer.key("shortcutsEnabled");
    writer.boolean(shortcutsEnabled);
    writer.key("shortcuts");
    writer.beginObject();
    for (const auto& [action, shortcut] : shortcuts) {
        writer.key(action);
        write(writer, shortcut);
    }
    writer.endObject();
    writer.key("appearance");
    writer.text(name(appearance));
    writer.endObject();
    return std::move(writer).finish().value();  // it holds no number that could not be written
}

}  // namespace quillo
