#include "platform/macos/shell/MacPowerEvents.hpp"

#import <AppKit/AppKit.h>

namespace quillo {

struct MacPowerEvents::Subscriptions {
    id<NSObject> sleep = nil;
    id<NSObject> powerOff = nil;
    id<NSObject> wake = nil;
};

namespace {

NSNotificationCenter* center() {
    return NSWorkspace.sharedWorkspace.notificationCenter;  // they are posted in no other
}

id<NSObject> subscribe(NSNotificationName name, PowerEvent event, Executor& executor,
                       std::weak_ptr<PowerObservers> observers) {
    Executor* const loop = &executor;
    // Without a queue: one would be another wait, and the system waits for the poster only.
    return [center() addObserverForName:name
                                 object:nil
                                  queue:nil
                             usingBlock:^(NSNotification*) {
                               loop->post([observers, event] {
                                   if (const auto list = observers.lock()) list->tell(event, nullptr);
                               });
                             }];
}

}  // namespace

MacPowerEvents::MacPowerEvents(Executor& executor) : subscriptions_(std::make_unique<Subscriptions>()) {
    @autoreleasepool {
        subscriptions_->sleep =
            subscribe(NSWorkspaceWillSleepNotification, PowerEvent::willSleep, executor, observers_);
        subscriptions_->powerOff =
            subscribe(NSWorkspaceWillPowerOffNotification, PowerEvent::willPowerOff, executor, observers_);
        subscriptions_->wake =
            subscribe(NSWorkspaceDidWakeNotification, PowerEvent::didWake, executor, observers_);
    }
}

MacPowerEvents::~MacPowerEvents() {
    @autoreleasepool {
        [center() removeObserver:subscriptions_->sleep];
        [center() removeObserver:subscriptions_->powerOff];
        [center() removeObserver:subscriptions_->wake];
    }
}

std::unique_ptr<PowerObserver> MacPowerEvents::observe(Observer observer) {
    return observers_->add(std::move(observer));
}

}  // namespace quillo
