#include "platform/macos/shell/MacShell.hpp"

#import <AppKit/AppKit.h>
#import <UserNotifications/UserNotifications.h>

#include "platform/macos/shell/FoundationValues.hpp"

namespace quillo {
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

void deliver(UNUserNotificationCenter* center, NSString* title, NSString* text) {
    UNMutableNotificationContent* const content = [UNMutableNotificationContent new];
    content.title = title;
    content.body = text;
    // One at a time: the next takes the place of the last.
    UNNotificationRequest* const request = [UNNotificationRequest requestWithIdentifier:@"app.quillo.message"
                                                                                content:content
                                                                                trigger:nil];
    [center addNotificationRequest:request withCompletionHandler:nil];
}

}  // namespace

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
    @autoreleasepool {
        if (!NSBundle.mainBundle.bundleIdentifier) return;  // the center throws in a program without a bundle
        UNUserNotificationCenter* const center = [UNUserNotificationCenter currentNotificationCenter];
        NSString* const heading = foundation::string(title);
        NSString* const body = foundation::string(text);
        [center requestAuthorizationWithOptions:UNAuthorizationOptionAlert
                              completionHandler:^(BOOL granted, NSError*) {
                                if (granted) deliver(center, heading, body);
                              }];
    }
}

}  // namespace quillo
