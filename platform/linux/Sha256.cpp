#include "platform/linux/Sha256.hpp"

#include <glib.h>

#include <memory>

namespace quillo {

std::string sha256(std::string_view bytes) {
    const std::unique_ptr<gchar, decltype(&g_free)> digits(
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(bytes.data()),
                                    bytes.size()),
        g_free);
    return digits.get();
}

}  // namespace quillo
