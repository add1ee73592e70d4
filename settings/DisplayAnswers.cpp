#include "settings/DisplayAnswers.hpp"

#include <simdjson.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "WindowEngine/support/JsonWriter.hpp"

namespace quillo {
namespace {

std::string namesOf(DisplayMapper::DisplayList displays) {
    std::vector<std::string> names;
    for (const DisplaySnapshot& display : displays) names.push_back(display.id);
    std::ranges::sort(names);
    std::string all;
    for (const std::string& name : names) all += name + "\n";
    return all;
}

std::string keyOf(DisplayMapper::DisplayList saved, DisplayMapper::DisplayList present) {
    return namesOf(saved) + "\n" + namesOf(present);
}

}  // namespace

DisplayAnswers::All DisplayAnswers::read() const {
    defaults_->refresh();
    const std::optional<std::string> stored = defaults_->data(defaultsKey);
    simdjson::dom::parser parser;
    simdjson::dom::object object;
    if (!stored || parser.parse(simdjson::padded_string(*stored)).get_object().get(object)) return {};
    All all;
    for (const auto sets : object) {
        simdjson::dom::object pairs;
        if (sets.value.get_object().get(pairs)) continue;
        for (const auto pair : pairs) {
            std::string_view present;
            if (!pair.value.get_string().get(present))
                all[std::string(sets.key)][std::string(pair.key)] = std::string(present);
        }
    }
    return all;
}

DisplayTwins::Pairs DisplayAnswers::find(DisplayMapper::DisplayList saved,
                                         DisplayMapper::DisplayList present) const {
    All all = read();
    const auto found = all.find(keyOf(saved, present));
    return found == all.end() ? DisplayTwins::Pairs() : std::move(found->second);
}

Result<void> DisplayAnswers::remember(DisplayMapper::DisplayList saved, DisplayMapper::DisplayList present,
                                      const DisplayTwins::Pairs& pairs) {
    // A damaged file would be put aside, and with it the complaint that the person's exclusions do not hold.
    if (const auto trouble = defaults_->trouble()) return fail(ErrorKind::invalidData, *trouble);
    All all = read();
    if (all.size() >= mostKept) all.clear();
    all[keyOf(saved, present)] = pairs;
    JsonWriter writer;
    writer.beginObject();
    for (const auto& [sets, told] : all) {
        writer.key(sets);
        writer.beginObject();
        for (const auto& [before, now] : told) {
            writer.key(before);
            writer.text(now);
        }
        writer.endObject();
    }
    writer.endObject();
    return defaults_->setData(defaultsKey, std::move(writer).finish().value());
}

}  // namespace quillo
