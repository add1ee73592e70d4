#pragma once
#include <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

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

NS_ASSUME_NONNULL_END
