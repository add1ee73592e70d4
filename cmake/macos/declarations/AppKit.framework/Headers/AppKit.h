#pragma once
// Our own declarations of what this program uses of AppKit, after its public documentation.
#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>
#include <sys/types.h>

NS_ASSUME_NONNULL_BEGIN

typedef enum NSApplicationActivationPolicy : NSInteger {
    NSApplicationActivationPolicyRegular = 0,
    NSApplicationActivationPolicyAccessory = 1,
    NSApplicationActivationPolicyProhibited = 2
} NSApplicationActivationPolicy;

typedef NSString* NSAppearanceName;
extern NSAppearanceName const NSAppearanceNameAqua;
extern NSAppearanceName const NSAppearanceNameDarkAqua;

@interface NSAppearance : NSObject
+ (nullable NSAppearance*)appearanceNamed:(NSAppearanceName)name;
@end

extern NSNotificationName const NSApplicationDidFinishLaunchingNotification;

/* Main thread. */
@interface NSApplication : NSObject
@property(class, readonly, strong) NSApplication* sharedApplication;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
@property(nullable, strong) NSAppearance* appearance; /* null: as the system is */
@end

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

typedef enum NSApplicationActivationOptions : NSUInteger {
    NSApplicationActivateAllWindows = 1 << 0
} NSApplicationActivationOptions;

/* Any thread; what varies over time is as of the main run loop's last turn. */
@interface NSRunningApplication : NSObject
@property(class, readonly, strong) NSRunningApplication* currentApplication;
/* Null where there is no such application. */
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid;
@property(readonly) pid_t processIdentifier; /* -1 where it has none */
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSString* localizedName;
@property(nullable, readonly, copy) NSURL* bundleURL;
@property(nullable, readonly, copy) NSDate* launchDate; /* of applications that Launch Services started */
@property(readonly) NSApplicationActivationPolicy activationPolicy;
@property(readonly, getter=isTerminated) BOOL terminated;
/* False where it cannot be done; true is the system's word, not the application's. */
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@property(readonly, getter=isHidden) BOOL hidden;
- (BOOL)hide;
- (BOOL)unhide;
- (BOOL)terminate;
@end

@interface NSWorkspaceOpenConfiguration : NSObject <NSCopying>
+ (instancetype)configuration;
@property BOOL promptsUserIfNeeded;
@property BOOL addsToRecentItems;
@property BOOL activates;
@property BOOL createsNewApplicationInstance;
@end

/* All four are posted in the workspace's own center only. */
extern NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;
extern NSNotificationName const NSWorkspaceDidWakeNotification;
extern NSNotificationName const NSWorkspaceWillPowerOffNotification;
extern NSNotificationName const NSWorkspaceWillSleepNotification;

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter; /* where its notifications are posted */
@property(readonly, copy)
    NSArray<NSRunningApplication*>* runningApplications; /* in no order that is promised */
- (nullable NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)bundleIdentifier;
- (NSArray<NSURL*>*)URLsForApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
- (NSArray<NSURL*>*)URLsForApplicationsToOpenURL:(NSURL*)url; /* macOS 12; the best match first */
- (NSImage*)iconForFile:(NSString*)fullPath; /* a general one where the file has none; 32 points at first */
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
- (BOOL)openURL:(NSURL*)url;
/* Handlers are called once, on a concurrent queue. */
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^_Nullable)(NSRunningApplication* _Nullable app,
                                                NSError* _Nullable error))completionHandler;
- (void)openURLs:(NSArray<NSURL*>*)urls
    withApplicationAtURL:(NSURL*)applicationURL
           configuration:(NSWorkspaceOpenConfiguration*)configuration
       completionHandler:(void (^_Nullable)(NSRunningApplication* _Nullable app,
                                            NSError* _Nullable error))completionHandler;
@end

NS_ASSUME_NONNULL_END
