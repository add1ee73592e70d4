#include <gtest/gtest.h>

#include <map>

#include "WindowEngine/SafariPrivacy.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo {
namespace {

/// A part of a window, made of its attributes.
struct Part final : ElementHandle {
    using Attributes = std::map<std::string_view, AttributeValue>;
    explicit Part(Attributes values) : attributes(std::move(values)) {}
    bool same(const ElementHandle& other) const override { return this == &other; }
    const Attributes attributes;
};

Element part(Part::Attributes attributes) {
    return Element(std::make_shared<Part>(std::move(attributes)));
}
Element holder(std::string role, std::vector<Element> children) {
    return part({{ax::role, std::move(role)}, {ax::children, std::move(children)}});
}
/// An address field that many levels below its toolbar.
Element toolbar(int levels, std::string words, std::string role = "AXToolbar") {
    Element inner = part({{ax::identifier, std::string("WEB_BROWSER_ADDRESS_AND_SEARCH_FIELD")},
                          {ax::description, std::move(words)}});
    for (; levels > 1; --levels) inner = holder("AXGroup", {inner});
    return holder(std::move(role), {inner});
}

const std::string normal = "smart search field";
/// What the windows of the browser hold, by their titles.
const std::map<std::string, std::vector<Element>> insides{
    {"private", {toolbar(1, normal + ", private")}},
    {"normal", {holder("AXGroup", {}), holder("AXToolbar", {}), toolbar(1, normal)}},
    {"deep", {toolbar(7, normal)}},
    {"too deep", {toolbar(8, normal)}},
    {"elsewhere", {toolbar(1, normal, "AXGroup")}}};

class BrowserInsides final : public ForwardingAccessibilityService {
  public:
    using ForwardingAccessibilityService::ForwardingAccessibilityService;
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
        const auto found = insides.find(title ? std::get<std::string>(*title) : "");
        return found == insides.end() ? std::vector<Element>{} : found->second;
    }
    Attribute target(const Element& element, std::string_view name) {
        const AttributeRequest request{element, {&name, 1}};
        return ForwardingAccessibilityService::read({&request, 1}).front().front();
    }
};

samples::SceneApplication browser() {
    std::vector<samples::SceneWindow> windows;
    for (const char* title : {"private", "normal", "deep", "too deep", "elsewhere", "on another desktop"}) {
        const double at = 20.0 * static_cast<double>(windows.size() + 2);
        windows.push_back(samples::sceneWindow(title, {at, at, 300 + at, 200 + at}));
    }
    windows.back().desktop = 1;
    return samples::sceneApplication("com.apple.Safari", windows);
}

class Safari : public testing::Test {
  protected:
    samples::Desktop desktop{
        samples::scene({browser(), samples::sceneApplication(
                                       "org.editor", {samples::sceneWindow("private", {9, 30, 99, 99})})})};
    const Platform& plain = desktop.plain;
    BrowserInsides service{plain.accessibility};
    DesktopAccess access{{plain.executor, service, plain.windowServer, plain.applications, plain.screens,
                          plain.scripts, plain.log},
                         desktop.handles};
};

TEST_F(Safari, OnlyWindowsVerifiedAsNormalAreCaptured) {
    const WorkspaceSnapshot snapshot = desktop.run(Capture::snapshot(access, {}));
    std::vector<std::string> titles;
    for (const ApplicationSnapshot& application : snapshot.applications)
        for (const WindowSnapshot& window : application.windows)
            titles.push_back(application.bundleIdentifier + " " +
                             window.title.value_or("from the window server"));
    EXPECT_EQ(titles, (std::vector<std::string>{"com.apple.Safari normal", "com.apple.Safari deep",
                                                "org.editor private"}));
    EXPECT_EQ(
        snapshot.notes,
        (std::vector<std::string>{"Safari: skipped windows whose browsing privacy could not be verified."}));

    const WorkspaceSnapshot blind = desktop.capture();  // no toolbar can be read
    ASSERT_EQ(blind.applications.size(), 2u);
    EXPECT_TRUE(blind.applications[0].windows.empty());
    EXPECT_TRUE(blind.notes);
}

TEST_F(Safari, PrivateWindowsAreNeitherMovedNorReported) {
    const Rect before = desktop.world().window("com.apple.Safari", "private")->state.frame;
    const std::vector saved(3, samples::savedWindow(desktop, {500, 500, 300, 200}, "private"));
    Workspace workspace;
    workspace.snapshot.applications = {{"com.apple.Safari", "Safari", {}, saved, {}}};
    const RestoreReport report = desktop.run(Restore::run(access, workspace, {}, {}));
    EXPECT_EQ(report.items.size(), 3u);
    EXPECT_EQ(report.totals().skipped, 1) << "two normal windows for three saved ones";
    EXPECT_EQ(desktop.world().window("com.apple.Safari", "private")->state.frame, before);
}

}  // namespace
}  // namespace quillo
