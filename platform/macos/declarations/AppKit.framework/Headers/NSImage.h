#pragma once
#include <AppKit/NSScreen.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSColorSpaceName;
extern NSColorSpaceName const NSDeviceRGBColorSpace;

@interface NSImageRep : NSObject <NSCopying>
@end

@interface NSBitmapImageRep : NSImageRep
/* Without planes it has memory of its own, which is clear. Samples: colours multiplied with alpha, which is
 * the last. Null for a combination that it cannot hold. */
- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bitsPerSample
                                  samplesPerPixel:(NSInteger)samplesPerPixel
                                         hasAlpha:(BOOL)alpha
                                         isPlanar:(BOOL)isPlanar
                                   colorSpaceName:(NSColorSpaceName)colorSpaceName
                                      bytesPerRow:(NSInteger)bytesPerRow
                                     bitsPerPixel:(NSInteger)bitsPerPixel;
@property(nullable, readonly) unsigned char* bitmapData; /* the first row is the topmost */
@end

@interface NSImage : NSObject <NSCopying>
- (void)drawInRect:(NSRect)rect; /* the whole of it, over what is there, in the current context */
@end

/* Of the thread that asks. */
@interface NSGraphicsContext : NSObject
@property(class, nullable, strong) NSGraphicsContext* currentContext;
+ (nullable NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmapRep;
+ (void)saveGraphicsState; /* with which context is the current one */
+ (void)restoreGraphicsState;
@end

NS_ASSUME_NONNULL_END
