#pragma once
#include <Foundation/NSCollections.h>

NS_ASSUME_NONNULL_BEGIN

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

NS_ASSUME_NONNULL_END
