// Our own declarations of what this program uses of Uniform Type Identifiers, after its public documentation.
#pragma once
#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface UTType : NSObject <NSCopying>
@property(readonly, copy) NSString* identifier;
@property(readonly, copy) NSSet<UTType*>* supertypes; /* direct and indirect */
@end

NS_ASSUME_NONNULL_END
