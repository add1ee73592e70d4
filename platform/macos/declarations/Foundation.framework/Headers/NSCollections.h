#pragma once
#include <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

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
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying>
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nonnull])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nonnull])keys
                                count:(NSUInteger)count;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

NS_ASSUME_NONNULL_END
