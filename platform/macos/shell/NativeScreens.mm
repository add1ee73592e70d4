#include "platform/macos/shell/NativeScreens.hpp"

#import <AppKit/AppKit.h>

#include "platform/macos/shell/FoundationValues.hpp"

namespace quillo {
namespace {

Rect rectOf(NSRect rect) {
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

}  // namespace

std::vector<NativeScreen> nativeScreens() {
    @autoreleasepool {
        std::vector<NativeScreen> all;
        for (NSScreen* screen in NSScreen.screens) {
            const id number = screen.deviceDescription[@"NSScreenNumber"];
            all.push_back({.frame = rectOf(screen.frame),
                           .visibleFrame = rectOf(screen.visibleFrame),
                           .backingScale = screen.backingScaleFactor,
                           .displayNumber = cf::integerAs<std::uint32_t>((__bridge CFTypeRef)number)});
        }
        return all;
    }
}

}  // namespace quillo
