// Hands every call on to another service: a fault test overrides the one it needs.
#pragma once
#include "WindowEngine/services/AccessibilityService.hpp"

namespace quillo {

class ForwardingAccessibilityService : public AccessibilityService {
  public:
    explicit ForwardingAccessibilityService(AccessibilityService& target) : target_(target) {}

    bool trusted() override { return target_.trusted(); }
    Capability access() override { return target_.access(); }
    Capability folders() override { return target_.folders(); }
    bool movesTogether() override { return target_.movesTogether(); }
    bool listsTabsAsWindows() override { return target_.listsTabsAsWindows(); }
    void prompt() override { target_.prompt(); }
    Element application(ProcessID pid) override { return target_.application(pid); }
    void setMessagingTimeout(const Element& element, double seconds) override {
        target_.setMessagingTimeout(element, seconds);
    }
    std::vector<std::vector<Attribute>> read(std::span<const AttributeRequest> requests) override {
        return target_.read(requests);
    }
    Task<bool> askPatiently() override { return target_.askPatiently(); }
    AccessibilityCode write(const Element& element, std::string_view name,
                            const AttributeValue& value) override {
        return target_.write(element, name, value);
    }
    FrameWrite writeFrame(const Element& window, const Rect& frame) override {
        return target_.writeFrame(window, frame);
    }
    AccessibilityCode perform(const Element& element, std::string_view action) override {
        return target_.perform(element, action);
    }
    std::optional<WindowNumber> windowNumber(const Element& window) override {
        return target_.windowNumber(window);
    }
    Capability remoteTokens() override { return target_.remoteTokens(); }
    std::optional<Element> elementFromToken(std::span<const std::byte, 20> token) override {
        return target_.elementFromToken(token);
    }
    Capability placement(const Element& window) override { return target_.placement(window); }
    Task<bool> makeMovable(Element window) override { return target_.makeMovable(std::move(window)); }
    Task<void> settleInPlace(Element window) override { return target_.settleInPlace(std::move(window)); }

  private:
    AccessibilityService& target_;
};

}  // namespace quillo
