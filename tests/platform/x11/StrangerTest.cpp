// What a workspace from a stranger may make happen, over real files, real menu entries and a whole restore.
#include <sys/stat.h>

#include <algorithm>
#include <fstream>

#include "WindowEngine/restore/Restore.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/platform/x11/X11Test.hpp"

namespace quillo::x11test {
namespace {

namespace fs = std::filesystem;

class StrangerTest : public X11Test {
  protected:
    StrangerTest() {
        files.write("script.txt", "touch " + (files / "RAN").string() + "\n");
        files.write("picture.png", "\x89PNG\r\n\x1a\n");
        files.write("entry.txt", "[Desktop Entry]\nType=Application\nExec=touch " + (files / "RAN").string());
        files.write("letter.txt", "text");
        fs::create_symlink("/bin/sh", files / "start");
        fs::create_directories(files / "far/below");
        fs::create_directory_symlink(files / "far/below", files / "shortcut");
        fs::copy_file(files / "letter.txt", files / "far/letter.txt");
        files.write("unlisted.desktop", "[Desktop Entry]\nType=Application\nName=x\nExec=touch " +
                                            (files / "RAN").string() + " %F\nMimeType=text/plain;\n");
        install("reader", "MimeType=text/plain;\n", "--class=Reader --title=reads %F");
        install("another reader", "", "");  // so that the program alone names neither
        entry("interpreter", "Exec=/bin/sh\nNoDisplay=true\n");
        entry("hidden", "Exec=/bin/sh %f\nNoDisplay=true\nMimeType=text/plain;application/octet-stream;\n");
        entry("quoting", "Exec=sh -c \"sh %f\"\nMimeType=text/plain;\n");
        entry("both", "Exec=sh -c \"cat '%f'\" sh %f\nMimeType=text/plain;\n");
        entry("escaping", "Exec=sh -c true\\\\ %f\nMimeType=text/plain;\n");
        entry("any", "Exec=/bin/sh %f\nNoDisplay=true\nMimeType=application/*;text/*;\n");
        files.write("script.sh", "echo\n");
    }
    void entry(const std::string& id, const std::string& lines) {
        installed.push_back(PrivateDesktop::home() / "data/applications" / (id + ".desktop"));
        std::ofstream(installed.back()) << "[Desktop Entry]\nType=Application\nName=" << id << "\n" << lines;
    }
    bool running(std::string_view identifier) {
        nextTurn();
        return desktop->applications.running(identifier).has_value();
    }
    std::vector<std::string> restore(const std::string& identifier, const std::string& location,
                                     const std::string& document, bool followsLinks) {
        ApplicationSnapshot application;
        application.name = "Saved";
        application.bundleIdentifier = identifier;
        if (!location.empty()) application.applicationURL = Url::file(location);
        application.windows.emplace_back().documentURL = Url::file(document);
        Workspace workspace;
        workspace.snapshot.applications.push_back(std::move(application));
        WindowHandleCache cache;
        DesktopAccess access{*desktop, cache};
        const auto report = run(Restore::run(
            access, workspace, {.launchTimeout = 0.5, .settleDelay = 0.1, .followsLinks = followsLinks}, {}));
        std::vector<std::string> said;
        for (const auto& item : report.items) {
            if (const auto* failed = std::get_if<RestoreReport::failed>(&item.status))
                said.push_back(failed->reason);
            if (const auto* skipped = std::get_if<RestoreReport::skipped>(&item.status))
                said.push_back(skipped->reason);
        }
        return said;
    }
    TemporaryDirectory files;
};

TEST_F(StrangerTest, RunsNothingAndIsToldWhy) {
    openWindow("no entry", {"--class", "Entryless"});
    const std::string undeclared =
        "document could not be opened: the application does not say that it opens "
        "such documents";
    const std::string runs = "document could not be opened: opening it could run a program";
    const struct {
        std::string identifier, location, document, said;
    } cases[] = {
        {"interpreter", "/bin/sh", files / "script.txt", undeclared},
        {"interpreter", "", files / "script.txt", undeclared},
        {"hidden", "", files / "script.txt", undeclared},
        {"start", files / "start", files / "script.txt", "no menu entry starts it"},
        {"sh", "/bin/sh", files / "script.txt", "no menu entry starts it"},
        {"unlisted", files / "unlisted.desktop", files / "letter.txt", "no menu entry starts it"},
        {"entryless", "", files / "letter.txt",
         "document could not be opened: the application is not installed"},
        {"quoting", "", files / "script.txt", undeclared},
        {"both", "", files / "script.txt", undeclared},
        {"escaping", "", files / "script.txt", undeclared},
        {"any", "", files / "script.txt", undeclared},
        {"reader", files / "start", files / "picture.png", undeclared},
        {"reader", "", files / "entry.txt", runs},
        {"reader", "", files / "start", runs},
        {"reader", "", "/proc/self/environ", "document could not be opened: it belongs to the system"},
        {"reader", "", files / "shortcut/../letter.txt", "document could not be opened: a link leads to it"},
        {"debian-xterm", "", files / "script.txt", undeclared},
        {"debian-xterm", "", files / "start", runs},
        {"debian-xterm", "", files / "shortcut", "document could not be opened: a link leads to it"},
    };
    for (const auto& one : cases) {
        const auto said = restore(one.identifier, one.location, one.document, false);
        EXPECT_TRUE(std::ranges::count(said, one.said) > 0)
            << one.identifier << " " << one.document << ": " << testing::PrintToString(said);
        EXPECT_FALSE(fs::exists(files / "RAN")) << one.identifier << " " << one.document;
        for (const auto& window : windows())
            EXPECT_FALSE(window.info.title.value_or("").contains('|')) << "given a document";
        for (const auto* opened : {"reader", "debian-xterm"}) {
            if (running(opened)) desktop->applications.terminate(opened);
            EXPECT_TRUE(eventually([&] { return !running(opened); }));
        }
    }
}

TEST_F(StrangerTest, WhatAPersonSavedIsOpenedAsTheFileThatWasJudged) {
    // A script that nobody may execute is a text to an editor.
    EXPECT_TRUE(desktop->applications.openable("reader", Url::file((files / "script.sh").string())));
    restore("reader", files / "start", files / "shortcut/../letter.txt", true);
    EXPECT_TRUE(
        eventually([&] { return windowTitled("reads|" + (files / "far/letter.txt").string()).has_value(); }));
    desktop->applications.terminate("reader");
    EXPECT_TRUE(eventually([&] { return !running("reader"); }));
}

}  // namespace
}  // namespace quillo::x11test
