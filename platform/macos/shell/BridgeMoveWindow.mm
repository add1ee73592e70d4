#include "platform/macos/shell/BridgeMoveWindow.hpp"

#import <Foundation/Foundation.h>

// The class is the system's own, and none of its headers declares it. UNPROVEN: that windows are numbers in
// an array, that spaces are unsigned 64-bit numbers, and that no delegate is needed.
@protocol QuilloBridgedMoveOperation <NSObject>
- (instancetype)initWithWindows:(NSArray<NSNumber*>*)windows spaceID:(std::uint64_t)spaceID;
- (void)performWithWMBridgeDelegate:(id)delegate;
@end

static Class operationClass() {
    const Class found = NSClassFromString(@"SLSBridgedMoveWindowsToManagedSpaceOperation");
    return [found instancesRespondToSelector:@selector(initWithWindows:spaceID:)] &&
                   [found instancesRespondToSelector:@selector(performWithWMBridgeDelegate:)]
               ? found
               : nil;
}

static bool moved(std::uint32_t windowID, std::uint64_t spaceID) {
    @autoreleasepool {
        const Class found = operationClass();
        if (!found) return false;
        const id<QuilloBridgedMoveOperation> operation =
            [(id<QuilloBridgedMoveOperation>)[found alloc] initWithWindows:@[ @(windowID) ] spaceID:spaceID];
        [operation performWithWMBridgeDelegate:nil];
        return operation != nil;
    }
}

bool QuilloHasBridgeMove(void) {
    @autoreleasepool {
        return operationClass() != nil;
    }
}

bool QuilloBridgeMoveWindow(std::uint32_t windowID, std::uint64_t spaceID) {
    // An object that minds what it is given throws: that costs this way of moving, and not the restore.
    try {
        return moved(windowID, spaceID);
    } catch (...) {
        return false;
    }
}
