#include <gtest/gtest.h>

#include "WindowEngine/ImportedWorkspace.hpp"
#include "WindowEngine/WorkspaceCoding.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using samples::url;

std::vector<Workspace> library(std::initializer_list<const char*> names) {
    std::vector<Workspace> workspaces;
    for (const char* name : names) workspaces.push_back(samples::named(Uuid::random(), name));
    return workspaces;
}

TEST(ImportedWorkspace, NamesAreCountedUpIgnoringCase) {
    EXPECT_EQ(uniqueName("Work", {}), "Work");
    EXPECT_EQ(uniqueName("work", library({"Play"})), "work");
    EXPECT_EQ(uniqueName("work", library({"Work"})), "work 2");
    EXPECT_EQ(uniqueName("Work", library({"WORK", "work 2", "Work 4"})), "Work 3");
    EXPECT_EQ(uniqueName("Straße", library({"STRASSE"})), "Straße 2");
}

TEST(ImportedWorkspace, ContextKeepsOnlyWhatItsIntegrationOpens) {
    struct Case {
        const char* adapter;
        std::vector<const char*> urls;
        std::vector<const char*> kept;
    };
    const Case cases[] = {
        {"finder",
         {"file:///tmp/", "https://a.example/", "file://server/share", "smb://server/x"},
         {"file:///tmp/"}},
        {"chromium",
         {"http://a.example/", "file:///etc/passwd", "HTTPS://b.example/", "javascript:alert(1)",
          "chrome://settings"},
         {"http://a.example/", "HTTPS://b.example/"}},
        {"safari", {"data:text/html,x", "https://a.example/"}, {"https://a.example/"}},
        {"unheard-of", {"file:///x", "https://a.example/"}, {"https://a.example/"}},
    };
    for (const auto& c : cases) {
        WorkspaceSnapshot snapshot;
        snapshot.applications.resize(1);
        AppContext& context =
            snapshot.applications[0].context.emplace(AppContext{c.adapter, {{7, {}, {}}, {}}});
        for (const char* text : c.urls) context.windows[0].urls.push_back(url(text));
        EXPECT_EQ(cleanContext(snapshot), static_cast<std::int64_t>(c.urls.size() - c.kept.size()))
            << c.adapter;
        std::vector<Url> kept;
        for (const char* text : c.kept) kept.push_back(url(text));
        EXPECT_EQ(context.windows, (std::vector<ContextWindow>{{7, kept, {}}, {}}))
            << c.adapter;  // the empty one was so before
    }
}

TEST(ImportedWorkspace, WhatBecomesEmptyVanishesAndTheRestStays) {
    WorkspaceSnapshot snapshot = samples::full().snapshot;
    AppContext& context = *snapshot.applications[0].context;
    context.windows = {{0, {url("file:///a"), url("ftp://b/")}, {}}, {1, {url("https://c.example/")}, {}}};
    WorkspaceSnapshot expected = snapshot;
    expected.applications[0].context->windows.erase(expected.applications[0].context->windows.begin());
    EXPECT_EQ(cleanContext(snapshot), 2);
    EXPECT_EQ(snapshot, expected);
    context.windows = {{0, {url("file:///a")}, {}}};
    EXPECT_EQ(cleanContext(snapshot), 1);
    EXPECT_EQ(snapshot.applications[0].context, std::nullopt);
}

TEST(ImportedWorkspace, ReadsAFileAsAnIndependentCopy) {
    Workspace source = samples::full();
    source.snapshot.applications[0].context->windows[0].urls.push_back(url("file:///secret"));
    const Instant now{std::chrono::seconds{77}};
    const auto imported =
        ImportedWorkspace::read(WorkspaceCoding::encode(source).value(), library({"work"}), now);
    ASSERT_TRUE(imported);
    EXPECT_EQ(imported->droppedAddresses, 1);
    EXPECT_NE(imported->workspace.id, source.id);
    EXPECT_EQ(imported->workspace, Workspace::create(imported->workspace.id, "Work 2", "clock", "teal",
                                                     samples::full().snapshot, now));
    EXPECT_EQ(ImportedWorkspace::read("{}", {}, now).error().text, "color: missing");
}

}  // namespace
}  // namespace quillo
