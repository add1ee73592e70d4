#pragma once
#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef UInt32 CFStringEncoding;
enum { kCFStringEncodingUTF8 = 0x08000100 };

CF_EXPORT CFTypeID CFStringGetTypeID(void);
CF_EXPORT CFIndex CFStringGetLength(CFStringRef string); /* in UTF-16 units */
/* Null where the bytes are not of that encoding. */
CF_EXPORT CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                              CFStringEncoding encoding, Boolean isExternalRepresentation);
/* UTF-16, taken as it is: half of a surrogate pair too. */
CF_EXPORT CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters,
                                                   CFIndex count);
/* The number of units converted; `buffer` may be null to learn the bytes needed. `lossByte` stands for what
   the encoding cannot say; at 0 the conversion ends there. */
CF_EXPORT CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                                   UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer,
                                   CFIndex maximumLength, CFIndex* usedLength);

CF_EXTERN_C_END
