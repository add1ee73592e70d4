#include <gtest/gtest.h>

#include <map>

#include "WindowEngine/Capture.hpp"
#include "WindowEngine/Restore.hpp"
#include "WindowEngine/SafariPrivacy.hpp"
#include "WindowEngine/services/ForwardingAccessibilityService.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"

namespace quillo {
namespace {

constexpr std::string_view normalWords = "smart search field";
constexpr std::string_view privateWords = "smart search field, private";

/// A part of a window, made of its attributes.
class Part final : public ElementHandle {
  public:
    explicit Part(std::map<std::string_view, AttributeValue> values) : attributes(std::move(values)) {}
    bool same(const ElementHandle& other) const override { return this == &other; }

    const std::map<std::string_view, AttributeValue> attributes;
};

Element part(std::map<std::string_view, AttributeValue> attributes) {
    return Element(std::make_shared<Part>(std::move(attributes)));
}

Element holder(std::string_view role, std::vector<Element> children) {
    return part({{ax::role, std::string(role)}, {ax::children, std::move(children)}});
}

Element addressField(std::string_view words) {
    return part(
        {{ax::identifier, "WEB_BROWSER_ADDRESS_AND_SEARCH_FIELD"}, {ax::description, std::string(words)}});
}

/// An address field that many levels below its toolbar.
Element toolbar(int levels, std::string_view words) {
    Element inner = addressField(words);
    for (int level = 1; level < levels; ++level) inner = holder("AXGroup", {inner});
    return holder("AXToolbar", {inner});
}

/// Gives the windows of a simulated browser the insides that belong to their titles.
class BrowserInsides final : public ForwardingAccessibilityService {
  public:
    explicit BrowserInsides(AccessibilityService& target) : ForwardingAccessibilityService(target) {
        insides_["normal"] = {holder("AXGroup", {}), holder("AXToolbar", {}), toolbar(1, normalWords)};
        insides_["deep"] = {toolbar(7, normalWords)};
        insides_["too deep"] = {toolbar(8, normalWords)};
        insides_["private"] = {toolbar(1, privateWords)};
        insides_["elsewhere"] = {holder("AXGroup", {addressField(normalWords)})};
    }

    std::vector<std::vector<Attribute>> read(std::span<const AttributeRequest> requests) override {
        std::vector<std::vector<Attribute>> answers;
        for (const AttributeRequest& request : requests) {
            auto& answer = answers.emplace_back();
            for (const std::string_view name : request.names)
                answer.push_back(readOne(request.element, name));
        }
        return answers;
    }

  private:
    Attribute readOne(const Element& element, std::string_view name) {
        if (const auto* inside = dynamic_cast<const Part*>(&element.handle())) {
            const auto found = inside->attributes.find(name);
            if (found == inside->attributes.end()) return std::unexpected(AttributeMiss{});
            return found->second;
        }
        if (name != ax::children) return target(element, name);
        const Attribute title = target(element, ax::title);
        return title ? insides_[std::get<std::string>(*title)] : std::vector<Element>{};
    }
    Attribute target(const Element& element, std::string_view name) {
        const AttributeRequest request{element, {&name, 1}};
        return ForwardingAccessibilityService::read({&request, 1}).front().front();
    }

    std::map<std::string, std::vector<Element>> insides_;
};

constexpr std::string_view scene = R"({
    "displays": [{"id": "A", "frame": [0, 0, 1000, 800], "desktops": 2}],
    "applications": [
        {"identifier": "com.apple.Safari", "name": "Safari", "windows": [
            {"title": "private", "frame": [10, 10, 300, 200]},
            {"title": "normal", "frame": [20, 20, 310, 210]},
            {"title": "deep", "frame": [30, 30, 320, 220]},
            {"title": "too deep", "frame": [40, 40, 330, 230]},
            {"title": "elsewhere", "frame": [50, 50, 340, 240]},
            {"title": "on another desktop", "frame": [60, 60, 350, 250], "desktop": 1}]},
        {"identifier": "org.editor", "windows": [{"title": "private", "frame": [70, 70, 360, 260]}]}]
})";

class OnTheDesktop : public testing::Test {
  protected:
    std::unique_ptr<SimulatedDesktop> simulated = SimulatedDesktop::create(scene, "scene").value();
    Platform plain = simulated->platform();
    BrowserInsides insides{plain.accessibility};
    WindowHandleCache handles;
    DesktopAccess desktop{{plain.executor, insides, plain.windowServer, plain.applications, plain.screens,
                           plain.scripts, plain.log},
                          handles};

    template <class T>
    T run(Task<T> task) {
        Job<T> job(simulated->executor(), std::move(task));
        simulated->executor().runUntil([&] { return job.done(); }, std::chrono::hours(1));
        return job.result();
    }
};

using Safari = OnTheDesktop;

TEST_F(Safari, OnlyWindowsVerifiedAsNormalAreCaptured) {
    const WorkspaceSnapshot snapshot = run(Capture::snapshot(desktop, {}));
    ASSERT_EQ(snapshot.applications.size(), 2u);
    EXPECT_EQ(snapshot.applications[0].windows.size(), 1u) << "another application's windows are not judged";
    std::vector<std::string> titles;
    for (const WindowSnapshot& window : snapshot.applications[1].windows)
        titles.push_back(window.title.value_or("from the window server"));
    EXPECT_EQ(titles, (std::vector<std::string>{"normal", "deep"}));
    EXPECT_EQ(
        snapshot.notes,
        (std::vector<std::string>{"Safari: skipped windows whose browsing privacy could not be verified."}));
}

TEST_F(Safari, PrivateWindowsAreNeitherMovedNorReported) {
    WindowSnapshot saved;
    saved.title = "private";
    saved.frame = {500, 500, 300, 200};
    Workspace workspace;
    workspace.snapshot.applications = {
        {"com.apple.Safari", "Safari", {}, std::vector<WindowSnapshot>(3, saved), {}}};
    const RestoreReport report = run(Restore::run(desktop, workspace, {}, {}));
    EXPECT_EQ(report.items.size(), 3u);
    EXPECT_EQ(report.totals().skipped, 1) << "two normal windows for three saved ones";
    EXPECT_EQ(simulated->world().window("com.apple.Safari", "private")->state.frame,
              (Rect{10, 10, 300, 200}));
}

TEST_F(Safari, WithoutToolbarsToReadNothingIsVerified) {
    DesktopAccess blind{plain, handles};
    const WorkspaceSnapshot snapshot = run(Capture::snapshot(blind, {}));
    EXPECT_TRUE(snapshot.applications[1].windows.empty());
    EXPECT_TRUE(snapshot.notes);
}

using WindowlessApplication = OnTheDesktop;

TEST_F(WindowlessApplication, IsAskedForAWindowWhateverWasSavedOfIt) {
    simulated->world().close(simulated->world().window("org.editor", "private")->number);
    Workspace workspace;
    workspace.snapshot.applications = {{"org.editor", "Editor", {}, {}, {}}};
    EXPECT_TRUE(run(Restore::run(desktop, workspace, {}, {})).items.empty());
    EXPECT_FALSE(simulated->world().windowsOf("org.editor").empty());
    EXPECT_EQ(simulated->logLines().front(),
              "restore info: requested a new window for windowless org.editor");
}

}  // namespace
}  // namespace quillo
