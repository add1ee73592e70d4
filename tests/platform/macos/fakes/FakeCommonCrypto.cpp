// Digests as the system's library computes them, by GLib.
#include <CommonCrypto/CommonDigest.h>
#include <glib.h>

#include "tests/platform/macos/fakes/FakeObject.hpp"

unsigned char* CC_SHA256(const void* data, CC_LONG len, unsigned char* md) {
    if (data == nullptr || md == nullptr) quillo::fakes::fail("a digest of nothing, or into nothing");
    GChecksum* const checksum = g_checksum_new(G_CHECKSUM_SHA256);
    g_checksum_update(checksum, static_cast<const guchar*>(data), len);
    gsize size = CC_SHA256_DIGEST_LENGTH;
    g_checksum_get_digest(checksum, md, &size);
    g_checksum_free(checksum);
    return md;
}
