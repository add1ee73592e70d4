#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <stddef.h>

// Our own declarations of what this program uses of Foundation, after its public documentation. A real Mac's
// own headers take their place there. This file: the base types of Objective-C.

#if __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

typedef long NSInteger;
typedef unsigned long NSUInteger;

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define NS_UNAVAILABLE __attribute__((unavailable))

NS_ASSUME_NONNULL_BEGIN

@class NSString;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
- (Class)class;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)respondsToSelector:(SEL)aSelector;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (instancetype)new;
+ (Class)class;
- (instancetype)init NS_DESIGNATED_INITIALIZER;
+ (BOOL)instancesRespondToSelector:(SEL)aSelector;
- (void)dealloc;
@end

typedef NSString* NSKeyValueChangeKey;
typedef enum NSKeyValueObservingOptions : NSUInteger {
    NSKeyValueObservingOptionNew = 0x01,
    NSKeyValueObservingOptionInitial = 0x04
} NSKeyValueObservingOptions;

typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef FourCharCode AEKeyword;

@interface NSAppleEventDescriptor : NSObject
@property(readonly) AEEventClass eventClass; /* 0 of what is no event */
@property(readonly) AEEventID eventID;
@property(readonly) OSType enumCodeValue;
- (nullable NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword;
@end

/* Main thread. */
@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager*)sharedAppleEventManager;
/* While an event is handled on this thread; else null. Not to be kept. */
@property(nullable, readonly, strong) NSAppleEventDescriptor* currentAppleEvent;
/* The handler is not kept; it takes the event and the reply. */
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end

/* Immutable: any thread. */
typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

@protocol NSCopying
@end

@interface NSString : NSObject <NSCopying>
- (BOOL)isEqualToString:(NSString*)string;
@end

@interface NSNumber : NSObject <NSCopying>
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
@property(readonly) BOOL boolValue;
@property(readonly) unsigned int unsignedIntValue;
@end

@interface NSDate : NSObject <NSCopying>
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)array;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nonnull])objects count:(NSUInteger)count;
- (NSArray<ObjectType>*)arrayByAddingObject:(ObjectType)object;
@property(readonly) NSUInteger count;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)index;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)object;
@end

@interface NSSet<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)setWithObject:(ObjectType)object;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying>
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nonnull])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nonnull])keys
                                count:(NSUInteger)count;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

typedef NSString* NSErrorDomain;
typedef NSString* NSErrorUserInfoKey;

extern NSErrorUserInfoKey const NSUnderlyingErrorKey;

@interface NSError : NSObject <NSCopying>
@property(readonly, copy) NSErrorDomain domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSDictionary<NSErrorUserInfoKey, id>* userInfo;
@property(readonly, copy) NSString* localizedDescription;
@end

typedef NSString* NSURLResourceKey;
extern NSURLResourceKey const NSURLContentTypeKey;   /* UTType */
extern NSURLResourceKey const NSURLIsAliasFileKey;   /* NSNumber, boolean; also true of a symbolic link */
extern NSURLResourceKey const NSURLIsApplicationKey; /* NSNumber, boolean */

@interface NSURL : NSObject <NSCopying>
+ (nullable instancetype)URLWithString:(NSString*)string;
+ (NSURL*)fileURLWithPath:(NSString*)path;
@property(nullable, readonly, copy) NSString* path; /* without percent escapes */
- (nullable NSURL*)URLByAppendingPathComponent:(NSString*)component;
/* Values that cannot be had are missing from the dictionary. Blocks for the disk. */
- (nullable NSDictionary<NSURLResourceKey, id>*)resourceValuesForKeys:(NSArray<NSURLResourceKey>*)keys
                                                                error:(NSError* _Nullable* _Nullable)error;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
+ (nullable instancetype)bundleWithURL:(NSURL*)url;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSURL* privateFrameworksURL;
@property(readonly, copy) NSURL* bundleURL;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key;
- (BOOL)loadAndReturnError:(NSError* _Nullable* _Nullable)error;
@end

CF_EXTERN_C_BEGIN
CF_EXPORT Class _Nullable NSClassFromString(NSString* aClassName);
CF_EXTERN_C_END

/* An observer is not kept: it must be removed before it or the object goes. Told on the thread of the change.
 */
@interface NSObject (NSKeyValueObserving)
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSKeyValueObservingOptions)options
            context:(nullable void*)context;
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath context:(nullable void*)context;
- (void)observeValueForKeyPath:(nullable NSString*)keyPath
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context;
@end

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject <NSCopying>
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
- (void)addOperationWithBlock:(void (^)(void))block;
@end

/* Any thread. */
@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
/* Keeps block and result until the result is removed; both strongly. Without a queue the block runs where
 * and while the notification is posted; with one, whether the poster waits is not promised. */
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end

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
