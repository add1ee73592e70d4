#pragma once
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFString.h>

CF_EXTERN_C_BEGIN

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

CF_EXTERN_C_END
