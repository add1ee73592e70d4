#include "platform/macos/MacAccessibility.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/macos/AccessibilityValues.hpp"
#include "platform/macos/CFValues.hpp"

namespace quillo {
namespace {

using macos::attributeOf;
using macos::ElementReference;
using macos::makeApplication;
using macos::makeElement;
using macos::missFor;
using macos::referenceOf;

using Attributes = std::vector<Attribute>;

bool timedOut(const Attribute& attribute) {
    return !attribute && attribute.error().reason == AttributeMiss::Reason::timedOut;
}

Attributes missingAll(std::size_t count, AXError error) {
    return Attributes(count, std::unexpected(missFor(error)));
}

CFRef<CFArrayRef> arrayOf(std::span<const std::string_view> names) {
    std::vector<CFRef<CFStringRef>> texts;
    std::vector<CFTypeRef> values;
    for (const std::string_view name : names) values.push_back(texts.emplace_back(cf::makeText(name)).get());
    return cf::makeArray(values);
}

Attribute readOne(const ElementReference& element, std::string_view name) {
    CFRef<CFTypeRef> value;
    const AXError error = AXUIElementCopyAttributeValue(element.get(), cf::makeText(name).get(), value.out());
    if (error != kAXErrorSuccess) return std::unexpected(missFor(error));
    return attributeOf(value.get(), element);
}

/// After a timeout nothing more is asked.
Attributes readOneByOne(const ElementReference& element, std::span<const std::string_view> names) {
    Attributes answers;
    for (const std::string_view name : names) {
        if (!answers.empty() && timedOut(answers.back()))
            answers.push_back(answers.back());
        else
            answers.push_back(readOne(element, name));
    }
    return answers;
}

/// All attributes in one message. An application that does not understand it, or answers with too few, is
/// asked one by one; one that is gone or hangs is not.
Attributes readTogether(const ElementReference& element, std::span<const std::string_view> names) {
    if (names.size() < 2) return readOneByOne(element, names);
    CFRef<CFArrayRef> values;
    constexpr AXCopyMultipleAttributeOptions doNotStopAtErrors{};
    const AXError error = AXUIElementCopyMultipleAttributeValues(element.get(), arrayOf(names).get(),
                                                                 doNotStopAtErrors, values.out());
    if (error == kAXErrorInvalidUIElement || error == kAXErrorCannotComplete)
        return missingAll(names.size(), error);
    const auto items = cf::items(values.get());
    if (error != kAXErrorSuccess || items.size() != names.size()) return readOneByOne(element, names);
    Attributes answers;
    for (const CFTypeRef item : items) answers.push_back(attributeOf(item, element));
    return answers;
}

}  // namespace

MacAccessibility::MacAccessibility(SymbolLookup lookup, Family family)
    : family_(std::move(family)),
      getWindow_(symbol<hiServices::GetWindow>(lookup, hiServices::library, hiServices::getWindow)),
      createWithRemoteToken_(symbol<hiServices::CreateWithRemoteToken>(lookup, hiServices::library,
                                                                       hiServices::createWithRemoteToken)) {}

bool MacAccessibility::trusted() {
    return AXIsProcessTrusted() != 0;
}

Capability MacAccessibility::access() {
    if (trusted()) return Capability::available();
    return Capability::unavailable(
        "Quillo is not allowed to control other applications' windows. Allow it in System Settings, under "
        "Privacy & Security, Accessibility.");
}

void MacAccessibility::prompt() {
    // The system asks at its leisure; what this returns is only how things stood.
    AXIsProcessTrustedWithOptions(cf::makeDictionary(std::array{std::pair<CFTypeRef, CFTypeRef>(
                                                         kAXTrustedCheckOptionPrompt, cf::makeBoolean(true))})
                                      .get());
}

Element MacAccessibility::application(ProcessID pid) {
    return makeApplication(pid, 0);
}

void MacAccessibility::setMessagingTimeout(const Element& element, double seconds) {
    referenceOf(element).setTimeout(seconds);
}

/// What one of the processes does not tell in time is missing from the whole: then nothing is told.
void MacAccessibility::addWindowsOfFamily(const Element& application, Attribute& windows, Silent& silent) {
    const ElementReference& presented = referenceOf(application);
    for (const ProcessID pid : family_(presented.pid())) {
        auto* list = windows ? std::get_if<std::vector<Element>>(&*windows) : nullptr;
        if (!list) return;
        if (pid == presented.pid()) continue;
        const Element member = makeApplication(pid, presented.timeout());
        Attribute more = silent.contains(pid) ? std::unexpected(missFor(kAXErrorCannotComplete))
                                              : readOne(referenceOf(member), ax::windows);
        if (timedOut(more)) {
            silent.insert(pid);
            windows = std::move(more);
        } else if (const auto* its = more ? std::get_if<std::vector<Element>>(&*more) : nullptr) {
            list->insert(list->end(), its->begin(), its->end());
        }
    }
}

Attributes MacAccessibility::readRequest(const AttributeRequest& request, Silent& silent) {
    const ElementReference& element = referenceOf(request.element);
    if (silent.contains(element.pid())) return missingAll(request.names.size(), kAXErrorCannotComplete);
    if (!silent.empty())  // the thread was held up long enough
        return Attributes(request.names.size(),
                          std::unexpected(AttributeMiss{AttributeMiss::Reason::timedOut, 0}));
    Attributes answers = readTogether(element, request.names);
    if (std::ranges::any_of(answers, timedOut)) silent.insert(element.pid());
    for (std::size_t i = 0; family_ && element.isApplication() && i < request.names.size(); ++i) {
        if (request.names[i] == ax::windows) addWindowsOfFamily(request.element, answers[i], silent);
    }
    return answers;
}

std::vector<std::vector<Attribute>> MacAccessibility::read(std::span<const AttributeRequest> requests) {
    std::vector<Attributes> answers;
    Silent silent;
    for (const AttributeRequest& request : requests) answers.push_back(readRequest(request, silent));
    return answers;
}

AccessibilityCode MacAccessibility::write(const Element& element, std::string_view name,
                                          const AttributeValue& value) {
    const auto object = macos::objectFor(value);
    if (!object) return {kAXErrorIllegalArgument};
    return {AXUIElementSetAttributeValue(referenceOf(element).get(), cf::makeText(name).get(), object.get())};
}

FrameWrite MacAccessibility::writeFrame(const Element& window, const Rect& frame) {
    const AccessibilityCode position = write(window, ax::position, frame.origin());
    if (position.code == kAXErrorCannotComplete) return {};
    const AccessibilityCode size = write(window, ax::size, frame.size());
    if (size.code == kAXErrorCannotComplete) return {.positionSet = bool(position), .sizeSet = false};
    const AccessibilityCode corrected = write(window, ax::position, frame.origin());
    return {.positionSet = position || corrected, .sizeSet = bool(size)};
}

AccessibilityCode MacAccessibility::perform(const Element& element, std::string_view action) {
    return {AXUIElementPerformAction(referenceOf(element).get(), cf::makeText(action).get())};
}

std::optional<WindowNumber> MacAccessibility::windowNumber(const Element& window) {
    CGWindowID number = kCGNullWindowID;
    if (!getWindow_ || getWindow_(referenceOf(window).get(), &number) != kAXErrorSuccess) return std::nullopt;
    return number == kCGNullWindowID ? std::nullopt : std::optional<WindowNumber>(number);
}

Capability MacAccessibility::remoteTokens() {
    if (createWithRemoteToken_ && getWindow_) return Capability::available();
    return Capability::unavailable(
        "This version of macOS has no way to find the windows that accessibility does not list, such as "
        "those "
        "on other desktops that were not seen before.");
}

std::optional<Element> MacAccessibility::elementFromToken(std::span<const std::byte, 20> token) {
    if (!createWithRemoteToken_) return std::nullopt;
    auto element = CFRef<AXUIElementRef>::created(createWithRemoteToken_(cf::makeData(token).get()));
    return element ? std::optional(makeElement(std::move(element), 0)) : std::nullopt;
}

Task<bool> MacAccessibility::makeMovable(Element) {
    co_return true;
}

Task<void> MacAccessibility::settleInPlace(Element) {
    co_return;
}

}  // namespace quillo
