#include "tests/platform/macos/fakes/FakeAccessibilityObjects.hpp"

#include <cstring>
#include <vector>

#include "platform/macos/CFValues.hpp"
#include "tests/platform/macos/fakes/FakeAccessibility.hpp"

namespace quillo::fakes {
namespace {

std::size_t bytesOf(AXValueType type) {
    switch (type) {
        case kAXValueTypeCGPoint:
            return sizeof(CGPoint);
        case kAXValueTypeCGSize:
            return sizeof(CGSize);
        case kAXValueTypeCGRect:
            return sizeof(CGRect);
        case kAXValueTypeCFRange:
            return sizeof(CFRange);
        case kAXValueTypeAXError:
            return sizeof(AXError);
        case kAXValueTypeIllegal:
            break;
    }
    return 0;
}

class BoxedValue final : public Typed<"AXValue"> {
  public:
    BoxedValue(AXValueType kind, const void* value)
        : kind(kind),
          bytes(static_cast<const char*>(value), static_cast<const char*>(value) + bytesOf(kind)) {}
    bool equals(const Object& other) const override {
        const auto& that = static_cast<const BoxedValue&>(other);
        return kind == that.kind && bytes == that.bytes;
    }

    const AXValueType kind;
    const std::vector<char> bytes;
};

struct Creation {
    CFTypeRef operator()(bool value) const { return CFRetain(value ? kCFBooleanTrue : kCFBooleanFalse); }
    CFTypeRef operator()(double value) const { return CFNumberCreate(nullptr, kCFNumberDoubleType, &value); }
    CFTypeRef operator()(const std::string& value) const { return cf::makeText(value).release(); }
    CFTypeRef operator()(const Point& value) const {
        const CGPoint point{value.x, value.y};
        return AXValueCreate(kAXValueTypeCGPoint, &point);
    }
    CFTypeRef operator()(const Size& value) const {
        const CGSize size{value.width, value.height};
        return AXValueCreate(kAXValueTypeCGSize, &size);
    }
    CFTypeRef operator()(const Element& value) const { return createElement(value); }
    CFTypeRef operator()(const std::vector<Element>& value) const {
        std::vector<CFRef<AXUIElementRef>> owned;
        std::vector<const void*> elements;
        for (const Element& element : value)
            elements.push_back(
                owned.emplace_back(CFRef<AXUIElementRef>::created(createElement(element))).get());
        return CFArrayCreate(nullptr, elements.data(), static_cast<CFIndex>(elements.size()),
                             &kCFTypeArrayCallBacks);
    }
};

std::optional<AttributeValue> unboxed(AXValueRef box) {
    CGPoint point{};
    if (AXValueGetValue(box, kAXValueTypeCGPoint, &point)) return Point{point.x, point.y};
    CGSize size{};
    if (AXValueGetValue(box, kAXValueTypeCGSize, &size)) return Size{size.width, size.height};
    return std::nullopt;
}

}  // namespace

AXUIElementRef createElement(const Element& element) {
    return (new ElementObject(element))->as<AXUIElementRef>();
}

CFRef<CFTypeRef> createObject(const AttributeValue& value) {
    return CFRef<CFTypeRef>::created(std::visit(Creation{}, value));
}

std::optional<AttributeValue> valueOf(CFTypeRef object) {
    if (CFGetTypeID(object) == AXValueGetTypeID()) return unboxed(static_cast<AXValueRef>(object));
    if (const auto flag = cf::boolean(object)) return *flag;
    if (const auto number = cf::number(object)) return *number;
    if (const auto text = cf::text(object)) return *text;
    return std::nullopt;
}

}  // namespace quillo::fakes

using namespace quillo::fakes;  // the functions below are global C functions

CFTypeID AXUIElementGetTypeID() {
    return ElementObject::typeID();
}

CFTypeID AXValueGetTypeID() {
    return BoxedValue::typeID();
}

AXValueRef AXValueCreate(AXValueType type, const void* value) {
    return bytesOf(type) == 0 ? nullptr : (new BoxedValue(type, value))->as<AXValueRef>();
}

Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result) {
    const auto& box = objectOf<BoxedValue>(value);
    if (box.kind != type) return false;
    std::memcpy(result, box.bytes.data(), box.bytes.size());
    return true;
}
