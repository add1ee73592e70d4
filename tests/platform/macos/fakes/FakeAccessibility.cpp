#include "tests/platform/macos/fakes/FakeAccessibility.hpp"

#include <array>
#include <cstring>
#include <utility>

#include "platform/macos/CFValues.hpp"
#include "platform/simulated/Handle.hpp"
#include "tests/platform/macos/fakes/FakeAccessibilityObjects.hpp"
#include "tests/platform/macos/fakes/FakeCoreFoundation.hpp"

namespace quillo::fakes {
namespace {

FakeAccessibility& framework() {
    return FakeMac::onItsThread().part<FakeAccessibility>();
}

/// A request that changes something is a message, bounded by its own reference's timeout.
AccessibilityService& messageTo(const ElementObject& object) {
    ++framework().messages;
    framework().service().setMessagingTimeout(object.element, object.boundedBy());
    return framework().service();
}

std::string nameFrom(CFStringRef name) {
    return cf::text(name).value();
}

AXError errorOf(const Attribute& attribute) {
    return attribute ? kAXErrorSuccess : static_cast<AXError>(attribute.error().code);
}

/// What the application as a whole is unable to do fails the request as a whole.
bool concernsAll(AXError error) {
    return error == kAXErrorCannotComplete || error == kAXErrorInvalidUIElement ||
           error == kAXErrorAPIDisabled;
}

AXError getWindow(AXUIElementRef element, CGWindowID* number) {
    const auto known = framework().service().windowNumber(objectOf<ElementObject>(element).element);
    if (!known) return kAXErrorIllegalArgument;
    *number = *known;
    return kAXErrorSuccess;
}

AXUIElementRef createWithRemoteToken(CFDataRef data) {
    std::array<std::byte, 20> token{};
    if (CFDataGetLength(data) != static_cast<CFIndex>(token.size())) return nullptr;
    std::memcpy(token.data(), CFDataGetBytePtr(data), token.size());
    const auto element = framework().service().elementFromToken(token);
    return element ? createElement(*element) : nullptr;
}

}  // namespace

FakeAccessibility::FakeAccessibility(FakeMac& mac) : service_(mac.desktop().platform().accessibility) {
    mac.provide<hiServices::GetWindow>(hiServices::library, hiServices::getWindow, getWindow);
    mac.provide<hiServices::CreateWithRemoteToken>(hiServices::library, hiServices::createWithRemoteToken,
                                                   createWithRemoteToken);
}

void FakeAccessibility::behave() {
    answers_.clear();
    errors_.clear();
    batchError_.reset();
    batchForm_ = Batch::boxedErrors;
}

std::vector<FakeAccessibility::Answer> FakeAccessibility::read(const Element& element, double timeout,
                                                               std::span<const std::string> names) {
    ++messages;
    service_.setMessagingTimeout(element, timeout);
    const std::vector<std::string_view> views(names.begin(), names.end());
    const AttributeRequest request{element, views};
    const auto attributes = service_.read({&request, 1});
    std::vector<Answer> answers;
    for (const Attribute& attribute : attributes.front()) {
        const std::string& name = names[answers.size()];
        const AXError error = errorOf(attribute);
        if (concernsAll(error))
            answers.push_back({error, {}});
        else if (errors_.contains(name))
            answers.push_back({errors_[name], {}});
        else if (answers_.contains(name))
            answers.push_back({kAXErrorSuccess, answers_[name]});
        else
            answers.push_back({error, attribute ? createObject(*attribute) : CFRef<CFTypeRef>()});
    }
    return answers;
}

}  // namespace quillo::fakes

using namespace quillo::fakes;  // the functions below are global C functions
using quillo::CFRef;

const CFStringRef kAXTrustedCheckOptionPrompt = immortalText("AXTrustedCheckOptionPrompt");

Boolean AXIsProcessTrusted() {
    return framework().service().trusted();
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    if (quillo::cf::boolean(quillo::cf::lookup(options, kAXTrustedCheckOptionPrompt)) == true)
        ++framework().prompts;
    return AXIsProcessTrusted();
}

AXUIElementRef AXUIElementCreateApplication(pid_t pid) {
    return createElement(framework().service().application(pid));
}

AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid) {
    *pid = quillo::simulated::handleOf(objectOf<ElementObject>(element).element).pid;
    return kAXErrorSuccess;
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds) {
    objectOf<ElementObject>(element).timeout = static_cast<double>(timeoutInSeconds);
    return kAXErrorSuccess;
}

AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value) {
    const auto& object = objectOf<ElementObject>(element);
    const std::string name = nameFrom(attribute);
    auto answer = std::move(framework().read(object.element, object.boundedBy(), {&name, 1}).front());
    if (answer.error == kAXErrorSuccess) *value = answer.value.release();
    return answer.error;
}

AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options, CFArrayRef* values) {
    if (options != 0) fail("an option that the fake does not know");
    const auto& object = objectOf<ElementObject>(element);
    std::vector<std::string> names;
    for (const CFTypeRef name : quillo::cf::items(attributes))
        names.push_back(nameFrom(static_cast<CFStringRef>(name)));
    const auto answers = framework().read(object.element, object.boundedBy(), names);
    if (!answers.empty() && concernsAll(answers.front().error)) return answers.front().error;
    if (const auto error = framework().batchError()) return *error;

    using Batch = FakeAccessibility::Batch;
    std::vector<CFRef<CFTypeRef>> kept;
    std::vector<CFTypeRef> items;
    for (const auto& answer : answers) {
        const bool missing = !answer.value;
        if (missing && framework().batchForm() == Batch::tooShort) continue;
        if (!missing)
            kept.push_back(answer.value);
        else if (framework().batchForm() == Batch::nullForErrors || answer.error == kAXErrorSuccess)
            kept.push_back(CFRef<CFTypeRef>::retained(kCFNull));
        else
            kept.push_back(CFRef<CFTypeRef>::created(AXValueCreate(kAXValueTypeAXError, &answer.error)));
        items.push_back(kept.back().get());
    }
    *values = quillo::cf::makeArray(items).release();
    return kAXErrorSuccess;
}

AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef value) {
    const auto& object = objectOf<ElementObject>(element);
    const auto wanted = valueOf(value);
    auto& service = messageTo(object);
    if (!wanted) return kAXErrorIllegalArgument;
    return static_cast<AXError>(service.write(object.element, nameFrom(attribute), *wanted).code);
}

AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action) {
    const auto& object = objectOf<ElementObject>(element);
    return static_cast<AXError>(messageTo(object).perform(object.element, nameFrom(action)).code);
}
