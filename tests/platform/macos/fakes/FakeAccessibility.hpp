// The fake accessibility framework: the simulated desktop's applications answer its messages. What hangs,
// dies, refuses or is not permitted there does so here; what an application may do besides is asked for by
// the test.
#pragma once
#include <ApplicationServices/ApplicationServices.h>

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/macos/CFRef.hpp"
#include "tests/platform/macos/fakes/FakeMac.hpp"

namespace quillo::fakes {

class FakeAccessibility {
  public:
    /// Provides the private functions; withdraw them from the FakeMac for a system without.
    explicit FakeAccessibility(FakeMac& mac);

    AccessibilityService& service() { return service_; }

    /// From now on every element has this value under the attribute; a null one is answered as success.
    void answer(const std::string& attribute, CFRef<CFTypeRef> value) {
        answers_[attribute] = std::move(value);
    }
    void fail(const std::string& attribute, AXError error) { errors_[attribute] = error; }
    /// Requests for several attributes fail as a whole.
    void failBatches(AXError error) { batchError_ = error; }
    enum class Batch { boxedErrors, nullForErrors, tooShort };
    /// What stands for an attribute without a value in the answer to such a request.
    void answerBatches(Batch form) { batchForm_ = form; }

    /// As the simulated applications answer of themselves, from now on.
    void behave();

    int messages = 0;  // that went to another process
    int prompts = 0;   // shown to the person

    // For the functions of the framework.
    struct Answer {
        AXError error = kAXErrorSuccess;
        CFRef<CFTypeRef> value;
    };
    /// `timeout` in seconds, 0 for the default. One message.
    std::vector<Answer> read(const Element& element, double timeout, std::span<const std::string> names);
    std::optional<AXError> batchError() const { return batchError_; }
    Batch batchForm() const { return batchForm_; }

  private:
    AccessibilityService& service_;
    std::map<std::string, CFRef<CFTypeRef>> answers_;
    std::map<std::string, AXError> errors_;
    std::optional<AXError> batchError_;
    Batch batchForm_ = Batch::boxedErrors;
};

/// A reference as the framework hands one out; +1.
AXUIElementRef createElement(const Element& element);

}  // namespace quillo::fakes
