#include "WindowEngine/support/Uuid.hpp"

#include <cstring>
#include <random>

#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

constexpr std::size_t textLength = 36;

bool isHyphenPlace(std::size_t i) {
    return i == 8 || i == 13 || i == 18 || i == 23;
}

std::string spell(const std::array<std::uint8_t, 16>& bytes, const char* digits) {
    std::string text;
    text.reserve(textLength);
    for (const std::uint8_t byte : bytes) {
        if (isHyphenPlace(text.size())) text += '-';
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

}  // namespace

Uuid Uuid::random() {
    std::random_device source;
    std::array<std::uint8_t, 16> bytes;
    for (std::size_t i = 0; i < bytes.size(); i += sizeof(std::uint32_t)) {
        const std::uint32_t word = source();
        std::memcpy(&bytes[i], &word, sizeof word);
    }
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0f) | 0x40);  // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3f) | 0x80);  // variant of RFC 4122
    return fromBytes(bytes);
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != textLength) return std::nullopt;
    std::array<std::uint8_t, 16> bytes{};
    std::size_t byte = 0;
    for (std::size_t i = 0; i < textLength;) {
        if (isHyphenPlace(i)) {
            if (text[i++] != '-') return std::nullopt;
            continue;
        }
        const int high = text::hexDigit(text[i]), low = text::hexDigit(text[i + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes[byte++] = static_cast<std::uint8_t>(high << 4 | low);
        i += 2;
    }
    return fromBytes(bytes);
}

std::string Uuid::upper() const {
    return spell(bytes_, "0123456789ABCDEF");
}

std::string Uuid::lower() const {
    return spell(bytes_, "0123456789abcdef");
}

}  // namespace quillo
