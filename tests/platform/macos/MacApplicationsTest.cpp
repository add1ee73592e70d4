// Applications of a Mac over a fake workspace object: identities from processes, and what is not opened.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/macos/MacApplications.hpp"
#include "platform/macos/OpenableDocument.hpp"
#include "platform/macos/WorkspaceErrors.hpp"
#include "tests/platform/macos/fakes/FakeWorkspace.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

class MacApplicationsTest : public testing::Test {
  protected:
    template <class T>
    T run(Task<T> task) {
        Job<T> job(desktop_->executor(), std::move(task));
        desktop_->executor().runUntil([&] { return job.done(); }, 20s);
        return job.result();
    }
    static WorkspaceProcess process(ProcessID pid, std::optional<std::string> identifier,
                                    ActivationPolicy policy, std::optional<int> started,
                                    bool terminated = false) {
        return {.pid = pid,
                .identifier = std::move(identifier),
                .name = std::nullopt,
                .policy = policy,
                .location = Url::file("/Applications/" + std::to_string(pid) + ".app", true),
                .launchDate = started ? std::optional(Instant(std::chrono::seconds(*started))) : std::nullopt,
                .terminated = terminated};
    }

    Result<Url> openable(const std::filesystem::path& path) {
        return applications_.openable("org.example.editor", Url::file(path.string()));
    }

    std::unique_ptr<SimulatedDesktop> desktop_ =
        SimulatedDesktop::create(R"({"displays": [{"id": "A", "frame": [0, 0, 1440, 900]}], "applications": [
            {"identifier": "org.example.editor", "name": "Editor", "windows": [{"title": "Alpha"}]},
            {"identifier": "org.example.launcher", "running": false}]})",
                                 "scene")
            .value();
    fakes::FakeWorkspace shell_{*desktop_};
    MacApplications applications_{desktop_->executor(), shell_};
};

TEST_F(MacApplicationsTest, SeveralProcessesAreOneApplicationThatItsOldestStandsFor) {
    using enum ActivationPolicy;
    shell_.more = {process(50, "org.example.many", regular, 300),
                   process(40, "org.example.many", regular, {}),
                   process(60, "org.example.many", regular, 200),
                   process(30, "org.example.many", accessory, 1),
                   process(10, "org.example.many", prohibited, 1),
                   process(20, "org.example.many", regular, 100, true),
                   process(70, {}, prohibited, {}),
                   process(71, {}, prohibited, {})};
    EXPECT_EQ(applications_.family(40), (std::vector<ProcessID>{60, 50, 40, 30})) << "none without windows";
    EXPECT_EQ(applications_.family(71), std::vector<ProcessID>{71});
    const auto known = applications_.running(30);
    ASSERT_TRUE(known);
    EXPECT_EQ(known->pid, 60);
    EXPECT_EQ(known->bundleURL, Url::file("/Applications/60.app", true));
    EXPECT_EQ(applications_.location("org.example.many"), known->bundleURL);
    EXPECT_FALSE(applications_.running(20)) << "it has ended";
    EXPECT_EQ(applications_.running(71)->pid, 71) << "without an identifier each is alone";
    std::vector<ProcessID> listed;
    for (const auto& one : applications_.running()) listed.push_back(one.pid);
    listed.resize(3);
    EXPECT_EQ(listed, (std::vector<ProcessID>{60, 70, 71}));

    EXPECT_TRUE(applications_.terminate("org.example.many"));
    EXPECT_EQ(shell_.asked.size(), 5U) << "every living one of them";
    EXPECT_FALSE(applications_.serviceProcess("org.example.many"));
    EXPECT_TRUE(applications_.serviceProcess("com.apple.dock"));
}

TEST_F(MacApplicationsTest, ItselfAndTheTerminalItRunsInAreItsOwn) {
    using enum ActivationPolicy;
    shell_.more = {process(900, "com.example.terminal", regular, 1),
                   process(800, "com.example.other", regular, 1)};
    shell_.parents = {{getpid(), 950}, {950, 900}, {900, 1}};
    shell_.own = "app.quillo.test";
    setenv("__CFBundleIdentifier", "com.example.outer", 1);
    EXPECT_EQ(applications_.ownIdentifiers(),
              (std::vector<std::string>{"app.quillo.Quillo", "app.quillo.test", "com.example.terminal",
                                        "com.example.outer"}));
    unsetenv("__CFBundleIdentifier");
    EXPECT_EQ(applications_.ownIdentifiers().size(), 3U);
}

TEST_F(MacApplicationsTest, WhatSaysItIsAnotherApplicationIsNotIt) {
    shell_.strangers = {{"/Volumes/Gift/Editor.app", "org.example.editor"},
                        {"/Users/x/bare", "org.example.none"}};
    EXPECT_FALSE(run(applications_.launch(Url::file("/Volumes/Gift/Editor.app"), {})));
    shell_.unpacked.emplace("org.example.gift", Url::file("/Users/x/Downloads/Gift.app", true));
    EXPECT_EQ(applications_.location("org.example.gift"), std::nullopt)
        << "known to the system, not installed";
    EXPECT_EQ(applications_.identifierAt(Url::file("/Volumes/Gift/Editor.app")), std::nullopt);
    EXPECT_EQ(applications_.identifierAt(Url::file("/Users/x/bare")), std::nullopt);
    const Url installed = applications_.location("org.example.editor").value();
    EXPECT_EQ(applications_.identifierAt(Url::parse(installed.string() + "/").value()), "org.example.editor");
}

TEST_F(MacApplicationsTest, ARefusalIsSaidInWordsWithoutNames) {
    using Causes = std::vector<WorkspaceError::Cause>;
    const struct {
        Causes causes;
        ErrorKind kind;
        int code;
        std::string_view part;
    } cases[] = {
        {{{"NSCocoaErrorDomain", 256}, {"NSOSStatusErrorDomain", -10827}},
         ErrorKind::refused,
         -10827,
         "damaged"},
        {{{"NSCocoaErrorDomain", 260}, {"NSPOSIXErrorDomain", 2}}, ErrorKind::notFound, 2, "not there"},
        {{{"NSOSStatusErrorDomain", -128}, {"Unknown", 9}}, ErrorKind::refused, -128, "canceled"},
        {{{"NSPOSIXErrorDomain", -128}}, ErrorKind::refused, -128, "(error -128)"},
    };
    const Url location = applications_.location("org.example.launcher").value();
    for (const auto& one : cases) {
        shell_.refusal = WorkspaceError{one.causes};
        const auto result = run(applications_.launch(location, {}));
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind, one.kind) << one.part;
        EXPECT_EQ(result.error().code, one.code);
        EXPECT_NE(result.error().text.find(one.part), std::string::npos) << result.error().text;
    }
    shell_.refusal.reset();
    shell_.dropsAnswers = true;
    EXPECT_FALSE(run(applications_.launch(location, {}))) << "no answer will ever come";
    EXPECT_FALSE(run(applications_.launch(Url::parse("https://example.org/").value(), {})));
}

TEST_F(MacApplicationsTest, OpensOnlyWhatTheDiskAndTheSystemCallHarmless) {
    const auto root = std::filesystem::path(testing::TempDir()) / ("openable" + std::to_string(getpid()));
    std::filesystem::create_directories(root / "Letter.rtfd");
    std::filesystem::create_directories(root / "Program/Contents/MacOS");
    std::filesystem::create_directories(root / "Do.workflow");
    std::filesystem::create_directories(root / "Unknown");
    const DocumentFacts plain{
        .isApplication = false, .isAlias = false, .types = {"public.text", "public.data"}};
    const auto typed = [&](std::string type) {
        return DocumentFacts{
            .isApplication = false, .isAlias = false, .types = {"public.data", std::move(type)}};
    };
    DocumentFacts application = plain, alias = plain;
    application.isApplication = true;
    alias.isAlias = true;
    const struct {
        const char* name;
        DocumentFacts facts;
        bool opens;
    } cases[] = {
        {"note.txt", plain, true},
        {"Letter.rtfd", plain, true},
        {"link", plain, true},
        {"run.command", plain, false},
        {"Settings.terminal", plain, false},
        {"Do.workflow", plain, false},
        {"installer", typed("com.apple.installer-package-archive"), false},
        {"disguised", typed("com.apple.applescript.script"), false},
        {"shortcut", typed("com.apple.internet-location"), false},
        {"application", application, false},
        {"alias", alias, false},
        {"Program", plain, false},
    };
    for (const auto& one : cases) {
        const auto path = root / one.name;
        if (std::string_view(one.name) == "link") {
            std::filesystem::create_symlink(root / "note.txt", path);
        } else if (!std::filesystem::exists(path)) {
            std::ofstream(path) << "text";
        }
        if (std::string_view(one.name) != "link") shell_.documents[path.string()] = one.facts;
        EXPECT_EQ(openable(path).has_value(), one.opens) << one.name;
    }
    EXPECT_FALSE(openable(root / "Unknown")) << "the system says nothing of it";
    shell_.onlyOpener[(root / "note.txt").string()] = "org.example.launcher";
    EXPECT_FALSE(openable(root / "note.txt")) << "the editor does not say that it opens it";
    std::filesystem::remove_all(root);
}

}  // namespace
}  // namespace quillo
