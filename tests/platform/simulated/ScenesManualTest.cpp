// The manual of scenes and the scenes for people keep up with what can be read.
#include <gtest/gtest.h>

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

TEST(ScenesManual, NamesEveryFieldAndEveryFault) {
    const std::string manual = contents(root / "docs/scenes.md");
    std::set<std::string_view> names;
    const auto add = [&](const auto& some) { names.insert(some.begin(), some.end()); };
    add(keysOf<simulated::Scene>);
    add(keysOf<simulated::SceneDisplay>);
    add(keysOf<simulated::SceneApplication>);
    add(keysOf<simulated::SceneWindow>);
    add(keysOf<simulated::Fault>);
    for (const auto& fault : namesOf<simulated::FaultKind>) names.insert(fault.first);
    EXPECT_GT(names.size(), 70U);
    for (const std::string_view name : names)
        EXPECT_TRUE(manual.contains("`" + std::string(name) + "`")) << name;
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
