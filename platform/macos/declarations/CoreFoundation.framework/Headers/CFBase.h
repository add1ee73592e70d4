// Our own declarations of what this program uses of Core Foundation, after its public documentation. A real
// Mac's own headers take their place there. This file: base types, reference counts, equality.
#pragma once
#include <stdbool.h>
#include <stdint.h>

#if __has_include(<MacTypes.h>)
#include <MacTypes.h>
#else
typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef uint16_t UInt16;
typedef int32_t SInt32;
typedef uint32_t UInt32;
typedef SInt32 OSStatus;
typedef UInt32 OSType;
typedef UInt32 OptionBits;
typedef unsigned long ByteCount;
typedef unsigned long ItemCount;
typedef UInt16 UniChar;
typedef unsigned long UniCharCount;
enum { noErr = 0 };
#endif

#ifdef __cplusplus
#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#endif
#define CF_EXPORT extern

CF_EXTERN_C_BEGIN

typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef double CFTimeInterval;
typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFNull* CFNullRef;
typedef CFTypeRef CFPropertyListRef;

typedef struct {
    CFIndex location;
    CFIndex length;
} CFRange;

CF_EXPORT const CFAllocatorRef kCFAllocatorDefault;
CF_EXPORT const CFNullRef kCFNull;

/* Neither takes null. */
CF_EXPORT CFTypeRef CFRetain(CFTypeRef object);
CF_EXPORT void CFRelease(CFTypeRef object);
CF_EXPORT CFTypeID CFGetTypeID(CFTypeRef object);
CF_EXPORT Boolean CFEqual(CFTypeRef one, CFTypeRef other);
CF_EXPORT CFTypeID CFNullGetTypeID(void);

CF_EXTERN_C_END
