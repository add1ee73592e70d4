// Our own declarations of what this program uses of User Notifications, after its public documentation.
#pragma once
#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef enum UNAuthorizationOptions : NSUInteger {
    UNAuthorizationOptionAlert = 1 << 2
} UNAuthorizationOptions;

@interface UNNotificationContent : NSObject <NSCopying>
@end

@interface UNMutableNotificationContent : UNNotificationContent
@property(copy) NSString* title;
@property(copy) NSString* body;
@end

@interface UNNotificationTrigger : NSObject <NSCopying>
@end

@interface UNNotificationRequest : NSObject <NSCopying>
/* Without a trigger it is delivered at once. One with the identifier of an earlier one takes its place. */
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
@end

/* Any thread; handlers may be called on another. Throws in a program that has no bundle. */
@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter*)currentNotificationCenter;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError* _Nullable error))completionHandler;
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
@end

NS_ASSUME_NONNULL_END
