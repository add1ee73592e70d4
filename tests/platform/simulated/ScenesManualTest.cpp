// The manual of scenes and the scenes for people keep up with what can be read.
#include <gtest/gtest.h>
#include <simdjson.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "platform/simulated/SceneFields.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"

namespace quillo {
namespace {

const std::filesystem::path root = QUILLO_SOURCE_DIR;

std::string contents(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Names of all members, however deep.
void collectNames(simdjson::dom::element json, std::set<std::string>& names) {
    if (simdjson::dom::object object; !json.get_object().get(object)) {
        for (const auto field : object) {
            names.emplace(field.key);
            collectNames(field.value, names);
        }
    }
    if (simdjson::dom::array array; !json.get_array().get(array)) {
        for (const auto entry : array) collectNames(entry, names);
    }
}

/// A scene in which nothing has its usual value, so that it is written with every field there is.
simulated::Scene unusual() {
    const simulated::SceneWindow window{.title = "t",
                                        .subrole = "AXDialog",
                                        .document = "file:///a",
                                        .frame = {1, 2, 3, 4},
                                        .minimized = true,
                                        .fullscreen = true,
                                        .display = "d",
                                        .desktop = 1,
                                        .listed = false,
                                        .minimumSize = {1, 1},
                                        .maximumSize = Size{9, 9},
                                        .cell = {2, 2},
                                        .opensAfter = 1,
                                        .closesAfter = 1,
                                        .tabGroup = "g",
                                        .unsaved = true,
                                        .tabs = {"/a", ""},
                                        .privateBrowsing = true,
                                        .toolbar = false,
                                        .addressFieldDepth = 9};
    simulated::Scene scene;
    scene.trusted = false;
    scene.displays = {{.id = "d",
                       .frame = {0, 0, 9, 9},
                       .visibleFrame = {0, 1, 9, 8},
                       .scale = 1,
                       .desktops = 2,
                       .shownDesktop = 1}};
    scene.applications = {{.identifier = "a",
                           .name = "A",
                           .policy = ActivationPolicy::accessory,
                           .installed = false,
                           .running = false,
                           .hidden = true,
                           .launchSeconds = 9,
                           .windows = {window},
                           .reopens = {window},
                           .documentSeconds = 9,
                           .language = "de"}};
    scene.faults = {{simulated::FaultKind::moveRefused, "a", "t", "v", 1, 1, true, true, 2}};
    scene.missingFolders = {"/m"};
    return scene;
}

TEST(ScenesManual, NamesEveryFieldAndEveryFault) {
    const std::string manual = contents(root / "docs/scenes.md");
    simdjson::dom::parser parser;
    std::set<std::string> names;
    const std::string written = simulated::writeScene(unusual());
    EXPECT_EQ(simulated::writeScene(simulated::readScene(written, "scene").value()), written);
    collectNames(parser.parse(written).value(), names);
    EXPECT_EQ(names.size(), 49U) << "a field that the unusual scene does not write is not looked for";
    for (const auto& fault : namesOf<simulated::FaultKind>) names.emplace(fault.first);
    for (const std::string& name : names) EXPECT_TRUE(manual.contains("`" + name + "`")) << name;
}

TEST(ScenesManual, ItsExampleAndTheScenesForPeopleCanBeStartedFrom) {
    const std::string manual = contents(root / "docs/scenes.md");
    const std::size_t begin = manual.find("```json\n") + 8;
    const auto example =
        SimulatedDesktop::create(manual.substr(begin, manual.find("```", begin) - begin), "docs/scenes.md");
    ASSERT_TRUE(example) << example.error().text;
    EXPECT_EQ((*example)->world().windows().size(), 2U);
    int scenes = 0;
    for (const auto& entry : std::filesystem::directory_iterator(root / "tests/scenes")) {
        const auto desktop = SimulatedDesktop::create(contents(entry.path()), entry.path().string());
        EXPECT_TRUE(desktop) << desktop.error().text;
        if (desktop) EXPECT_FALSE((*desktop)->platform().applications.running().empty());
        ++scenes;
    }
    EXPECT_GE(scenes, 2);
}

}  // namespace
}  // namespace quillo
