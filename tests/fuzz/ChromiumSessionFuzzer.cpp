// libFuzzer target fuzz_chromium_session: no bytes may crash the reader of session logs, every refusal says
// why, and what is read holds what its type promises. The first byte tells where the log of closed tabs
// begins.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "WindowEngine/integrations/ChromiumSessionLog.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t middle = bytes.size() * data[0] / 255;
    const auto session = quillo::ChromiumSessionLog::read(bytes.substr(0, middle), bytes.substr(middle));
    if (!session) return session.error().text.empty() ? (std::abort(), 0) : 0;
    if (!std::ranges::is_sorted(session->windows, {}, &quillo::BrowserWindow::order)) std::abort();
    for (const auto& window : session->windows)
        if (window.selected >= window.tabs.size()) std::abort();
    return 0;
}
