// Other applications' windows through the system's accessibility framework.
#pragma once

#include "WindowEngine/services/AccessibilityService.hpp"
#include "platform/macos/PrivateSymbols.hpp"

namespace quillo {

class MacAccessibility final : public AccessibilityService {
  public:
    explicit MacAccessibility(SymbolLookup lookup = systemSymbol);

    bool trusted() override;
    Capability access() override;
    void prompt() override;
    Element application(ProcessID pid) override;
    void setMessagingTimeout(const Element& element, double seconds) override;
    std::vector<std::vector<Attribute>> read(std::span<const AttributeRequest> requests) override;
    AccessibilityCode write(const Element& element, std::string_view name,
                            const AttributeValue& value) override;
    /// Ends at a write that timed out: the others would only wait as long again.
    FrameWrite writeFrame(const Element& window, const Rect& frame) override;
    AccessibilityCode perform(const Element& element, std::string_view action) override;
    std::optional<WindowNumber> windowNumber(const Element& window) override;
    Capability remoteTokens() override;
    std::optional<Element> elementFromToken(std::span<const std::byte, 20> token) override;
    Task<bool> makeMovable(Element window) override;
    Task<void> settleInPlace(Element window) override;

  private:
    hiServices::GetWindow* getWindow_;                          // null where the system has none
    hiServices::CreateWithRemoteToken* createWithRemoteToken_;  // likewise
};

}  // namespace quillo
