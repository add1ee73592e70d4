#include "tests/platform/macos/fakes/FakeAnswer.hpp"

#include "platform/macos/CFValues.hpp"

namespace quillo::fakes {

Value textValue(std::string_view text) {
    return Value::created(cf::makeText(text).release());
}

Value numberValue(std::int64_t number) {
    return Value::created(cf::makeInteger(number).release());
}

Value realValue(double number) {
    return Value::created(cf::makeNumber(number).release());
}

Value arrayValue(const std::vector<Value>& values) {
    std::vector<CFTypeRef> objects;
    for (const Value& value : values) {
        if (value) objects.push_back(value.get());
    }
    return Value::created(cf::makeArray(objects).release());
}

Value dictionaryValue(const std::vector<std::pair<CFStringRef, Value>>& entries) {
    std::vector<std::pair<CFTypeRef, CFTypeRef>> objects;
    for (const auto& [key, value] : entries) {
        if (value) objects.emplace_back(key, value.get());
    }
    return Value::created(cf::makeDictionary(objects).release());
}

Value orInstead(const Substitutes& substitutes, const std::string& key, Value right) {
    const auto substitute = substitutes.find(key);
    if (substitute != substitutes.end()) return substitute->second;
    return right;
}

}  // namespace quillo::fakes
