// libFuzzer target fuzz_workspace: no bytes may crash the reader, every
// refusal names what is wrong, and what is accepted is stable under writing and reading.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "WindowEngine/records/WorkspaceCoding.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto decoded = quillo::WorkspaceCoding::decode(bytes);
    if (!decoded) {
        if (decoded.error().text.empty() || decoded.error().text.contains('\n')) std::abort();
        return 0;
    }
    const auto written = quillo::WorkspaceCoding::encode(*decoded);
    if (!written || quillo::WorkspaceCoding::decode(*written) != decoded) std::abort();
    return 0;
}
