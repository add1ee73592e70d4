// Geometry of the fake Core Graphics.
#include <CoreGraphics/CoreGraphics.h>

#include "platform/macos/CFValues.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect* rect) {
    using quillo::cf::lookup;
    using quillo::cf::number;
    if (CFGetTypeID(dictionary) != CFDictionaryGetTypeID())
        quillo::fakes::fail("a rectangle of what is no dictionary");
    const auto x = number(lookup(dictionary, "X")), y = number(lookup(dictionary, "Y"));
    const auto width = number(lookup(dictionary, "Width")), height = number(lookup(dictionary, "Height"));
    if (!x || !y || !width || !height) return false;
    *rect = {{*x, *y}, {*width, *height}};
    return true;
}
