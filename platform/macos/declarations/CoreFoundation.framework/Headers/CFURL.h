#pragma once
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

CF_EXTERN_C_BEGIN

typedef const struct __CFURL* CFURLRef;

CF_EXPORT CFTypeID CFURLGetTypeID(void);
/* Null where the bytes are no address. `base` may be null. */
CF_EXPORT CFURLRef CFURLCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                        CFStringEncoding encoding, CFURLRef base);
/* As written: without its base. Not retained. */
CF_EXPORT CFStringRef CFURLGetString(CFURLRef url);
CF_EXPORT CFURLRef CFURLCopyAbsoluteURL(CFURLRef url);

CF_EXTERN_C_END
