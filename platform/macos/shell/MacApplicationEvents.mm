#include "platform/macos/shell/MacApplicationEvents.hpp"

#import <AppKit/AppKit.h>

namespace {

// Codes of the Apple event registry, four characters each.
constexpr AEEventClass coreEvents = 0x61657674;      // 'aevt'
constexpr AEEventID openApplication = 0x6f617070;    // 'oapp'
constexpr AEEventID reopenApplication = 0x72617070;  // 'rapp'
constexpr AEKeyword propertyData = 0x70726474;       // 'prdt'
constexpr OSType launchedAsLoginItem = 0x6c676974;   // 'lgit'

/// While the application hears that it has launched, the event that opened it is the current one.
bool openedAtLogin() {
    NSAppleEventDescriptor* const event = NSAppleEventManager.sharedAppleEventManager.currentAppleEvent;
    return event.eventClass == coreEvents && event.eventID == openApplication &&
           [event paramDescriptorForKeyword:propertyData].enumCodeValue == launchedAsLoginItem;
}

}  // namespace

@interface QuilloReopenHandler : NSObject
@property(nonatomic, copy) void (^reopened)(void);
- (void)reopen:(NSAppleEventDescriptor*)event reply:(NSAppleEventDescriptor*)reply;
@end

@implementation QuilloReopenHandler
- (void)reopen:(NSAppleEventDescriptor*)event reply:(NSAppleEventDescriptor*)reply {
    (void)event, (void)reply;
    self.reopened();
}
@end

namespace quillo {
namespace {

void hear(QuilloReopenHandler* reopen) {
    [NSAppleEventManager.sharedAppleEventManager setEventHandler:reopen
                                                     andSelector:@selector(reopen:reply:)
                                                   forEventClass:coreEvents
                                                      andEventID:reopenApplication];
}

}  // namespace

struct MacApplicationEvents::Registrations {
    id<NSObject> launch = nil;
    QuilloReopenHandler* reopen = [QuilloReopenHandler new];  // the manager does not keep it
};

MacApplicationEvents::MacApplicationEvents(Handlers handlers)
    : registrations_(std::make_unique<Registrations>()) {
    @autoreleasepool {
        registrations_->reopen.reopened = ^{
          handlers.reopened();
        };
        QuilloReopenHandler* const reopen = registrations_->reopen;
        // Without a queue the block runs while the notification is posted, when the event is still the
        // current one. Only by then has the application object put its own handlers in place: one set
        // before would be replaced by its own.
        registrations_->launch =
            [NSNotificationCenter.defaultCenter addObserverForName:NSApplicationDidFinishLaunchingNotification
                                                            object:nil
                                                             queue:nil
                                                        usingBlock:^(NSNotification*) {
                                                          hear(reopen);
                                                          handlers.started(openedAtLogin());
                                                        }];
    }
}

MacApplicationEvents::~MacApplicationEvents() {
    @autoreleasepool {
        [NSNotificationCenter.defaultCenter removeObserver:registrations_->launch];
        [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:coreEvents
                                                                          andEventID:reopenApplication];
    }
}

}  // namespace quillo
