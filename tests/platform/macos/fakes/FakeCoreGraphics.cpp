// Geometry of the fake Core Graphics.
#include <CoreGraphics/CoreGraphics.h>

#include "platform/macos/CFValues.hpp"

bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect* rect) {
    using quillo::cf::lookup;
    using quillo::cf::number;
    CFDictionaryGetCount(dictionary);  // ends the program where it is none, as on a Mac
    const auto x = number(lookup(dictionary, "X")), y = number(lookup(dictionary, "Y"));
    const auto width = number(lookup(dictionary, "Width")), height = number(lookup(dictionary, "Height"));
    if (!x || !y || !width || !height) return false;
    *rect = {{*x, *y}, {*width, *height}};
    return true;
}
