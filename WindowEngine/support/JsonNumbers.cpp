#include "WindowEngine/support/JsonNumbers.hpp"

#include <simdjson.h>

#include <algorithm>

namespace quillo {
namespace {

constexpr std::string_view digits = "0123456789";

// RFC 8259, section 6: [minus] int [frac] [exp].
bool isNumber(std::string_view token) {
    const auto takeDigits = [&] {
        const std::size_t count = std::min(token.find_first_not_of(digits), token.size());
        token.remove_prefix(count);
        return count > 0;
    };
    if (token.starts_with('-')) token.remove_prefix(1);
    if (token.size() > 1 && token[0] == '0' && digits.contains(token[1])) return false;
    if (!takeDigits()) return false;
    if (token.starts_with('.')) {
        token.remove_prefix(1);
        if (!takeDigits()) return false;
    }
    if (token.starts_with('e') || token.starts_with('E')) {
        token.remove_prefix(1);
        if (token.starts_with('-') || token.starts_with('+')) token.remove_prefix(1);
        if (!takeDigits()) return false;
    }
    return token.empty();
}

bool isReadable(simdjson::dom::parser& parser, const std::string& token) {
    return parser.parse("[" + token + "]").error() == simdjson::SUCCESS;
}

// What stands for the token; itself where nothing has to.
std::string replacement(simdjson::dom::parser& parser, std::string_view token) {
    std::string text(token);
    constexpr std::size_t alwaysFits = 18;  // digits of a whole number
    if (token.size() <= alwaysFits && token.find_first_of("eE") == std::string_view::npos) return text;
    if (!isNumber(token) || isReadable(parser, text)) return text;
    const bool whole = token.find_first_of(".eE") == std::string_view::npos;
    return whole && isReadable(parser, text + "e0") ? text + "e0" : std::string("\"\"");
}

std::size_t endOfText(std::string_view json, std::size_t at) {
    for (++at; at < json.size() && json[at] != '"'; ++at) at += json[at] == '\\';
    return std::min(at + 1, json.size());
}

}  // namespace

std::optional<std::string> withNumbersInRange(std::string_view json) {
    simdjson::dom::parser parser;
    std::string result;
    bool changed = false;
    for (std::size_t at = 0; at < json.size();) {
        const std::size_t begin = at;
        if (json[at] == '"') {
            at = endOfText(json, at);
        } else if (json[at] == '-' || digits.contains(json[at])) {
            at = std::min(json.find_first_not_of("0123456789+-.eE", at), json.size());
            const std::string text = replacement(parser, json.substr(begin, at - begin));
            changed |= text != json.substr(begin, at - begin);
            result += text;
            continue;
        } else {
            at = std::min(json.find_first_of("\"-0123456789", at), json.size());
        }
        result += json.substr(begin, at - begin);
    }
    return changed ? std::optional(std::move(result)) : std::nullopt;
}

}  // namespace quillo
