// Our own declarations of what this program uses of Core Graphics, after its public documentation.
#pragma once
#include <CoreFoundation/CoreFoundation.h>

CF_EXTERN_C_BEGIN

typedef double CGFloat;

typedef struct CGPoint {
    CGFloat x;
    CGFloat y;
} CGPoint;

typedef struct CGSize {
    CGFloat width;
    CGFloat height;
} CGSize;

typedef struct CGRect {
    CGPoint origin;
    CGSize size;
} CGRect;

/* False where the dictionary does not describe a rectangle. */
CF_EXPORT bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect* rect);

typedef enum CGError : SInt32 { kCGErrorSuccess = 0 } CGError;
typedef uint32_t CGDirectDisplayID;
typedef uint32_t CGWindowID;
enum { kCGNullWindowID = 0 };

typedef uint32_t CGWindowListOption;
enum { kCGWindowListOptionAll = 0, kCGWindowListExcludeDesktopElements = 1 << 4 };

CF_EXPORT const CFStringRef kCGWindowNumber;   /* number */
CF_EXPORT const CFStringRef kCGWindowOwnerPID; /* number */
CF_EXPORT const CFStringRef kCGWindowLayer;    /* number */
CF_EXPORT const CFStringRef kCGWindowBounds;   /* dictionary, a rectangle: global points, top left */

/* Front to back where only windows on screen are asked for, else in no order that is promised; null where
   there is no window server session. */
CF_EXPORT CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow);

/* Null where there is no window server session. */
CF_EXPORT CFDictionaryRef CGSessionCopyCurrentDictionary(void);

CF_EXPORT CGDirectDisplayID CGMainDisplayID(void);
/* Of what the display says of itself; 0 or 0xFFFFFFFF where it says nothing. */
CF_EXPORT uint32_t CGDisplayVendorNumber(CGDirectDisplayID display);
CF_EXPORT uint32_t CGDisplayModelNumber(CGDirectDisplayID display);
CF_EXPORT uint32_t CGDisplaySerialNumber(CGDirectDisplayID display);
/* 1 while its picture is switched off. */
CF_EXPORT uint32_t CGDisplayIsAsleep(CGDirectDisplayID display);

CF_EXTERN_C_END
