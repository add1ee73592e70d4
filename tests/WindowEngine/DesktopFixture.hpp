// A simulated desktop with the engine on it, and short ways to write scenes, saved windows and reports.
#pragma once
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/desktop/DesktopSpaces.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/Restore.hpp"
#include "WindowEngine/services/ForwardingAccessibilityService.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo::samples {

using namespace std::chrono_literals;
using simulated::Fault;
using simulated::FaultKind;
using simulated::Scene;
using simulated::SceneApplication;
using simulated::SceneWindow;

inline SceneWindow sceneWindow(std::string title, Rect frame) {
    SceneWindow window;
    window.title = std::move(title);
    window.frame = frame;
    return window;
}

inline SceneApplication sceneApplication(std::string identifier, std::vector<SceneWindow> windows = {}) {
    SceneApplication application;
    application.identifier = identifier;
    application.name = std::move(identifier);
    application.windows = std::move(windows);
    return application;
}

/// It concerns every application unless one is named, and begins at once unless `after` says later.
inline Fault fault(FaultKind kind, std::string application = {}, double after = 0, double seconds = 0) {
    Fault fault;
    fault.kind = kind;
    fault.application = std::move(application);
    fault.after = after;
    fault.seconds = seconds;
    return fault;
}

inline SceneApplication notRunning(SceneApplication application) {
    application.running = false;
    return application;
}

constexpr Rect mainFrame{0, 0, 1400, 900}, sideFrame{1400, 0, 1000, 800};

/// Displays "main" (with a menu bar of 25 points and two desktops) and "side" to its right.
inline Scene scene(std::vector<SceneApplication> applications) {
    Scene scene;
    scene.displays = {{.id = "main", .frame = mainFrame, .visibleFrame = {0, 25, 1400, 875}, .desktops = 2},
                      {.id = "side", .frame = sideFrame, .visibleFrame = sideFrame}};
    scene.applications = std::move(applications);
    return scene;
}

/// Lets a test see and change what passes between the engine and an accessibility service.
class Meddler final : public ForwardingAccessibilityService {
  public:
    using ForwardingAccessibilityService::ForwardingAccessibilityService;
    using Answers = std::vector<std::vector<Attribute>>;

    std::function<void(std::span<const AttributeRequest>, Answers&)> afterRead;
    std::function<Rect(Rect)> frameWritten;
    Duration tokenCost{};
    bool tokens = true;
    std::function<void()> askedPatiently;
    std::vector<WindowNumber> raised;
    Capability placeable = Capability::available();
    int reads = 0, minimizeWrites = 0, tokensTried = 0;
    int movable = 0;  // windows made movable and not settled since

    Answers read(std::span<const AttributeRequest> requests) override {
        ++reads;
        Answers answers = ForwardingAccessibilityService::read(requests);
        if (afterRead) afterRead(requests, answers);
        return answers;
    }
    Task<bool> askPatiently() override {
        if (askedPatiently) askedPatiently();
        co_return bool(askedPatiently);
    }
    AccessibilityCode write(const Element& element, std::string_view name,
                            const AttributeValue& value) override {
        if (name == ax::minimized) ++minimizeWrites;
        return ForwardingAccessibilityService::write(element, name, value);
    }
    AccessibilityCode perform(const Element& element, std::string_view action) override {
        if (const auto number = windowNumber(element); number && action == ax::raise)
            raised.push_back(*number);
        return ForwardingAccessibilityService::perform(element, action);
    }
    FrameWrite writeFrame(const Element& window, const Rect& frame) override {
        return ForwardingAccessibilityService::writeFrame(window, frameWritten ? frameWritten(frame) : frame);
    }
    Capability placement(const Element&) override { return placeable; }
    Capability remoteTokens() override {
        return tokens ? Capability::available() : Capability::unavailable("none here");
    }
    std::optional<Element> elementFromToken(std::span<const std::byte, 20> token) override {
        ++tokensTried;
        if (burn) burn(tokenCost);
        return ForwardingAccessibilityService::elementFromToken(token);
    }
    /// As on a desktop where a window is first brought to the desktop in front, and later back.
    Task<bool> makeMovable(Element) override {
        ++movable;
        co_await sleepFor(80ms);
        co_return true;
    }
    Task<void> settleInPlace(Element) override {
        co_await sleepFor(80ms);
        --movable;
    }
    std::function<void(Duration)> burn;
};

class TestDesktop {
  public:
    explicit TestDesktop(const Scene& scene, std::uint64_t seed = 1)
        : simulated(
              SimulatedDesktop::create(simulated::writeScene(scene), "scene", {.seed = seed, .faults = {}})
                  .value()) {
        meddler.burn = [this](Duration duration) { executor().burn(duration); };
    }

    VirtualExecutor& executor() { return simulated->executor(); }
    simulated::World& world() { return simulated->world(); }
    ProcessID pid(std::string_view identifier) { return world().application(identifier)->pid; }
    std::vector<LiveWindow> windows(std::string_view identifier, bool recoverHidden = false) {
        return Accessibility::windows(access, pid(identifier), recoverHidden);
    }
    LiveWindow window(std::string_view identifier) { return windows(identifier).at(0); }
    double seconds() { return std::chrono::duration<double>(executor().now().time_since_epoch()).count(); }

    /// Runs a task to its end.
    template <class T>
    T run(Task<T> task) {
        Job<T> job(executor(), std::move(task));
        EXPECT_TRUE(executor().runUntil([&] { return job.done(); }, 1h));
        return job.result();
    }
    RestoreReport restore(const WorkspaceSnapshot& snapshot, Restore::Options options = {},
                          Restore::OnItem onItem = {}) {
        return restoreThrough(access, snapshot, std::move(options), std::move(onItem));
    }
    RestoreReport restoreThrough(DesktopAccess& through, const WorkspaceSnapshot& snapshot,
                                 Restore::Options options = {}, Restore::OnItem onItem = {}) {
        return run(Restore::run(through, workspaceOf(snapshot), std::move(options), std::move(onItem)));
    }
    static Workspace workspaceOf(const WorkspaceSnapshot& snapshot) {
        Workspace workspace;
        workspace.snapshot = snapshot;
        return workspace;
    }
    /// As `access`, with applications or a window server of a test's own.
    DesktopAccess with(Applications& applications) {
        return {platform(plain.windowServer, applications), handles};
    }
    DesktopAccess with(WindowServer& server) { return {platform(server, plain.applications), handles}; }
    WorkspaceSnapshot capture(Capture::Options options = {}) {
        return run(Capture::snapshot(access, std::move(options)));
    }

    const std::unique_ptr<SimulatedDesktop> simulated;
    const Platform plain = simulated->platform();
    Meddler meddler{plain.accessibility};
    WindowHandleCache handles;
    DesktopAccess access = with(plain.windowServer);

  private:
    Platform platform(WindowServer& server, Applications& applications) {
        return {plain.executor,     meddler,  server, applications, plain.screens, plain.scripts,
                plain.browserFiles, plain.log};
    }
};

/// A window as it would have been saved on this desktop.
inline WindowSnapshot savedWindow(TestDesktop& desktop, Rect frame, std::string title) {
    const auto displays = Displays::current(desktop.plain.screens);
    const DisplaySnapshot* display = Displays::display(frame, displays);
    WindowSnapshot saved = window(frame, std::move(title));
    saved.displayID = display->id;
    saved.normalizedFrame = Displays::normalize(frame, display->frame);
    return saved;
}

/// How an item reads: "org.a/Title: restored".
inline std::string text(const RestoreReport::Status& status) {
    const std::string_view text = detailOf(status).text;
    return std::string(outcomeOf(status).name) + (text.empty() ? "" : " ") + std::string(text);
}

inline std::string text(const RestoreReport::Item& item) {
    return item.bundleIdentifier + (item.title ? "/" + *item.title : "") + ": " + text(item.status);
}

inline std::vector<std::string> texts(const RestoreReport& report) {
    std::vector<std::string> result;
    for (const RestoreReport::Item& item : report.items) result.push_back(text(item));
    return result;
}

}  // namespace quillo::samples
