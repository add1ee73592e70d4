#include "platform/macos/MacSha256.hpp"

#include <CommonCrypto/CommonDigest.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>

namespace quillo {

std::string macSha256(std::string_view bytes) {
    std::array<unsigned char, CC_SHA256_DIGEST_LENGTH> digest{};
    CC_SHA256(bytes.data(), static_cast<CC_LONG>(bytes.size()), digest.data());
    return fmt::format("{:02x}", fmt::join(digest, ""));
}

}  // namespace quillo
