#include "platform/macos/shell/MacIcons.hpp"

#import <AppKit/AppKit.h>

#include "platform/macos/shell/FoundationValues.hpp"

namespace quillo {
namespace {

constexpr int bytesPerPixel = 4, largest = 1024;

/// Pixels of a device's own colours, alpha last and multiplied in: what the format 0 of a bitmap stands for.
NSBitmapImageRep* bitmapOf(int size) {
    return [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                   pixelsWide:size
                                                   pixelsHigh:size
                                                bitsPerSample:8
                                              samplesPerPixel:bytesPerPixel
                                                     hasAlpha:YES
                                                     isPlanar:NO
                                               colorSpaceName:NSDeviceRGBColorSpace
                                                  bytesPerRow:size * bytesPerPixel
                                                 bitsPerPixel:bytesPerPixel * 8];
}

void draw(NSImage* icon, NSBitmapImageRep* bitmap, int size) {
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap];
    [icon drawInRect:NSRect{{0, 0}, {static_cast<CGFloat>(size), static_cast<CGFloat>(size)}}];
    [NSGraphicsContext restoreGraphicsState];
}

}  // namespace

std::optional<IconPixels> macIcon(const std::string& identifier, int size) {
    if (size <= 0 || size > largest) return std::nullopt;
    @autoreleasepool {
        NSWorkspace* const workspace = NSWorkspace.sharedWorkspace;
        NSString* const path =
            [workspace URLForApplicationWithBundleIdentifier:foundation::string(identifier)].path;
        NSBitmapImageRep* const bitmap = path ? bitmapOf(size) : nil;
        if (!bitmap || !bitmap.bitmapData) return std::nullopt;
        draw([workspace iconForFile:path], bitmap, size);
        const std::uint8_t* const first = bitmap.bitmapData;  // lives as long as the bitmap
        return IconPixels{.size = size, .bytes = {first, first + size * size * bytesPerPixel}};
    }
}

}  // namespace quillo
