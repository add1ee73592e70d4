#include "platform/macos/shell/MacUpdater.hpp"

#include "platform/macos/shell/FoundationValues.hpp"
#include "platform/macos/shell/UpdateFramework.hpp"

/// Hands on what the framework asks and tells. Without anybody to ask, the framework does as it would by
/// itself.
@interface QuilloUpdateBridge : NSObject <QuilloUpdateDelegate>
@property(nonatomic) quillo::UpdaterDelegate* target;
/// Until endObserving the updater must live.
- (void)observe:(NSObject<QuilloUpdater>*)updater;
- (void)endObserving:(NSObject<QuilloUpdater>*)updater;
@end

@implementation QuilloUpdateBridge

static NSArray<NSString*>* flags() {
    return @[ @"canCheckForUpdates", @"automaticallyChecksForUpdates", @"automaticallyDownloadsUpdates" ];
}

static std::string versionOf(id<QuilloUpdateItem> item) {
    return quillo::foundation::text(item.displayVersionString).value_or("");
}

- (void)observe:(NSObject<QuilloUpdater>*)updater {
    for (NSString* flag in flags())
        [updater addObserver:self forKeyPath:flag options:NSKeyValueObservingOptionNew context:nullptr];
}

- (void)endObserving:(NSObject<QuilloUpdater>*)updater {
    for (NSString* flag in flags()) [updater removeObserver:self forKeyPath:flag context:nullptr];
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    (void)keyPath, (void)object, (void)change, (void)context;
    // It comes on whatever thread made the change.
    __weak QuilloUpdateBridge* const weakly = self;
    [NSOperationQueue.mainQueue addOperationWithBlock:^{
      if (quillo::UpdaterDelegate* const told = weakly.target) told->flagsChanged();
    }];
}

- (BOOL)supportsGentleScheduledUpdateReminders {
    return self.target && self.target->supportsGentleScheduledUpdateReminders();
}

- (BOOL)standardUserDriverShouldHandleShowingScheduledUpdate:(id<QuilloUpdateItem>)update
                                         andInImmediateFocus:(BOOL)immediateFocus {
    (void)update, (void)immediateFocus;
    return !self.target || self.target->standardUserDriverShouldHandleShowingScheduledUpdate();
}

- (void)standardUserDriverWillHandleShowingUpdate:(BOOL)handleShowingUpdate
                                        forUpdate:(id<QuilloUpdateItem>)update
                                            state:(id)state {
    (void)state;
    if (self.target)
        self.target->standardUserDriverWillHandleShowingUpdate(handleShowingUpdate, versionOf(update));
}

- (void)standardUserDriverWillFinishUpdateSession {
    if (self.target) self.target->standardUserDriverWillFinishUpdateSession();
}

- (BOOL)updater:(id)updater
       willInstallUpdateOnQuit:(id<QuilloUpdateItem>)item
    immediateInstallationBlock:(void (^)(void))immediateInstallHandler {
    (void)updater;
    if (!self.target) return NO;
    void (^const install)(void) = immediateInstallHandler;
    return self.target->willInstallUpdateOnQuit(versionOf(item), [install] { install(); });
}

- (void)updater:(id)updater didAbortWithError:(NSError*)error {
    (void)updater, (void)error;
    if (self.target) self.target->didAbortWithError();
}

@end

namespace quillo {
namespace {

Class updaterControllerClass() {
    NSURL* const place =
        [NSBundle.mainBundle.privateFrameworksURL URLByAppendingPathComponent:@"Sparkle.framework"];
    NSBundle* const framework = place ? [NSBundle bundleWithURL:place] : nil;
    if (![framework loadAndReturnError:nil]) return nil;
    const Class found = NSClassFromString(@"SPUStandardUpdaterController");
    const SEL maker = @selector(initWithStartingUpdater:updaterDelegate:userDriverDelegate:);
    return [found instancesRespondToSelector:maker] ? found : nil;
}

}  // namespace

struct MacUpdater::Framework {
    QuilloUpdateBridge* bridge = [QuilloUpdateBridge new];  // kept here: the controller does not
    id<QuilloUpdaterController> controller = nil;

    NSObject<QuilloUpdater>* updater() const { return controller.updater; }
};

MacUpdater::MacUpdater() : framework_(std::make_unique<Framework>()) {
    @autoreleasepool {
        const Class found = updaterControllerClass();
        if (!found) return;
        framework_->controller =
            [(id<QuilloUpdaterController>)[found alloc] initWithStartingUpdater:NO
                                                                updaterDelegate:framework_->bridge
                                                             userDriverDelegate:framework_->bridge];
        if (framework_->updater()) [framework_->bridge observe:framework_->updater()];
    }
}

MacUpdater::~MacUpdater() {
    @autoreleasepool {
        if (framework_->updater()) [framework_->bridge endObserving:framework_->updater()];
    }
}

Capability MacUpdater::capability() const {
    return framework_->controller ? Capability::available()
                                  : Capability::unavailable("This copy of Quillo does not update itself.");
}

void MacUpdater::setDelegate(UpdaterDelegate* delegate) {
    framework_->bridge.target = delegate;
}

void MacUpdater::start() {
    [framework_->controller startUpdater];
}

bool MacUpdater::canCheckForUpdates() const {
    return framework_->updater().canCheckForUpdates;
}

bool MacUpdater::automaticallyChecksForUpdates() const {
    return framework_->updater().automaticallyChecksForUpdates;
}

void MacUpdater::setAutomaticallyChecksForUpdates(bool value) {
    framework_->updater().automaticallyChecksForUpdates = value;
}

bool MacUpdater::automaticallyDownloadsUpdates() const {
    return framework_->updater().automaticallyDownloadsUpdates;
}

void MacUpdater::setAutomaticallyDownloadsUpdates(bool value) {
    framework_->updater().automaticallyDownloadsUpdates = value;
}

void MacUpdater::checkForUpdates() {
    [framework_->controller checkForUpdates:nil];
}

void MacUpdater::checkForUpdatesInBackground() {
    [framework_->updater() checkForUpdatesInBackground];
}

}  // namespace quillo
