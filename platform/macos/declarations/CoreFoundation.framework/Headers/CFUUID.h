#pragma once
#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef const struct __CFUUID* CFUUIDRef;

CF_EXPORT CFTypeID CFUUIDGetTypeID(void);
CF_EXPORT CFUUIDRef CFUUIDCreateFromString(CFAllocatorRef allocator, CFStringRef string);
CF_EXPORT CFStringRef CFUUIDCreateString(CFAllocatorRef allocator,
                                         CFUUIDRef uuid); /* upper case, with hyphens */

CF_EXTERN_C_END
