// RFC 4122 identifiers.
#pragma once
#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillo {

class Uuid {
  public:
    /// The nil identifier.
    constexpr Uuid() = default;

    /// A version 4 identifier from the system's random source.
    static Uuid random();
    /// The canonical hyphenated form of 36 characters in either case; anything else is absent.
    static std::optional<Uuid> parse(std::string_view text);
    static constexpr Uuid fromBytes(std::array<std::uint8_t, 16> bytes) {
        Uuid id;
        id.bytes_ = bytes;
        return id;
    }

    std::string upper() const;  // as documents write it
    std::string lower() const;  // as file names carry it
    const std::array<std::uint8_t, 16>& bytes() const { return bytes_; }

    auto operator<=>(const Uuid&) const = default;

  private:
    std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace quillo
