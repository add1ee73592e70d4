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
@property(copy) NSString* categoryIdentifier; /* whose buttons it has */
@end

@interface UNNotificationTrigger : NSObject <NSCopying>
@end

@interface UNNotificationRequest : NSObject <NSCopying>
/* Without a trigger it is delivered at once. One with the identifier of an earlier one takes its place. */
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
@end

typedef NSUInteger UNNotificationPresentationOptions;
enum : NSUInteger {
    UNNotificationPresentationOptionList = 1 << 3,
    UNNotificationPresentationOptionBanner = 1 << 4
};

extern NSString* const UNNotificationDefaultActionIdentifier; /* it was clicked */

@interface UNNotification : NSObject <NSCopying>
@end

@interface UNNotificationResponse : NSObject <NSCopying>
@property(readonly, copy) NSString* actionIdentifier;
@end

typedef NSUInteger UNNotificationActionOptions;
typedef NSUInteger UNNotificationCategoryOptions;

@interface UNNotificationAction : NSObject <NSCopying>
+ (instancetype)actionWithIdentifier:(NSString*)identifier
                               title:(NSString*)title
                             options:(UNNotificationActionOptions)options;
@end

@interface UNNotificationCategory : NSObject <NSCopying>
+ (instancetype)categoryWithIdentifier:(NSString*)identifier
                               actions:(NSArray<UNNotificationAction*>*)actions
                     intentIdentifiers:(NSArray<NSString*>*)intentIdentifiers
                               options:(UNNotificationCategoryOptions)options;
@end

@class UNUserNotificationCenter;

/* On which thread is not documented. The handlers are to be called. */
@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
/* While the application is in front; without this method its messages are not shown then. */
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler;
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler;
@end

/* Any thread; handlers may be called on another. Throws in a program that has no bundle. */
@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter*)currentNotificationCenter;
/* To be set before the application has launched. */
@property(nullable, weak) id<UNUserNotificationCenterDelegate> delegate;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError* _Nullable error))completionHandler;
/* In place of all that were set before. */
- (void)setNotificationCategories:(NSSet<UNNotificationCategory*>*)categories;
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
@end

NS_ASSUME_NONNULL_END
