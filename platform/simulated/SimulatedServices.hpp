// The engine's services over a simulated world. Internal to this layer.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "WindowEngine/services/Platform.hpp"
#include "platform/simulated/SimulatedDock.hpp"
#include "platform/simulated/World.hpp"

namespace quillo::simulated {

class Accessibility final : public AccessibilityService {
  public:
    Accessibility(World& world, VirtualExecutor& executor)
        : world_(world), executor_(executor), dock_(world) {}

    bool trusted() override;
    Capability access() override;
    bool listsTabsAsWindows() override { return !world_.likeX11(); }
    void prompt() override {}
    Element application(ProcessID pid) override;
    void setMessagingTimeout(const Element& element, double seconds) override;
    std::vector<std::vector<Attribute>> read(std::span<const AttributeRequest> requests) override;
    AccessibilityCode write(const Element& element, std::string_view name,
                            const AttributeValue& value) override;
    FrameWrite writeFrame(const Element& window, const Rect& frame) override;
    AccessibilityCode perform(const Element& element, std::string_view action) override;
    std::optional<WindowNumber> windowNumber(const Element& window) override;
    std::optional<Element> elementFromToken(std::span<const std::byte, 20> token) override;
    Capability placement(const Element& window) override;
    Task<bool> makeMovable(Element window) override;
    Task<void> settleInPlace(Element window) override;

  private:
    Application* ownerOf(const Element& element);
    Window* windowOf(const Element& element);
    Attribute readOne(const Element& element, std::string_view name);
    Attribute readApplication(ProcessID pid, std::string_view name);
    Attribute readWindow(const Window& window, std::string_view name);
    Element windowElement(const Window& window);
    /// The code that stands in the way of any request to this element, after a hang has cost its time.
    std::int32_t obstacle(const Element& element);

    World& world_;
    VirtualExecutor& executor_;
    Dock dock_;
    std::map<ProcessID, double> timeouts_;  // seconds
};

class Server final : public WindowServer {
  public:
    Server(World& world, VirtualExecutor& executor) : world_(world), executor_(executor) {}

    std::vector<WindowListEntry> windowList() override;
    std::vector<DisplaySpaces> displaySpaces() override;
    std::vector<WindowFacts> facts(std::span<const WindowNumber> numbers) override;
    std::string noWindows() override;
    Capability spaces() override { return Capability::available(); }
    Capability desktopCreation() override;
    bool isAnimating(std::string_view displayID) override;
    Result<void> moveWindow(WindowNumber number, SpaceID space) override;
    bool createsDesktopsDirectly() override;
    Result<void> createDesktop(std::string_view displayID) override;
    bool openOverview() override;
    void closeOverview() override { world_.closeOverview(); }
    /// Tells of whatever happens by itself, to any window.
    std::unique_ptr<ChangeWatch> watch(std::optional<WindowNumber> window) override;

  private:
    World& world_;
    VirtualExecutor& executor_;
};

class ApplicationList final : public Applications {
  public:
    explicit ApplicationList(World& world) : world_(world) {}

    std::vector<RunningApplication> running() override;
    std::optional<RunningApplication> running(ProcessID pid) override;
    std::optional<RunningApplication> running(std::string_view bundleIdentifier) override;
    std::vector<std::string> ownIdentifiers() override { return {}; }
    std::optional<Url> location(std::string_view bundleIdentifier) override;
    std::optional<std::string> identifierAt(const Url& location) override;
    std::optional<std::string> name(std::string_view bundleIdentifier) override;
    std::vector<InstalledApplication> installed() override;
    std::string notInstalled() override;
    Task<Result<void>> launch(Url location, std::vector<Url> documents) override;
    bool documentsTravelWithLaunch() override { return world_.likeX11(); }
    Task<Result<void>> open(std::string bundleIdentifier, std::vector<Url> documents) override;
    /// Documents are names here: only their endings tell, and the scene.
    Result<Url> openable(std::string_view bundleIdentifier, const Url& document) override;
    Task<Result<void>> requestWindow(std::string bundleIdentifier) override;
    bool hide(std::string_view bundleIdentifier) override;
    bool show(std::string_view bundleIdentifier) override;
    bool terminate(std::string_view bundleIdentifier) override;
    std::optional<ProcessID> serviceProcess(std::string_view bundleIdentifier) override;
    Capability hiding() override { return Capability::available(); }
    Capability quitting() override { return Capability::available(); }
    /// Where the scene says so.
    Capability openingWindows(std::string_view bundleIdentifier) override;
    Task<Result<void>> openWindow(std::string bundleIdentifier) override;

  private:
    World& world_;
};

class ScreenList final : public Screens {
  public:
    explicit ScreenList(World& world) : world_(world) {}
    std::vector<Screen> screens() override;
    ScreenState state() override;

  private:
    World& world_;
};

class MemoryLog final : public SystemLog {
  public:
    void write(std::string_view category, LogLevel level, std::string_view message) override;
    std::vector<std::string> lines;  // "restore info: ..."
};

}  // namespace quillo::simulated
