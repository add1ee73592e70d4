// What a person leaves out of a saved workspace comes back as it was.
#include <gtest/gtest.h>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using CaptureFilter::contextURLKey;
using CaptureFilter::windowKey;

WindowSnapshot window(std::int64_t index) {
    WindowSnapshot made;
    made.index = index;
    made.title = "Window " + std::to_string(index);
    return made;
}

ApplicationSnapshot application(const char* identifier, std::int64_t windows) {
    ApplicationSnapshot made{identifier, identifier, {}, {}, {}};
    for (std::int64_t i = 0; i < windows; ++i) made.windows.push_back(window(i));
    return made;
}

/// Editor with two windows, browser with three tabs in two windows, mail.
WorkspaceSnapshot desk() {
    WorkspaceSnapshot snapshot;
    snapshot.applications = {application("editor", 2), application("browser", 2), application("mail", 1)};
    const auto tab = [](const char* name) {
        return samples::url("https://" + std::string(name) + ".example/");
    };
    snapshot.applications[1].context =
        AppContext{"chromium", {{0, {tab("a"), tab("b")}, 7}, {1, {tab("c")}, {}}}};
    return snapshot;
}

Workspace storedAndRead(WorkspaceSnapshot snapshot) {
    Workspace workspace = samples::named(Uuid::random(), "Work");
    workspace.snapshot = std::move(snapshot);
    return WorkspaceCoding::decode(WorkspaceCoding::encode(workspace).value()).value();
}

TEST(LeftOut, IsNotRestoredOrCountedAndComesBackToItsPlace) {
    const struct {
        LeftOut::Exclusions excluded;
        std::int64_t applications, windows, tabs;
    } cases[] = {
        {{}, 3, 5, 3},
        {{.apps = {"editor"}, .windows = {}, .contextURLs = {}}, 2, 3, 3},
        {{.apps = {"editor", "browser", "mail"}, .windows = {}, .contextURLs = {}}, 0, 0, 0},
        {{.apps = {}, .windows = {windowKey("browser", 0)}, .contextURLs = {}}, 3, 4, 1},
        {{.apps = {}, .windows = {}, .contextURLs = {contextURLKey("browser", 0, 0)}}, 3, 5, 2},
        {{.apps = {"browser"},
          .windows = {windowKey("browser", 0), windowKey("editor", 1)},
          .contextURLs = {contextURLKey("browser", 0, 1), contextURLKey("browser", 1, 0)}},
         2,
         2,
         0},
    };
    for (const auto& row : cases) {
        const LeftOut::Whole whole{desk(), row.excluded};
        const Workspace stored = storedAndRead(LeftOut::without(whole));
        const WorkspaceSnapshot& kept = stored.snapshot;
        EXPECT_EQ(static_cast<std::int64_t>(kept.applications.size()), row.applications);
        EXPECT_EQ(kept.windowCount(), row.windows);
        EXPECT_EQ(kept.tabCount(), row.tabs);
        EXPECT_EQ(kept.leftOut.has_value(), !row.excluded.empty());
        EXPECT_EQ(LeftOut::whole(kept), whole);
        EXPECT_EQ(stored.importedCopy("Copy", {}).snapshot, kept);  // a duplicate has it too
    }
}

TEST(LeftOut, StaysLeftOutWhenTheWorkspaceIsSavedAgain) {
    LeftOut::Whole before{desk(), {}};
    before.excluded = {.apps = {"mail"},
                       .windows = {windowKey("editor", 1)},
                       .contextURLs = {contextURLKey("browser", 0, 1)}};
    const WorkspaceSnapshot saved = LeftOut::without(before);
    WorkspaceSnapshot again = desk();
    LeftOut::Policy policy{[](const std::string&) { return false; }, {}};
    again.applications[0].windows[0].index = 4;  // numbered anew: window 1 is known by its title
    EXPECT_EQ(LeftOut::recognised(saved, again), before.excluded);
    const auto update = [&](const LeftOut::Exclusions& excluded) {
        return LeftOut::carriedOver(
            saved, CaptureFilter::apply(again, excluded.apps, excluded.windows, excluded.contextURLs),
            policy);
    };
    EXPECT_EQ(update(before.excluded).leftOut, saved.leftOut);
    EXPECT_EQ(update({}).leftOut, std::nullopt);  // taken in again in the review
    again.applications.resize(1);                 // what does not run now can still come back
    EXPECT_EQ(update({}).leftOut->size(), 2U);
    // An application that went meanwhile does not come back with nothing because one of its windows is kept.
    WorkspaceSnapshot without = saved;
    std::erase_if(without.applications,
                  [](const ApplicationSnapshot& one) { return one.bundleIdentifier == "editor"; });
    EXPECT_EQ(LeftOut::without(LeftOut::whole(without)).applications, without.applications);
    EXPECT_TRUE(LeftOut::recognised(desk(), desk()).empty());
    // What the person keeps out of every workspace by now is not kept in this one either.
    policy = {[](const std::string& identifier) { return identifier == "mail"; }, {"b.example"}};
    EXPECT_EQ(update({}).leftOut, std::nullopt);
}

TEST(LeftOut, OfAStrangersFileIsCleanedAsTheRestIs) {
    WorkspaceSnapshot snapshot = desk();
    snapshot.applications[1].context->windows[1].urls = {samples::url("javascript:alert(1)")};
    Workspace stored = storedAndRead(LeftOut::without(
        {snapshot, {.apps = {}, .windows = {}, .contextURLs = {contextURLKey("browser", 1, 0)}}}));
    EXPECT_EQ(cleanContext(stored.snapshot), 1);
    EXPECT_EQ(stored.snapshot.leftOut, std::nullopt);
}

}  // namespace
}  // namespace quillo
