#pragma once
#include <Foundation/NSCollections.h>

NS_ASSUME_NONNULL_BEGIN

typedef enum NSActivityOptions : uint64_t {
    NSActivityUserInitiatedAllowingIdleSystemSleep = 0xEFFFFF
} NSActivityOptions;

/* Any thread. */
@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
/* Lasts until the result is handed to endActivity:, or released. */
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

NS_ASSUME_NONNULL_END
