// The objects of the fake accessibility framework: elements and boxed values.
#pragma once
#include <ApplicationServices/ApplicationServices.h>

#include <optional>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "platform/macos/CFRef.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {

/// One reference to an element of the simulated desktop. Others to the same one are equal to it and have
/// their own timeout.
class ElementObject final : public Typed<"AXUIElement"> {
  public:
    explicit ElementObject(Element named) : element(std::move(named)) {}
    bool equals(const Object& other) const override {
        return element == static_cast<const ElementObject&>(other).element;
    }
    /// Seconds, as the system has it where none was set.
    double boundedBy() const { return timeout > 0 ? timeout : 6.0; }

    const Element element;
    double timeout = 0;
};

/// What the framework hands out for a value of the simulated desktop.
CFRef<CFTypeRef> createObject(const AttributeValue& value);
/// What an application understands of a value written to it; absent when it is of a type that it never takes.
std::optional<AttributeValue> valueOf(CFTypeRef object);

}  // namespace quillo::fakes
