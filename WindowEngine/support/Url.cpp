#include "WindowEngine/support/Url.hpp"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

#include "WindowEngine/support/Domain.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Length of the scheme before its colon; 0 where there is none.
std::size_t schemeLength(std::string_view text) {
    if (text.empty() || !isLetter(text[0])) return 0;
    for (std::size_t i = 1; i < text.size(); ++i) {
        const char c = text[i];
        if (c == ':') return i;
        if (!isLetter(c) && !isDigit(c) && c != '+' && c != '-' && c != '.') return 0;
    }
    return 0;
}

bool hasForbiddenUnicode(std::string_view text) {
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t i = 0; i < length;) {
        UChar32 c;
        U8_NEXT(text.data(), i, length, c);
        // Format characters (a joiner, a soft hyphen) occur in addresses of some scripts.
        if (c < 0 || u_charType(c) == U_CONTROL_CHAR || u_isUWhiteSpace(c)) return true;
    }
    return false;
}

// Without a way out of the loop, so that compilers take many bytes at once.
bool hasForbiddenCharacters(std::string_view text) {
    bool forbidden = false;
    unsigned char all = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        forbidden |= byte <= 0x20 || byte == 0x7f;
        all |= byte;
    }
    return forbidden || (all >= 0x80 && hasForbiddenUnicode(text));
}

// The parts of an address that follow the scheme.
struct Parts {
    std::optional<std::string_view> authority;
    std::string_view path;
    std::string_view rest;  // query and fragment with their marks
};

Parts split(std::string_view text) {
    Parts parts;
    text.remove_prefix(schemeLength(text) + 1);
    const std::size_t mark = std::min(text.find_first_of("?#"), text.size());
    parts.rest = text.substr(mark);
    text = text.substr(0, mark);
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        const std::size_t slash = std::min(text.find('/'), text.size());
        parts.authority = text.substr(0, slash);
        text.remove_prefix(slash);
    }
    parts.path = text;
    return parts;
}

std::string_view hostOf(std::string_view authority) {
    if (const auto at = authority.rfind('@'); at != std::string_view::npos) authority.remove_prefix(at + 1);
    if (authority.starts_with('[')) {
        const auto close = authority.find(']');
        return authority.substr(1, close == std::string_view::npos ? close : close - 1);
    }
    return authority.substr(0, authority.find(':'));
}

// Absent for an escape that is not two hexadecimal digits or that stands for NUL.
std::optional<std::string> percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i];
            continue;
        }
        if (i + 2 >= text.size()) return std::nullopt;
        const int high = text::hexDigit(text[i + 1]), low = text::hexDigit(text[i + 2]);
        if (high < 0 || low < 0 || high + low == 0) return std::nullopt;
        decoded += static_cast<char>(high << 4 | low);
        i += 2;
    }
    return decoded;
}

// What a path may hold unescaped: RFC 3986 pchar and the slash.
bool isPathCharacter(char c) {
    return isLetter(c) || isDigit(c) || std::string_view("-._~!$&'()*+,;=:@/").contains(c);
}

std::string percentEncoded(std::string_view path) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(path.size());
    for (const char c : path) {
        if (isPathCharacter(c)) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return encoded;
}

std::string withoutDotSegments(std::string_view path) {
    std::vector<std::string_view> kept;
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        const std::string_view segment = path.substr(0, slash);
        path.remove_prefix(std::min(slash + 1, path.size()));
        if (segment.empty() || segment == ".") continue;
        if (segment != "..") {
            kept.push_back(segment);
        } else if (!kept.empty()) {
            kept.pop_back();
        }
    }
    std::string joined;
    for (const std::string_view segment : kept) joined.append("/").append(segment);
    return joined.empty() ? "/" : joined;
}

}  // namespace

std::optional<Url> Url::parse(std::string_view text) {
    if (schemeLength(text) == 0 || hasForbiddenCharacters(text)) return std::nullopt;
    return Url(std::string(text));
}

Url Url::file(std::string_view path, bool directory) {
    if (!path.starts_with('/') || path.contains('\0')) {
        throw std::logic_error("a file URL needs an absolute path without NUL bytes");
    }
    std::string text = "file://" + percentEncoded(path);
    if (directory && !text.ends_with('/')) text += '/';
    return Url(std::move(text));
}

std::string Url::scheme() const {
    std::string scheme = text_.substr(0, schemeLength(text_));
    for (char& c : scheme) c = lowered(c);
    return scheme;
}

std::optional<std::string> Url::host() const {
    const Parts parts = split(text_);
    if (!parts.authority) return std::nullopt;
    const std::string_view host = hostOf(*parts.authority);
    return host.empty() ? std::nullopt : std::optional(std::string(host));
}

std::optional<std::string> Url::asciiHost() const {
    const auto written = host();
    if (!written) return std::nullopt;
    return asciiDomain(percentDecoded(*written).value_or(*written));
}

bool Url::isWeb() const {
    const std::string name = scheme();
    return name == "http" || name == "https";
}

bool Url::isFile() const {
    if (scheme() != "file") return false;
    const auto authority = split(text_).authority.value_or("");
    return authority.empty() || text::equalIgnoringCase(authority, "localhost");
}

std::optional<std::string> Url::filePath() const {
    if (!isFile()) return std::nullopt;
    auto path = percentDecoded(split(text_).path);
    if (!path || !path->starts_with('/')) return std::nullopt;
    while (path->size() > 1 && path->ends_with('/')) path->pop_back();
    return path;
}

Url Url::standardized() const {
    const auto path = filePath();
    if (!path) return *this;
    return Url(file(withoutDotSegments(*path)).text_ + std::string(split(text_).rest));
}

}  // namespace quillo
