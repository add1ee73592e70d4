// libFuzzer target fuzz_firefox_session: no bytes may crash the reader, neither as a file nor, packed, as
// what stands in one; every refusal says why, and what is read holds what its type promises.
#include <lz4.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "WindowEngine/integrations/FirefoxSession.hpp"

namespace {

void read(std::string_view file) {
    const auto session = quillo::FirefoxSession::read(file);
    if (!session) {
        if (session.error().text.empty()) std::abort();
        return;
    }
    for (const auto& window : session->windows)
        if (window.selected >= window.tabs.size()) std::abort();
}

std::string packed(std::string_view json) {
    const auto size = static_cast<std::uint32_t>(json.size());
    std::string file("mozLz40\0", 8);
    file.append(reinterpret_cast<const char*>(&size), sizeof size);
    std::string block(static_cast<std::size_t>(LZ4_compressBound(static_cast<int>(size))), '\0');
    const int length = LZ4_compress_default(json.data(), block.data(), static_cast<int>(size),
                                            static_cast<int>(block.size()));
    return file.append(block, 0, static_cast<std::size_t>(length));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    read(bytes);
    read(packed(bytes));
    return 0;
}
