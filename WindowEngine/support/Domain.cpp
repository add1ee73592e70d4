#include "WindowEngine/support/Domain.hpp"

#include <unicode/bytestream.h>
#include <unicode/idna.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

// Browsers let these pass, and such hosts exist ("r3---sn.example").
constexpr std::uint32_t tolerated = UIDNA_ERROR_EMPTY_LABEL | UIDNA_ERROR_LABEL_TOO_LONG |
                                    UIDNA_ERROR_DOMAIN_NAME_TOO_LONG | UIDNA_ERROR_LEADING_HYPHEN |
                                    UIDNA_ERROR_TRAILING_HYPHEN | UIDNA_ERROR_HYPHEN_3_4;

const icu::IDNA* rules() {
    static const std::unique_ptr<const icu::IDNA> rules = [] {
        UErrorCode status = U_ZERO_ERROR;
        return std::unique_ptr<const icu::IDNA>(
            icu::IDNA::createUTS46Instance(UIDNA_NONTRANSITIONAL_TO_ASCII, status));
    }();
    return rules.get();
}

std::optional<std::string> mapped(std::string_view name) {
    if (!rules()) return std::nullopt;
    std::string ascii;
    icu::StringByteSink<std::string> sink(&ascii);
    icu::IDNAInfo info;
    UErrorCode status = U_ZERO_ERROR;
    rules()->nameToASCII_UTF8({name.data(), static_cast<std::int32_t>(name.size())}, sink, info, status);
    if (U_FAILURE(status) || (info.getErrors() & ~tolerated) != 0) return std::nullopt;
    return ascii;
}

}  // namespace

std::string asciiDomain(std::string_view name) {
    std::string domain = mapped(name).value_or(text::lowercase(name));
    if (domain.ends_with('.')) domain.pop_back();
    return domain;
}

}  // namespace quillo
