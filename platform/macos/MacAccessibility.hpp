// Other applications' windows through the system's accessibility framework.
#pragma once

#include "WindowEngine/services/AccessibilityService.hpp"
#include "platform/macos/PrivateSymbols.hpp"

namespace quillo {

class MacAccessibility final : public AccessibilityService {
  public:
    /// All living processes of the application that this one belongs to, itself among them.
    using Family = std::function<std::vector<ProcessID>(ProcessID)>;

    /// An application that runs as several processes is one to the engine, under the pid of one of them: its
    /// element lists the windows of all. Without a `family` each process stands for itself.
    explicit MacAccessibility(SymbolLookup lookup, Family family = {});

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
    /// Processes that let a message of this batch time out.
    using Silent = std::set<ProcessID>;
    std::vector<Attribute> readRequest(const AttributeRequest& request, Silent& silent);
    void addWindowsOfFamily(const Element& application, Attribute& windows, Silent& silent);

    Family family_;
    hiServices::GetWindow* getWindow_;                          // null where the system has none
    hiServices::CreateWithRemoteToken* createWithRemoteToken_;  // likewise
};

}  // namespace quillo
