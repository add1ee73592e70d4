// Our own declarations of what this program uses of Carbon, after its public documentation: hot keys of the
// event manager and the keyboard's layout. All of it is for the main thread.
#pragma once
#include <CoreServices/CoreServices.h>

CF_EXTERN_C_BEGIN

typedef struct OpaqueEventRef* EventRef;
typedef struct OpaqueEventTargetRef* EventTargetRef;
typedef struct OpaqueEventHandlerRef* EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef* EventHandlerCallRef;
typedef struct OpaqueEventHotKeyRef* EventHotKeyRef;
typedef OSType EventParamName;
typedef OSType EventParamType;

enum {
    eventParameterNotFoundErr = -9870,
    eventNotHandledErr = -9874,
    eventHotKeyExistsErr = -9878,
    eventHotKeyInvalidErr = -9879
};
enum { kEventClassKeyboard = 0x6B657962 /* keyb */, kEventHotKeyPressed = 5 };
enum { kEventParamDirectObject = 0x2D2D2D2D /* ---- */, typeEventHotKeyID = 0x686B6964 /* hkid */ };

typedef struct {
    OSType eventClass;
    UInt32 eventKind;
} EventTypeSpec;

typedef struct {
    OSType signature;
    UInt32 id;
} EventHotKeyID;

/* eventNotHandledErr lets the event go on to the next handler. */
typedef OSStatus (*EventHandlerUPP)(EventHandlerCallRef next, EventRef event, void* userData);

CF_EXPORT EventTargetRef GetApplicationEventTarget(void); /* not retained */
/* The handler is there until RemoveEventHandler. */
CF_EXPORT OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                                       const EventTypeSpec* types, void* userData, EventHandlerRef* result);
CF_EXPORT OSStatus RemoveEventHandler(EventHandlerRef handler);
/* `actualType` and `actualSize` may be null. */
CF_EXPORT OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType desiredType,
                                     EventParamType* actualType, ByteCount bufferSize, ByteCount* actualSize,
                                     void* data);

/* The hot key is there until UnregisterEventHotKey. */
CF_EXPORT OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID id,
                                       EventTargetRef target, OptionBits options, EventHotKeyRef* result);
CF_EXPORT OSStatus UnregisterEventHotKey(EventHotKeyRef hotKey);

typedef struct __TISInputSource* TISInputSourceRef;
CF_EXPORT const CFStringRef kTISPropertyUnicodeKeyLayoutData; /* a CFData */
CF_EXPORT TISInputSourceRef TISCopyCurrentKeyboardLayoutInputSource(void);
/* Null where the source lacks it. Not retained: it lives as long as the source. */
CF_EXPORT void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key);

/* What kind of keyboard was used last. */
CF_EXPORT UInt8 LMGetKbdType(void);

CF_EXTERN_C_END
