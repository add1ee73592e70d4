// Our own declarations of what this program uses of Common Crypto, after its public documentation.
#pragma once
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t CC_LONG;
enum { CC_SHA256_DIGEST_LENGTH = 32 };

/* Any thread. `md` has room for the digest and is returned. */
extern unsigned char* CC_SHA256(const void* data, CC_LONG len, unsigned char* md);

#ifdef __cplusplus
}
#endif
