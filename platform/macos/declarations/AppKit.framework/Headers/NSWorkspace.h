#pragma once
#include <AppKit/NSApplication.h>
#include <AppKit/NSImage.h>
#include <sys/types.h>

NS_ASSUME_NONNULL_BEGIN

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
- (BOOL)hide;
- (BOOL)terminate;
@end

@interface NSWorkspaceOpenConfiguration : NSObject <NSCopying>
+ (instancetype)configuration;
@property BOOL promptsUserIfNeeded;
@property BOOL addsToRecentItems;
@property BOOL activates;
@property BOOL createsNewApplicationInstance;
@end

/* All three are posted in the workspace's own center only. */
extern NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;
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
