#include "platform/x11/Edid.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace quillo::x11 {
namespace {

constexpr std::size_t blockSize = 128;
constexpr std::array<std::uint8_t, 8> header{0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
constexpr std::array<std::size_t, 4> descriptors{54, 72, 90, 108};
constexpr std::uint8_t serialText = 0xFF;

using Block = std::array<std::uint8_t, blockSize>;

bool isSound(const Block& block) {
    std::uint8_t sum = 0;
    for (const auto byte : block) sum = static_cast<std::uint8_t>(sum + byte);
    return sum == 0 && std::equal(header.begin(), header.end(), block.begin());
}

/// Three letters of five bits each.
std::string vendor(const Block& block) {
    const auto packed = static_cast<unsigned>(block[8] << 8 | block[9]);
    std::string letters;
    for (const unsigned shift : {10u, 5u, 0u}) {
        const auto letter = (packed >> shift) & 31u;
        if (letter < 1 || letter > 26) return {};
        letters += static_cast<char>('A' + letter - 1);
    }
    return letters;
}

std::string serial(const Block& block) {
    for (const auto at : descriptors) {
        if (block[at] != 0 || block[at + 1] != 0 || block[at + 3] != serialText) continue;
        std::string text;
        for (std::size_t i = at + 5; i < at + 18 && block[i] != '\n' && block[i] != 0; ++i) {
            if (block[i] > 0x20 && block[i] < 0x7F) text += static_cast<char>(block[i]);
        }
        if (!text.empty()) return text;
    }
    return fmt::format(
        "{}", static_cast<std::uint32_t>(block[12]) | static_cast<std::uint32_t>(block[13]) << 8 |
                  static_cast<std::uint32_t>(block[14]) << 16 | static_cast<std::uint32_t>(block[15]) << 24);
}

}  // namespace

std::optional<std::string> edidIdentity(std::span<const std::byte> edid) {
    if (edid.size() < blockSize) return std::nullopt;
    Block block{};
    std::ranges::transform(edid.first(blockSize), block.begin(),
                           [](std::byte byte) { return static_cast<std::uint8_t>(byte); });
    const auto letters = isSound(block) ? vendor(block) : std::string();
    if (letters.empty()) return std::nullopt;
    return fmt::format("{}-{:04X}-{}", letters, block[10] | block[11] << 8, serial(block));
}

}  // namespace quillo::x11
