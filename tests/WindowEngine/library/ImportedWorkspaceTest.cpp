#include <gtest/gtest.h>

#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using samples::url;
using Addresses = std::vector<Url>;

std::vector<Workspace> library(std::initializer_list<const char*> names) {
    std::vector<Workspace> workspaces;
    for (const char* name : names) workspaces.push_back(samples::named(Uuid::random(), name));
    return workspaces;
}

TEST(ImportedWorkspace, NamesAreCountedUpIgnoringCase) {
    EXPECT_EQ(uniqueName("work", library({"Play"})), "work");
    EXPECT_EQ(uniqueName("work", library({"Work"})), "work 2");
    EXPECT_EQ(uniqueName("Work", library({"WORK", "work 2", "Work 4"})), "Work 3");
    EXPECT_EQ(uniqueName("Straße", library({"STRASSE"})), "Straße 2");
    EXPECT_EQ(uniqueName("LAST session", library({})), "LAST session 2") << "that is a session's";
    EXPECT_EQ(uniqueName("Last session (09:05)", library({})), "Last session (09:05) 2");
}

TEST(ImportedWorkspace, ContextKeepsOnlyWhatItsIntegrationOpens) {
    const Url folder = url("file:///tmp/"), page = url("https://a.example/"), loud = url("HTTP://b.example/");
    const struct {
        const char* adapter;
        Addresses dropped, kept;
    } cases[] = {
        {"finder", {page, url("file://server/share"), url("smb://server/x")}, {folder}},
        {"chromium", {folder, url("javascript:alert(1)"), url("chrome://settings")}, {loud, page}},
        {"safari", {url("data:text/html,x"), url("ftp://b/")}, {page}},
        {"unheard-of", {folder}, {page, loud}},
        {"safari", {folder}, {}},
    };
    for (const auto& c : cases) {
        Addresses all = c.kept;
        all.insert(all.begin() + !all.empty(), c.dropped.begin(), c.dropped.end());
        // A window that holds nothing any more goes; one that was empty before stays.
        WorkspaceSnapshot snapshot = samples::example().snapshot, expected = snapshot;
        snapshot.applications[0].context = {c.adapter, {{7, all, {}}, {}, {8, c.dropped, {}}}};
        expected.applications[0].context = {c.adapter, {{7, c.kept, {}}, {}}};
        if (c.kept.empty()) expected.applications[0].context->windows = {{}};
        EXPECT_EQ(cleanContext(snapshot), static_cast<std::int64_t>(2 * c.dropped.size())) << c.adapter;
        EXPECT_EQ(snapshot, expected) << c.adapter;
        snapshot.applications[0].context = {c.adapter, {{0, c.dropped, {}}}};
        cleanContext(snapshot);
        EXPECT_EQ(snapshot.applications[0].context, std::nullopt) << c.adapter;
    }
}

TEST(ImportedWorkspace, ReadsAFileAsAnIndependentCopy) {
    Workspace source = samples::example();
    AppContext& context = *source.snapshot.applications[0].context;
    context.adapter = "safari";
    const WorkspaceSnapshot clean = source.snapshot;
    context.windows[0].urls.push_back(url("file:///secret"));
    const Instant now{std::chrono::seconds{77}};
    const auto imported =
        ImportedWorkspace::read(WorkspaceCoding::encode(source).value(), library({"work"}), now);
    EXPECT_EQ(imported->droppedAddresses, 1);
    EXPECT_NE(imported->workspace.id, source.id);
    EXPECT_EQ(imported->workspace,
              Workspace::create(imported->workspace.id, "Work 2", source.icon, "teal", clean, now));
    EXPECT_EQ(ImportedWorkspace::read("{}", {}, now).error().text, "color: missing");
    source.name = " \n";
    const auto blank = ImportedWorkspace::read(WorkspaceCoding::encode(source).value(), {}, now);
    EXPECT_EQ(blank->workspace.name, "Untitled");
}

}  // namespace
}  // namespace quillo
