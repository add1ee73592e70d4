#pragma once
#include <stdbool.h>
#include <stdint.h>

// Our own declarations of what this program uses of Core Foundation, after its public documentation. A real
// Mac's own headers take their place there.

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

typedef const struct __CFArray* CFArrayRef;

typedef struct {
    CFIndex version;
    const void* (*retain)(CFAllocatorRef allocator, const void* value);
    void (*release)(CFAllocatorRef allocator, const void* value);
    CFStringRef (*copyDescription)(const void* value);
    Boolean (*equal)(const void* one, const void* other);
} CFArrayCallBacks;

CF_EXPORT const CFArrayCallBacks kCFTypeArrayCallBacks;

CF_EXPORT CFTypeID CFArrayGetTypeID(void);
CF_EXPORT CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                                   const CFArrayCallBacks* callBacks);
CF_EXPORT CFIndex CFArrayGetCount(CFArrayRef array);
CF_EXPORT const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index); /* not retained */

typedef const struct __CFData* CFDataRef;

CF_EXPORT CFTypeID CFDataGetTypeID(void);
CF_EXPORT CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
CF_EXPORT CFIndex CFDataGetLength(CFDataRef data);
CF_EXPORT const UInt8* CFDataGetBytePtr(CFDataRef data);

typedef CFTimeInterval CFAbsoluteTime; /* seconds since 2001-01-01 00:00 UTC */
typedef const struct __CFDate* CFDateRef;

CF_EXPORT const CFTimeInterval kCFAbsoluteTimeIntervalSince1970;
CF_EXPORT CFTypeID CFDateGetTypeID(void);
CF_EXPORT CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime time);
CF_EXPORT CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);
CF_EXPORT CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);

typedef const struct __CFDictionary* CFDictionaryRef;

typedef struct {
    CFIndex version;
    const void* (*retain)(CFAllocatorRef allocator, const void* value);
    void (*release)(CFAllocatorRef allocator, const void* value);
    CFStringRef (*copyDescription)(const void* value);
    Boolean (*equal)(const void* one, const void* other);
    unsigned long (*hash)(const void* value);
} CFDictionaryKeyCallBacks;

typedef struct {
    CFIndex version;
    const void* (*retain)(CFAllocatorRef allocator, const void* value);
    void (*release)(CFAllocatorRef allocator, const void* value);
    CFStringRef (*copyDescription)(const void* value);
    Boolean (*equal)(const void* one, const void* other);
} CFDictionaryValueCallBacks;

CF_EXPORT const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
CF_EXPORT const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CF_EXPORT CFTypeID CFDictionaryGetTypeID(void);
CF_EXPORT CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                             CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                             const CFDictionaryValueCallBacks* valueCallBacks);
CF_EXPORT const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key); /* not retained */
/* Either of `keys` and `values` may be null; what they get is not retained. */

typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFNumber* CFNumberRef;

typedef enum CFNumberType : CFIndex {
    kCFNumberSInt32Type = 3,
    kCFNumberSInt64Type = 4,
    kCFNumberFloat64Type = 6,
    kCFNumberIntType = 9,
    kCFNumberDoubleType = 13
} CFNumberType;

CF_EXPORT const CFBooleanRef kCFBooleanTrue;
CF_EXPORT const CFBooleanRef kCFBooleanFalse;
CF_EXPORT CFTypeID CFBooleanGetTypeID(void);
CF_EXPORT Boolean CFBooleanGetValue(CFBooleanRef boolean);

CF_EXPORT CFTypeID CFNumberGetTypeID(void);
CF_EXPORT CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value);
/* False where the conversion lost something: the value is then the nearest. */
CF_EXPORT Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

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

/* What a person set for an application, by the application's identifier. Null where nothing is set. */
CF_EXPORT CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID);
/* A null value removes the key. Kept for good only by the next synchronisation. */
CF_EXPORT void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID);
/* Writes what was set and reads what others set since; false where that failed. */
CF_EXPORT Boolean CFPreferencesAppSynchronize(CFStringRef applicationID);

typedef CFStringRef CFRunLoopMode;
typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;
typedef struct __CFRunLoopTimer* CFRunLoopTimerRef;

typedef enum CFRunLoopRunResult : SInt32 {
    kCFRunLoopRunFinished = 1, /* the mode has neither source nor timer */
    kCFRunLoopRunStopped = 2,
    kCFRunLoopRunTimedOut = 3,
    kCFRunLoopRunHandledSource = 4
} CFRunLoopRunResult;

CF_EXPORT const CFRunLoopMode kCFRunLoopDefaultMode;
CF_EXPORT const CFRunLoopMode kCFRunLoopCommonModes; /* for adding to all of them; none to run in */

/* There is one for each thread. Not retained. */
CF_EXPORT CFRunLoopRef CFRunLoopGetCurrent(void);
/* Of the current thread. A timer that fires does not count as a handled source. */
CF_EXPORT CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                                Boolean returnAfterSourceHandled);
/* Any thread; one that comes while the loop does not sleep keeps it from sleeping next. */
CF_EXPORT void CFRunLoopWakeUp(CFRunLoopRef loop);

/* Version 0: performed by the loop once it was signalled. Whatever is not needed may be null. */
typedef struct {
    CFIndex version;
    void* info;
    const void* (*retain)(const void* info);
    void (*release)(const void* info);
    CFStringRef (*copyDescription)(const void* info);
    Boolean (*equal)(const void* one, const void* other);
    unsigned long (*hash)(const void* info);
    void (*schedule)(void* info, CFRunLoopRef loop, CFRunLoopMode mode);
    void (*cancel)(void* info, CFRunLoopRef loop, CFRunLoopMode mode);
    void (*perform)(void* info);
} CFRunLoopSourceContext;

/* The context is copied. */
CF_EXPORT CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef allocator, CFIndex order,
                                                   CFRunLoopSourceContext* context);
CF_EXPORT void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
/* Any thread. Wakes nobody: CFRunLoopWakeUp does. */
CF_EXPORT void CFRunLoopSourceSignal(CFRunLoopSourceRef source);
/* Takes it out of its loops; it is never performed again. */
CF_EXPORT void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source);

typedef struct {
    CFIndex version;
    void* info;
    const void* (*retain)(const void* info);
    void (*release)(const void* info);
    CFStringRef (*copyDescription)(const void* info);
} CFRunLoopTimerContext;
typedef void (*CFRunLoopTimerCallBack)(CFRunLoopTimerRef timer, void* info);

/* One without an interval is invalid once it has fired. */
CF_EXPORT CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef allocator, CFAbsoluteTime fireDate,
                                                 CFTimeInterval interval, CFOptionFlags flags, CFIndex order,
                                                 CFRunLoopTimerCallBack callout,
                                                 CFRunLoopTimerContext* context);
CF_EXPORT void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode);
CF_EXPORT void CFRunLoopTimerSetNextFireDate(CFRunLoopTimerRef timer, CFAbsoluteTime fireDate);
CF_EXPORT void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer);

typedef const struct __CFURL* CFURLRef;

CF_EXPORT CFTypeID CFURLGetTypeID(void);
/* Null where the bytes are no address. `base` may be null. */
CF_EXPORT CFURLRef CFURLCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                        CFStringEncoding encoding, CFURLRef base);
/* As written: without its base. Not retained. */
CF_EXPORT CFStringRef CFURLGetString(CFURLRef url);
CF_EXPORT CFURLRef CFURLCopyAbsoluteURL(CFURLRef url);

typedef const struct __CFUUID* CFUUIDRef;

CF_EXPORT CFTypeID CFUUIDGetTypeID(void);
CF_EXPORT CFUUIDRef CFUUIDCreateFromString(CFAllocatorRef allocator, CFStringRef string);
CF_EXPORT CFStringRef CFUUIDCreateString(CFAllocatorRef allocator,
                                         CFUUIDRef uuid); /* upper case, with hyphens */

CF_EXTERN_C_END
