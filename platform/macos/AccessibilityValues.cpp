#include "platform/macos/AccessibilityValues.hpp"

#include <cmath>
#include <type_traits>
#include <utility>

#include "platform/macos/CFValues.hpp"

namespace quillo::macos {
namespace {

using Reason = AttributeMiss::Reason;

ProcessID pidOf(AXUIElementRef element) {
    pid_t pid = 0;
    return AXUIElementGetPid(element, &pid) == kAXErrorSuccess ? pid : 0;
}

std::unexpected<AttributeMiss> noValue() {
    return std::unexpected(AttributeMiss{Reason::absent, kAXErrorNoValue});
}

/// Coordinates that are no numbers would poison every comparison after them.
bool areNumbers(double one, double other) {
    return std::isfinite(one) && std::isfinite(other);
}

Attribute boxed(AXValueRef box) {
    AXError error = kAXErrorSuccess;
    if (AXValueGetValue(box, kAXValueTypeAXError, &error)) return std::unexpected(missFor(error));
    CGPoint point{};
    if (AXValueGetValue(box, kAXValueTypeCGPoint, &point) && areNumbers(point.x, point.y))
        return Point{point.x, point.y};
    CGSize size{};
    if (AXValueGetValue(box, kAXValueTypeCGSize, &size) && areNumbers(size.width, size.height))
        return Size{size.width, size.height};
    return noValue();
}

Element elementFrom(CFTypeRef value, const ElementReference& owner) {
    return makeElement(CFRef<AXUIElementRef>::retained(static_cast<AXUIElementRef>(value)), owner.timeout());
}

/// An empty list is an answer; one of other things holds no elements, which is none.
Attribute listOf(CFTypeRef array, const ElementReference& owner) {
    const std::vector<CFTypeRef> items = cf::items(array);
    std::vector<Element> elements;
    for (const CFTypeRef item : items) {
        if (CFGetTypeID(item) == AXUIElementGetTypeID()) elements.push_back(elementFrom(item, owner));
    }
    if (elements.empty() && !items.empty()) return noValue();
    return elements;
}

template <class T>
CFRef<CFTypeRef> untyped(CFRef<T> object) {
    return CFRef<CFTypeRef>::created(object.release());
}

CFRef<CFTypeRef> box(AXValueType type, const void* value) {
    return CFRef<CFTypeRef>::created(AXValueCreate(type, value));
}

CFRef<CFTypeRef> objectOf(bool value) {
    return CFRef<CFTypeRef>::retained(cf::makeBoolean(value));
}

CFRef<CFTypeRef> objectOf(double value) {
    return untyped(cf::makeNumber(value));
}

CFRef<CFTypeRef> objectOf(const std::string& value) {
    return untyped(cf::makeText(value));
}

CFRef<CFTypeRef> objectOf(const Point& value) {
    const CGPoint point{value.x, value.y};
    return box(kAXValueTypeCGPoint, &point);
}

CFRef<CFTypeRef> objectOf(const Size& value) {
    const CGSize size{value.width, value.height};
    return box(kAXValueTypeCGSize, &size);
}

CFRef<CFTypeRef> objectOf(const Element& value) {
    return CFRef<CFTypeRef>::retained(referenceOf(value).get());
}

CFRef<CFTypeRef> objectOf(const std::vector<Element>& value) {
    std::vector<CFTypeRef> elements;
    elements.reserve(value.size());
    for (const Element& element : value) elements.push_back(referenceOf(element).get());
    return untyped(cf::makeArray(elements));
}

}  // namespace

ElementReference::ElementReference(CFRef<AXUIElementRef> owned, double timeoutSeconds, Names names)
    : element_(std::move(owned)), pid_(pidOf(element_.get())), names_(names), timeout_(timeoutSeconds) {
    if (timeout_ > 0) setTimeout(timeout_);
}

bool ElementReference::same(const ElementHandle& other) const {
    return CFEqual(get(), static_cast<const ElementReference&>(other).get()) != 0;
}

void ElementReference::setTimeout(double seconds) const {
    timeout_ = seconds;
    AXUIElementSetMessagingTimeout(get(), static_cast<float>(seconds));
}

const ElementReference& referenceOf(const Element& element) {
    return static_cast<const ElementReference&>(element.handle());
}

Element makeElement(CFRef<AXUIElementRef> owned, double timeoutSeconds) {
    using Names = ElementReference::Names;
    return Element(std::make_shared<const ElementReference>(std::move(owned), timeoutSeconds, Names::part));
}

Element makeApplication(ProcessID pid, double timeoutSeconds) {
    return Element(std::make_shared<const ElementReference>(
        CFRef<AXUIElementRef>::created(AXUIElementCreateApplication(pid)), timeoutSeconds,
        ElementReference::Names::application));
}

AttributeMiss missFor(AXError error) {
    switch (error) {
        case kAXErrorInvalidUIElement:
            return {Reason::gone, error};
        case kAXErrorCannotComplete:
            return {Reason::timedOut, error};
        case kAXErrorNoValue:
        case kAXErrorAttributeUnsupported:
        case kAXErrorParameterizedAttributeUnsupported:
            return {Reason::absent, error};
        default:
            return {Reason::refused, error};
    }
}

Attribute attributeOf(CFTypeRef value, const ElementReference& owner) {
    if (cf::isNull(value)) return noValue();
    if (CFGetTypeID(value) == AXValueGetTypeID()) return boxed(static_cast<AXValueRef>(value));
    if (CFGetTypeID(value) == AXUIElementGetTypeID()) return elementFrom(value, owner);
    if (CFGetTypeID(value) == CFArrayGetTypeID()) return listOf(value, owner);
    if (const auto flag = cf::boolean(value)) return *flag;
    if (const auto number = cf::number(value); number && std::isfinite(*number)) return *number;
    if (auto text = cf::text(value)) return *std::move(text);
    if (auto address = cf::address(value)) return *std::move(address);
    return noValue();
}

CFRef<CFTypeRef> objectFor(const AttributeValue& value) {
    return std::visit([](const auto& held) { return objectOf(held); }, value);
}

}  // namespace quillo::macos
