#include <gtest/gtest.h>

#include <limits>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/CheckedSum.hpp"

namespace quillo {
namespace {

/// With two windows, the first of `nativeTabs` tabs, and a context window of each number of addresses.
ApplicationSnapshot application(const char* identifier, std::size_t nativeTabs, const char* adapter,
                                std::initializer_list<std::size_t> addresses) {
    ApplicationSnapshot app;
    app.bundleIdentifier = identifier;
    app.windows.resize(2);
    app.windows[0].tabs.emplace(nativeTabs);
    app.context = {adapter, {}};
    for (const std::size_t count : addresses)
        app.context->windows.push_back({{}, {count, *Url::parse("https://a.example/")}, {}});
    return app;
}

TEST(Workspace, CountsFoldersAndTabsApart) {
    WorkspaceSnapshot snapshot;
    EXPECT_EQ(snapshot.desktopCount(), 0);
    snapshot.desktops = {{"left", 0, {}}, {"left", 1, {}}, {"right", 0, {}}, {"right", 1, {}}};
    EXPECT_EQ(snapshot.desktopCount(), 2) << "without an identity they are the same on all displays";
    snapshot.desktops = {{"left", 0, "a"}, {"left", 1, {}}, {"right", 0, "c"}};
    snapshot.applications = {application("com.apple.finder", 5, "finder", {1, 2}),
                             application("com.google.Chrome", 3, "chromium", {4}),
                             application("org.editor", 2, "", {})};
    snapshot.applications[2].context.reset();
    EXPECT_EQ(snapshot.desktopCount(), 3);
    EXPECT_EQ(snapshot.windowCount(), 6);
    EXPECT_EQ(snapshot.folderCount(), 3);
    EXPECT_EQ(snapshot.tabCount(), 4 + 3 + 2);  // neither the folders nor the file manager's native tabs
}

TEST(WorkspaceDeathTest, ACountThatOverflowsEndsTheProgram) {
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(checkedSum(most, -1), most - 1);
    EXPECT_DEATH(checkedSum(most, 1), "exceeds 64 bits");
}

TEST(Workspace, DesktopsWithOtherUuidsDifferAndShareTheirId) {
    const DesktopSnapshot a{.displayID = "D", .index = 2, .uuid = "x"},
        b{.displayID = "D", .index = 2, .uuid = {}};
    EXPECT_EQ(a.id(), "D#desktop2");
    EXPECT_EQ(b.id(), a.id());
    EXPECT_NE(a, b);
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    const std::pair<std::int64_t, std::int64_t> numbers[] = {
        {-largest - 1, 1}, {-1, 1}, {0, 1}, {8, 9}, {largest, largest}};  // as people count
    for (const auto& [index, number] : numbers) EXPECT_EQ((DesktopSnapshot{"D", index, {}}).number(), number);
}

}  // namespace
}  // namespace quillo
