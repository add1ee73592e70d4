// Our own declarations of what this program uses of ColorSync, after its public documentation.
#pragma once
#include <CoreFoundation/CoreFoundation.h>

CF_EXTERN_C_BEGIN

/* Null where no such display is attached; the caller owns the result. */
CF_EXPORT CFUUIDRef CGDisplayCreateUUIDFromDisplayID(uint32_t displayID);

CF_EXTERN_C_END
