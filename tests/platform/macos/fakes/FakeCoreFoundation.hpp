// The fake Core Foundation: strings, numbers, collections and the like over FakeObject. Linking
// quillo_macos_fakes brings the functions; this header is for other fakes.
#pragma once
#include <CoreFoundation/CoreFoundation.h>

#include <string_view>

namespace quillo::fakes {

/// A constant string, for keys that a framework exports.
CFStringRef immortalText(std::string_view ascii);

/// Characters that need not be valid UTF-16, as another process may hand them out; +1.
CFStringRef createRawText(std::u16string_view units);

}  // namespace quillo::fakes
