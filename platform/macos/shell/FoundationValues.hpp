// Foundation's values in our own types and back: its strings, dates and addresses are Core Foundation's.
#pragma once
#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>

#include "WindowEngine/support/Url.hpp"
#include "platform/macos/CFValues.hpp"

namespace quillo::foundation {

inline std::optional<std::string> text(NSString* string) {
    return cf::text((__bridge CFTypeRef)string);
}

inline std::optional<Instant> date(NSDate* date) {
    return cf::date((__bridge CFTypeRef)date);
}

inline std::optional<Url> url(NSURL* url) {
    const auto address = cf::address((__bridge CFTypeRef)url);
    return address ? Url::parse(*address) : std::nullopt;
}

/// Empty for text that is not UTF-8.
inline NSString* string(std::string_view text) {
    const auto made = cf::makeText(text);
    return made ? (__bridge NSString*)made.get() : @"";
}

/// Null for an address that the system does not take for one. A file's own path counts, not how it is
/// escaped.
inline NSURL* address(const Url& url) {
    const auto path = url.filePath();
    if (!path) return [NSURL URLWithString:string(url.string())];
    const auto place = cf::makeText(*path);  // empty text would name the folder that this program runs in
    return place && !path->empty() ? [NSURL fileURLWithPath:(__bridge NSString*)place.get()] : nil;
}

}  // namespace quillo::foundation
