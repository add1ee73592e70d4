#include "settings/Launchers.hpp"

#include <simdjson.h>

#include <utility>

#include "WindowEngine/support/JsonWriter.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

/// Nothing where a word is no text: half a command would be another one.
Launchers::Command commandOf(simdjson::dom::element value) {
    Launchers::Command command;
    simdjson::dom::array words;
    if (value.get_array().get(words)) return {};
    for (const auto word : words) {
        std::string_view text;
        if (word.get_string().get(text)) return {};
        command.emplace_back(text);
    }
    return command;
}

}  // namespace

std::map<std::string, Launchers::Command, std::less<>> Launchers::all() const {
    defaults_->refresh();
    const std::optional<std::string> stored = defaults_->data(defaultsKey);
    simdjson::dom::parser parser;
    simdjson::dom::object object;
    if (!stored || parser.parse(simdjson::padded_string(*stored)).get_object().get(object)) return {};
    std::map<std::string, Command, std::less<>> all;
    for (const auto member : object) {
        if (Command command = commandOf(member.value); !command.empty())
            all.insert_or_assign(text::lowercase(member.key), std::move(command));
    }
    return all;
}

std::optional<Launchers::Command> Launchers::find(std::string_view identifier) const {
    const auto known = all();
    const auto found = known.find(text::lowercase(identifier));
    return found == known.end() ? std::nullopt : std::optional(found->second);
}

Result<void> Launchers::set(std::string_view identifier, Command command) {
    auto known = all();
    known.insert_or_assign(text::lowercase(identifier), std::move(command));
    return write(known);
}

Result<bool> Launchers::remove(std::string_view identifier) {
    auto known = all();
    if (known.erase(text::lowercase(identifier)) == 0) return false;
    if (Result<void> written = write(known); !written) return std::unexpected(written.error());
    return true;
}

Result<void> Launchers::write(const std::map<std::string, Command, std::less<>>& all) {
    if (all.empty()) return defaults_->setData(defaultsKey, std::nullopt);
    JsonWriter json;
    json.beginObject();
    for (const auto& [identifier, command] : all) {
        json.key(identifier);
        json.beginArray();
        for (const std::string& word : command) json.text(word);
        json.endArray();
    }
    json.endObject();
    Result<std::string> bytes = std::move(json).finish();
    if (!bytes) return std::unexpected(bytes.error());
    return defaults_->setData(defaultsKey, *std::move(bytes));
}

}  // namespace quillo
