#pragma once
#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef CGRect NSRect;
typedef NSString* NSDeviceDescriptionKey;

/* Main thread. Origin at the bottom left of the first screen, in points. */
@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens; /* the first has the menu bar; not to be kept */
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@property(readonly) CGFloat backingScaleFactor;
@property(readonly, copy) NSString* localizedName;
@property(readonly, copy) NSDictionary<NSDeviceDescriptionKey, id>* deviceDescription; /* "NSScreenNumber" */
@end

NS_ASSUME_NONNULL_END
