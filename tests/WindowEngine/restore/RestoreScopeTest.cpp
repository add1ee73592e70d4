#include <gtest/gtest.h>

#include "WindowEngine/restore/RestoreScope.hpp"

namespace quillo::Restore {
namespace {

ApplicationSnapshot application(const std::string& identifier, std::size_t windows,
                                std::size_t contextWindows = 0) {
    ApplicationSnapshot result;
    result.name = identifier;
    result.bundleIdentifier = identifier;
    result.windows.resize(windows);
    if (contextWindows > 0) {
        result.context.emplace().adapter = "browser";
        result.context->windows.resize(contextWindows);
    }
    return result;
}

TEST(RestoreScope, EntriesOfOneIdentifierAreOneAndNoFileAsksWithoutEnd) {
    const std::vector<ApplicationSnapshot> manyAlone(300, application("a", 0));
    std::vector<ApplicationSnapshot> three{application("a", 60), application("b", 0, 70),
                                           application("a", 5)};
    std::vector<ApplicationSnapshot> five;
    for (const char* name : {"a", "b", "c", "d", "e", "f"}) five.push_back(application(name, 45));
    ApplicationSnapshot tabs = application("a", 2);
    for (WindowSnapshot& window : tabs.windows)
        window.tabs.emplace(30, TabSnapshot{.title = {}, .documentURL = Url::file("/x")});
    ApplicationSnapshot tab = application("a", 50);  // each window has a document beside that of its tab
    for (WindowSnapshot& window : tab.windows) {
        window.documentURL = Url::file("/y");
        window.tabs.emplace(1, TabSnapshot{.title = {}, .documentURL = Url::file("/x")});
    }
    const struct {
        std::vector<ApplicationSnapshot> saved;
        std::vector<std::size_t> windows, limited;  // of each application, without and with the limits
        std::size_t leftOut;                        // items
    } cases[] = {
        {manyAlone, {0}, {0}, 0},
        {three, {65, 0}, {50, 0}, 2},
        {five, {45, 45, 45, 45, 45, 45}, {45, 45, 45, 45, 20}, 2},
        {{tabs}, {2}, {1}, 1},
        {{tab}, {50}, {25}, 1},
    };
    const auto windowsOf = [](const RestoreScope& scope) {
        std::vector<std::size_t> counts;
        for (const auto& one : scope.snapshot.applications) counts.push_back(one.windows.size());
        return counts;
    };
    for (const auto& one : cases) {
        WorkspaceSnapshot snapshot;
        snapshot.applications = one.saved;
        EXPECT_EQ(windowsOf(scopeOf(snapshot, false)), one.windows);
        const RestoreScope limited = scopeOf(snapshot, true);
        EXPECT_EQ(windowsOf(limited), one.limited);
        EXPECT_EQ(limited.leftOut.size(), one.leftOut);
        EXPECT_EQ(exceedsLimits(snapshot), one.leftOut > 0);
        EXPECT_FALSE(exceedsLimits(limited.snapshot));
    }
}

}  // namespace
}  // namespace quillo::Restore
