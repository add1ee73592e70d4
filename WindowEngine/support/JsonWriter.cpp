#include "WindowEngine/support/JsonWriter.hpp"

#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

#include "WindowEngine/support/JsonPath.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

// Characters that cannot stand as they are; the slash is the format's own rule.
bool needsEscape(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\' || c == '/';
}

void appendEscape(std::string& out, char c) {
    switch (c) {
        case '"':
            out += "\\\"";
            return;
        case '\\':
            out += "\\\\";
            return;
        case '/':
            out += "\\/";
            return;
        case '\b':
            out += "\\b";
            return;
        case '\f':
            out += "\\f";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            break;
    }
    static constexpr char digits[] = "0123456789abcdef";
    const auto code = static_cast<unsigned char>(c);
    out += {'\\', 'u', '0', '0', digits[code >> 4], digits[code & 15]};
}

void appendEscaped(std::string& out, std::string_view text) {
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin;
        while (end < text.size() && !needsEscape(text[end])) ++end;
        out.append(text.substr(begin, end - begin));
        if (end < text.size()) appendEscape(out, text[end++]);
        begin = end;
    }
}

}  // namespace

void JsonWriter::breakLine() {
    out_ += '\n';
    out_.append(2 * levels_.size(), ' ');
}

void JsonWriter::open(char bracket) {
    beginValue();
    out_ += bracket;
    levels_.push_back({.key = {}, .members = 0, .isArray = bracket == '['});
}

void JsonWriter::close(char bracket) {
    const bool empty = levels_.back().members == 0;
    levels_.pop_back();
    if (!empty) breakLine();
    out_ += bracket;
}

void JsonWriter::key(std::string_view name) {
    Level& level = levels_.back();
    if (level.members++ > 0) out_ += ',';
    level.key = name;
    breakLine();
    quoted(name);
    out_ += ": ";
}

void JsonWriter::beginValue() {
    if (levels_.empty() || !levels_.back().isArray) return;
    if (levels_.back().members++ > 0) out_ += ',';
    breakLine();
}

void JsonWriter::quoted(std::string_view value) {
    out_ += '"';
    if (quillo::text::isValidUtf8(value)) {
        appendEscaped(out_, value);
    } else {
        appendEscaped(out_, quillo::text::repaired(value));
    }
    out_ += '"';
}

void JsonWriter::text(std::string_view value) {
    beginValue();
    quoted(value);
}

void JsonWriter::integer(std::int64_t value) {
    beginValue();
    char digits[24];
    out_.append(digits, std::to_chars(std::begin(digits), std::end(digits), value).ptr);
}

void JsonWriter::boolean(bool value) {
    beginValue();
    out_ += value ? "true" : "false";
}

void JsonWriter::appendNumber(double value) {
    if (!std::isfinite(value)) {
        if (!failure_) failure_ = Error{ErrorKind::invalidData, path() + ": not a finite number", 0};
        value = 0;
    }
    if (value == 0) value = 0;  // also of -0
    // Plain digits for the sizes that occur; the exponent only where they would run on.
    const double size = std::abs(value);
    const bool plain = value == 0 || (size >= 1e-7 && size < 1e17);
    char digits[64];
    const auto form = plain ? std::chars_format::fixed : std::chars_format::scientific;
    out_.append(digits, std::to_chars(std::begin(digits), std::end(digits), value, form).ptr);
}

void JsonWriter::number(double value) {
    beginValue();
    appendNumber(value);
}

void JsonWriter::pairs(double a, double b, double c, double d) {
    beginValue();
    out_ += "[[";
    appendNumber(a);
    out_ += ", ";
    appendNumber(b);
    out_ += "], [";
    appendNumber(c);
    out_ += ", ";
    appendNumber(d);
    out_ += "]]";
}

std::string JsonWriter::path() const {
    std::string path;
    for (const Level& level : levels_) {
        if (level.isArray) {
            appendIndex(path, level.members - 1);
        } else {
            appendKey(path, level.key);
        }
    }
    return path;
}

Result<std::string> JsonWriter::finish() && {
    if (failure_) return std::unexpected(*std::move(failure_));
    out_ += '\n';
    return std::move(out_);
}

}  // namespace quillo
