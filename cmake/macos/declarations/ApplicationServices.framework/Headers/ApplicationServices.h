// Our own declarations of what this program uses of ApplicationServices, after its public documentation.
#pragma once
#include <ColorSync/ColorSync.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <sys/types.h>

CF_EXTERN_C_BEGIN

typedef const struct __AXUIElement* AXUIElementRef;
typedef const struct __AXValue* AXValueRef;

typedef enum AXError : SInt32 {
    kAXErrorSuccess = 0,
    kAXErrorFailure = -25200,
    kAXErrorIllegalArgument = -25201,
    kAXErrorInvalidUIElement = -25202,
    kAXErrorInvalidUIElementObserver = -25203,
    kAXErrorCannotComplete = -25204,
    kAXErrorAttributeUnsupported = -25205,
    kAXErrorActionUnsupported = -25206,
    kAXErrorNotificationUnsupported = -25207,
    kAXErrorNotImplemented = -25208,
    kAXErrorNotificationAlreadyRegistered = -25209,
    kAXErrorNotificationNotRegistered = -25210,
    kAXErrorAPIDisabled = -25211,
    kAXErrorNoValue = -25212,
    kAXErrorParameterizedAttributeUnsupported = -25213,
    kAXErrorNotEnoughPrecision = -25214
} AXError;

CF_EXPORT const CFStringRef kAXTrustedCheckOptionPrompt;
CF_EXPORT Boolean AXIsProcessTrusted(void);
CF_EXPORT Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);

CF_EXPORT CFTypeID AXUIElementGetTypeID(void);
CF_EXPORT AXUIElementRef AXUIElementCreateApplication(pid_t pid);
CF_EXPORT AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid);
/* Seconds; 0 for the default. It holds for this element reference, not for what it names. */
CF_EXPORT AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds);
CF_EXPORT AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                                CFTypeRef* value);
typedef UInt32 AXCopyMultipleAttributeOptions;
/* One value for each attribute, in order; where one cannot be had, an AXValue holding an AXError stands for
 * it. */
CF_EXPORT AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                                         AXCopyMultipleAttributeOptions options,
                                                         CFArrayRef* values);
CF_EXPORT AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                               CFTypeRef value);
CF_EXPORT AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action);

typedef enum AXValueType : UInt32 {
    kAXValueTypeIllegal = 0,
    kAXValueTypeCGPoint = 1,
    kAXValueTypeCGSize = 2,
    kAXValueTypeCGRect = 3,
    kAXValueTypeCFRange = 4,
    kAXValueTypeAXError = 5
} AXValueType;

CF_EXPORT CFTypeID AXValueGetTypeID(void);
CF_EXPORT AXValueRef AXValueCreate(AXValueType type, const void* value);
/* False, and nothing written, where the value is of another type. */
CF_EXPORT Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result);

CF_EXTERN_C_END
