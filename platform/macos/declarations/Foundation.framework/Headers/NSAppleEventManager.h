#pragma once
#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef FourCharCode AEKeyword;

@interface NSAppleEventDescriptor : NSObject
@property(readonly) AEEventClass eventClass; /* 0 of what is no event */
@property(readonly) AEEventID eventID;
@property(readonly) OSType enumCodeValue;
- (nullable NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword;
@end

/* Main thread. */
@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager*)sharedAppleEventManager;
/* While an event is handled on this thread; else null. Not to be kept. */
@property(nullable, readonly, strong) NSAppleEventDescriptor* currentAppleEvent;
/* The handler is not kept; it takes the event and the reply. */
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end

NS_ASSUME_NONNULL_END
