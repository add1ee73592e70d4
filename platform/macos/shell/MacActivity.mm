#include "platform/macos/shell/MacActivity.hpp"

#import <Foundation/Foundation.h>

namespace quillo {

struct MacActivity::Held {
    id<NSObject> activity = nil;
};

MacActivity::MacActivity() : held_(std::make_unique<Held>()) {}

MacActivity::~MacActivity() {
    set(false);
}

void MacActivity::set(bool working) {
    @autoreleasepool {
        NSProcessInfo* const process = NSProcessInfo.processInfo;
        if (working && !held_->activity) {
            held_->activity = [process beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                         reason:@"Saving or restoring a workspace"];
        } else if (!working && held_->activity) {
            [process endActivity:held_->activity];
            held_->activity = nil;
        }
    }
}

}  // namespace quillo
