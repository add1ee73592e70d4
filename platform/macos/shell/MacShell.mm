#include "platform/macos/shell/MacShell.hpp"

#import <AppKit/AppKit.h>
#import <UserNotifications/UserNotifications.h>

#include "platform/macos/shell/FoundationValues.hpp"

@interface QuilloMessageDelegate : NSObject <UNUserNotificationCenterDelegate>
@property(nonatomic, copy, nullable) void (^clicked)(void);  // main thread
@property(nonatomic, copy, nullable) void (^taken)(void);    // likewise: the button of the latest message
@end

/// Of the one button that a message may have, and of messages that have it.
static NSString* const takeIdentifier = @"app.quillo.take";
static NSString* const offerIdentifier = @"app.quillo.offer";

@implementation QuilloMessageDelegate
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler {
    (void)center, (void)notification;
    completionHandler(UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionList);
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler {
    (void)center;
    if ([response.actionIdentifier isEqualToString:UNNotificationDefaultActionIdentifier]) {
        [NSOperationQueue.mainQueue addOperationWithBlock:^{
          if (self.clicked) self.clicked();
        }];
    }
    if ([response.actionIdentifier isEqualToString:takeIdentifier]) {
        [NSOperationQueue.mainQueue addOperationWithBlock:^{
          void (^const taken)(void) = self.taken;
          self.taken = nil;
          if (taken) taken();
        }];
    }
    completionHandler();
}
@end

namespace quillo {

struct MacShell::Registrations {
    QuilloMessageDelegate* messages = [QuilloMessageDelegate new];  // the center does not keep it
    id<NSObject> motion = nil;
};

namespace {

NSApplicationActivationPolicy native(ActivationPolicy policy) {
    switch (policy) {
        case ActivationPolicy::regular:
            return NSApplicationActivationPolicyRegular;
        case ActivationPolicy::accessory:
            return NSApplicationActivationPolicyAccessory;
        case ActivationPolicy::prohibited:
            return NSApplicationActivationPolicyProhibited;
    }
    return NSApplicationActivationPolicyAccessory;
}

/// Null: as the system is.
NSAppearance* native(Appearance appearance) {
    if (appearance == Appearance::system) return nil;
    const bool dark = appearance == Appearance::dark;
    return [NSAppearance appearanceNamed:dark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua];
}

/// Null in a program without a bundle, where the center throws.
UNUserNotificationCenter* messageCenter() {
    return NSBundle.mainBundle.bundleIdentifier ? [UNUserNotificationCenter currentNotificationCenter] : nil;
}

/// Without a button where that is null.
void deliver(UNUserNotificationCenter* center, NSString* title, NSString* text, NSString* button) {
    UNMutableNotificationContent* const content = [UNMutableNotificationContent new];
    content.title = title;
    content.body = text;
    if (button) {
        UNNotificationAction* const take = [UNNotificationAction actionWithIdentifier:takeIdentifier
                                                                                title:button
                                                                              options:0];
        UNNotificationCategory* const offer = [UNNotificationCategory categoryWithIdentifier:offerIdentifier
                                                                                     actions:@[ take ]
                                                                           intentIdentifiers:[NSArray array]
                                                                                     options:0];
        [center setNotificationCategories:[NSSet setWithObject:offer]];
        content.categoryIdentifier = offerIdentifier;
    }
    // One at a time: the next takes the place of the last.
    UNNotificationRequest* const request = [UNNotificationRequest requestWithIdentifier:@"app.quillo.message"
                                                                                content:content
                                                                                trigger:nil];
    [center addNotificationRequest:request withCompletionHandler:nil];
}

}  // namespace

MacShell::MacShell() : registrations_(std::make_unique<Registrations>()) {
    @autoreleasepool {
        registrations_->messages.clicked = ^{
          if (messageClicked) messageClicked();
        };
        messageCenter().delegate = registrations_->messages;
        registrations_->motion = [NSWorkspace.sharedWorkspace.notificationCenter
            addObserverForName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                        object:nil
                         queue:nil  // on the main thread, which posts it; none is left over at the end
                    usingBlock:^(NSNotification*) {
                      if (reducedMotionChanged) reducedMotionChanged();
                    }];
    }
}

MacShell::~MacShell() {
    @autoreleasepool {
        registrations_->messages.clicked = registrations_->messages.taken =
            nil;  // what was posted meanwhile finds nobody
        messageCenter().delegate = nil;
        [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:registrations_->motion];
    }
}

bool MacShell::reducedMotion() const {
    @autoreleasepool {
        return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
    }
}

void MacShell::setActivationPolicy(ActivationPolicy policy) {
    @autoreleasepool {
        [NSApplication.sharedApplication setActivationPolicy:native(policy)];
    }
}

void MacShell::setAppearance(Appearance appearance) {
    @autoreleasepool {
        NSApplication.sharedApplication.appearance = native(appearance);
    }
}

void MacShell::openSystemSettings(const std::string& page) {
    @autoreleasepool {
        NSURL* const address = [NSURL URLWithString:foundation::string(page)];
        if (address) [NSWorkspace.sharedWorkspace openURL:address];
    }
}

void MacShell::notify(const std::string& title, const std::string& text) {
    offer(title, text, {}, {});
}

void MacShell::offer(const std::string& title, const std::string& text, const std::string& button,
                     std::function<void()> taken) {
    @autoreleasepool {
        UNUserNotificationCenter* const center = messageCenter();
        NSString* const heading = foundation::string(title);
        NSString* const body = foundation::string(text);
        NSString* const label = button.empty() ? nil : foundation::string(button);
        registrations_->messages.taken = nil;
        if (taken) {
            registrations_->messages.taken = ^{
              taken();
            };
        }
        [center requestAuthorizationWithOptions:UNAuthorizationOptionAlert
                              completionHandler:^(BOOL granted, NSError*) {
                                if (granted) deliver(center, heading, body, label);
                              }];
    }
}

}  // namespace quillo
