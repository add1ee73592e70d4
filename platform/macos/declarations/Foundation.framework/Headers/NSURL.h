#pragma once
#include <Foundation/NSCollections.h>
#include <Foundation/NSError.h>

NS_ASSUME_NONNULL_BEGIN

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

NS_ASSUME_NONNULL_END
