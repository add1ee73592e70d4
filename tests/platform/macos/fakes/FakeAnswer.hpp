// What the fake system hands out, with parts of it exchanged by a test.
#pragma once
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/macos/CFRef.hpp"

namespace quillo::fakes {

using Value = CFRef<CFTypeRef>;

/// By a dictionary's key, or the name of a whole answer: what is given instead of the right value; null:
/// nothing.
using Substitutes = std::map<std::string, Value>;

Value textValue(std::string_view text);
Value numberValue(std::int64_t number);
Value realValue(double number);
/// Without those that are null.
Value arrayValue(const std::vector<Value>& values);
Value dictionaryValue(const std::vector<std::pair<CFStringRef, Value>>& entries);

/// What stands under `key`, unless a test wants something else there.
Value orInstead(const Substitutes& substitutes, const std::string& key, Value right);

/// To hand out of a function that is declared to return this.
template <class Ref>
Ref handedOut(Value value) {
    return static_cast<Ref>(value.release());
}

}  // namespace quillo::fakes
