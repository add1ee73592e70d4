#pragma once
#include <Foundation/NSObjCRuntime.h>

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

NS_ASSUME_NONNULL_END
