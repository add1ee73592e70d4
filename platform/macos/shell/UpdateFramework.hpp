// What this program uses of the update framework, after its public documentation. Its classes are found by
// name in the bundle that carries it, so that a build without it needs nothing; protocols of ours say what
// they answer to. Everything is for the main thread.
#pragma once
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@protocol QuilloUpdateItem <NSObject>
@property(readonly, copy) NSString* displayVersionString;
@end

@protocol QuilloUpdater <NSObject>
@property(readonly) BOOL canCheckForUpdates;
@property BOOL automaticallyChecksForUpdates;
@property BOOL automaticallyDownloadsUpdates;
- (void)checkForUpdatesInBackground;
@end

@protocol QuilloUpdaterController <NSObject>
/* Delegates are not kept. */
- (instancetype)initWithStartingUpdater:(BOOL)startUpdater
                        updaterDelegate:(nullable id)updaterDelegate
                     userDriverDelegate:(nullable id)userDriverDelegate;
@property(readonly) NSObject<QuilloUpdater>* updater;
- (void)startUpdater;
- (void)checkForUpdates:(nullable id)sender;
@end

/// What it asks its delegates, by the framework's own names.
@protocol QuilloUpdateDelegate <NSObject>
@property(readonly) BOOL supportsGentleScheduledUpdateReminders;
- (BOOL)standardUserDriverShouldHandleShowingScheduledUpdate:(id<QuilloUpdateItem>)update
                                         andInImmediateFocus:(BOOL)immediateFocus;
- (void)standardUserDriverWillHandleShowingUpdate:(BOOL)handleShowingUpdate
                                        forUpdate:(id<QuilloUpdateItem>)update
                                            state:(id)state;
- (void)standardUserDriverWillFinishUpdateSession;
- (BOOL)updater:(id)updater
       willInstallUpdateOnQuit:(id<QuilloUpdateItem>)item
    immediateInstallationBlock:(void (^)(void))immediateInstallHandler;
- (void)updater:(id)updater didAbortWithError:(NSError*)error;
@end

NS_ASSUME_NONNULL_END
