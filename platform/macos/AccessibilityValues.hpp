// Elements and attribute values of the accessibility framework in the seam's words, and back. Internal to
// MacAccessibility and its tests.
#pragma once
#include <ApplicationServices/ApplicationServices.h>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "platform/macos/CFRef.hpp"

namespace quillo::macos {

class ElementReference final : public ElementHandle {
  public:
    enum class Names { application, part };
    ElementReference(CFRef<AXUIElementRef> owned, double timeoutSeconds, Names names);
    bool same(const ElementHandle& other) const override;

    AXUIElementRef get() const { return element_.get(); }
    /// Of the process that answers for it; 0 where that is not known.
    ProcessID pid() const { return pid_; }
    /// Whether it was made for a process rather than read from one.
    bool isApplication() const { return names_ == Names::application; }
    double timeout() const { return timeout_; }
    void setTimeout(double seconds) const;

  private:
    CFRef<AXUIElementRef> element_;  // never null
    ProcessID pid_ = 0;
    Names names_;
    mutable double timeout_;  // seconds; 0 for the system's own
};

const ElementReference& referenceOf(const Element& element);

/// The system bounds requests by the reference they are made with, not by what it names: an element that was
/// read from another must be given that one's timeout.
Element makeElement(CFRef<AXUIElementRef> owned, double timeoutSeconds);
Element makeApplication(ProcessID pid, double timeoutSeconds);

AttributeMiss missFor(AXError error);

/// What an attribute's value says. An application may answer with anything: what is of no type that the seam
/// knows is absent.
Attribute attributeOf(CFTypeRef value, const ElementReference& owner);

/// Null where the value has no form there: text that is not UTF-8.
CFRef<CFTypeRef> objectFor(const AttributeValue& value);

}  // namespace quillo::macos
