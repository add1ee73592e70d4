// Domain names in the one spelling in which they can be compared.
#pragma once
#include <string>
#include <string_view>

namespace quillo {

/// Lower-case ASCII as browsers resolve it (UTS 46, non-transitional: "Müller.example." is
/// "xn--mller-kva.example"), without a trailing dot. A name that UTS 46 refuses is only lower-cased: it still
/// equals itself.
std::string asciiDomain(std::string_view name);

}  // namespace quillo
