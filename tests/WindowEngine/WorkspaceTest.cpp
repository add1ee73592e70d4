#include <gtest/gtest.h>

#include <limits>
#include <unordered_set>

#include "WindowEngine/Workspace.hpp"
#include "WindowEngine/support/CheckedSum.hpp"

namespace quillo {
namespace {

AppContext contextOf(const char* adapter, std::initializer_list<std::size_t> urlCounts) {
    AppContext context{.adapter = adapter, .windows = {}};
    for (const std::size_t count : urlCounts) {
        context.windows.push_back({.sourceWindowIndex = {},
                                   .urls = std::vector<Url>(count, *Url::parse("https://a.example/")),
                                   .sourceWindowID = {}});
    }
    return context;
}

ApplicationSnapshot application(const char* identifier, std::size_t nativeTabs,
                                std::optional<AppContext> context) {
    ApplicationSnapshot app;
    app.bundleIdentifier = identifier;
    app.windows.resize(2);
    if (nativeTabs) app.windows[0].tabs = std::vector<TabSnapshot>(nativeTabs);
    app.context = std::move(context);
    return app;
}

TEST(Workspace, CountsFoldersAndTabsApart) {
    WorkspaceSnapshot snapshot;
    EXPECT_EQ(snapshot.desktopCount(), 0);
    snapshot.applications = {application("com.apple.finder", 5, contextOf("finder", {1, 2})),
                             application("com.google.Chrome", 3, contextOf("chromium", {4})),
                             application("org.editor", 2, std::nullopt)};
    EXPECT_EQ(snapshot.windowCount(), 6);
    EXPECT_EQ(snapshot.folderCount(), 3);
    EXPECT_EQ(snapshot.tabCount(), 4 + 3 + 2);  // neither the folders nor the file manager's native tabs
    snapshot.desktops.emplace();
    EXPECT_EQ(snapshot.desktopCount(), 0);
    snapshot.desktops->resize(3);
    EXPECT_EQ(snapshot.desktopCount(), 3);
}

TEST(WorkspaceDeathTest, ACountThatOverflowsEndsTheProgram) {
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(checkedSum(most, -1), most - 1);
    EXPECT_DEATH(checkedSum(most, 1), "exceeds 64 bits");
}

TEST(Workspace, AnImportedCopyIsTheSameDesktopUnderANewIdentity) {
    WorkspaceSnapshot snapshot;
    snapshot.notes = {"a note"};
    Workspace source = Workspace::create(Uuid::random(), "Work", "square", "teal", snapshot,
                                         Instant{std::chrono::seconds{5}});
    EXPECT_EQ(source.schemaVersion, 2);
    EXPECT_EQ(source.updatedAt, source.createdAt);
    source.schemaVersion = 1;
    source.lastRestoredAt = Instant{std::chrono::seconds{6}};
    source.cleanSlate = CleanSlateMode::quit;

    const Workspace copy = source.importedCopy("Work 2", Instant{std::chrono::seconds{9}});
    EXPECT_NE(copy.id, source.id);
    EXPECT_EQ(copy, Workspace::create(copy.id, "Work 2", "square", "teal", snapshot,
                                      Instant{std::chrono::seconds{9}}));
}

TEST(Workspace, DesktopsWithOtherUuidsDifferAndShareTheirId) {
    const DesktopSnapshot a{.displayID = "D", .index = 2, .uuid = "x"};
    const DesktopSnapshot b{.displayID = "D", .index = 2, .uuid = std::nullopt};
    EXPECT_NE(a, b);
    EXPECT_EQ(a.id(), "D#desktop2");
    EXPECT_EQ(b.id(), a.id());
    EXPECT_EQ((std::unordered_set<DesktopSnapshot>{a, b, a}.size()), 2u);
}

TEST(CleanSlateMode, HasThreeStoredValuesAndNoOther) {
    for (const CleanSlateMode mode : allCleanSlateModes) EXPECT_EQ(cleanSlateMode(storedValue(mode)), mode);
    EXPECT_EQ(label(CleanSlateMode::keep), "Keep other apps");
    EXPECT_EQ(label(CleanSlateMode::hide), "Hide other apps");
    EXPECT_EQ(label(CleanSlateMode::quit), "Quit other apps");
    for (const char* other : {"", "Keep", "keep ", "close"}) EXPECT_FALSE(cleanSlateMode(other));
}

}  // namespace
}  // namespace quillo
