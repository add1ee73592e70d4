#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/posix/DocumentOnDisk.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class DocumentOnDiskTest : public ::testing::Test {
  protected:
    DocumentOnDiskTest() {
        for (const auto* name : {"letter.txt", "script", "a.sh", "evil.desktop", "Evil.DeskTop", "x.jar",
                                 "a%2Etxt", "100%.txt", "caf\u00e9 #1?.txt", "app", ".desktop"})
            directory.write(name, "#!/bin/sh\n");
        fs::permissions(directory / "script", fs::perms(0744));
        directory.write("program",
                        "\x7f"
                        "ELF\x02\x01\x01");
        directory.write("windows", "MZ\x90\0"s);
        directory.write("MZ.txt", "MZ is a place");
        directory.write("entry.txt", "\xef\xbb\xbf\n# a note\n  [Desktop Entry]\nExec=x\n");
        directory.write("about entries.txt", "A file begins with\n[Desktop Entry]\n");
        fs::create_directories(directory / "far/below");
        fs::create_directory_symlink(directory / "far/below", directory / "shortcut");
        directory.write("far/letter.txt", "the other one");
        directory.write("empty", "");
        for (const auto* folder : {"folder", "x.app", "X.APP", "example.com", "x.app/Contents"})
            fs::create_directory(directory / folder);
        directory.write("x.app/Contents/readme.txt", "x");
        ::mkfifo((directory / "pipe").c_str(), 0600);
        const auto link = [&](const fs::path& to, const std::string& name) {
            fs::create_symlink(to, directory / name);
        };
        link("/bin/sh", "shell.txt");
        link("letter.txt", "short");
        link("evil.desktop", "harmless.txt");
        link("letter.txt", "letter.desktop");
        link("x.app", "documents");
        link("pipe", "to-pipe.txt");
        link("nothing", "dangling.txt");
        link("round.txt", "round.txt");
    }
    bool opens(const std::string& rest) {
        return openableDocument(*Url::parse("file://" + directory.path().string() + "/" + rest)).has_value();
    }
    TemporaryDirectory directory;
};

TEST_F(DocumentOnDiskTest, OnlyWhatOpeningCannotRun) {
    for (const std::string rest :
         {"letter.txt", "letter.txt/", "short", "a.sh", "empty", "MZ.txt", "folder", "folder/", "example.com",
          "folder/../letter.txt", "a%252Etxt", "100%25.txt", "caf%C3%A9%20%231%3F.txt", "app",
          "x.app/Contents/readme.txt", "x.app/Contents", "about%20entries.txt"})
        EXPECT_TRUE(opens(rest)) << rest;
    for (const std::string rest : {"script",          "evil.desktop", "evil%2Edesktop",
                                   "%65vil.desktop",  "Evil.DeskTop", ".desktop",
                                   "x.jar",           "program",      "windows",
                                   "x.app",           "x.app/",       "x.app//",
                                   "folder/../x.app", "X.APP",        "x%2Eapp",
                                   "shell.txt",       "harmless.txt", "letter.desktop",
                                   "documents",       "pipe",         "to-pipe.txt",
                                   "dangling.txt",    "round.txt",    "missing.txt",
                                   "letter.txt?x",    "letter.txt#x", "missing%00/letter.txt",
                                   "letter.txt%00",   "letter.txt%",  "a%2etxt",
                                   "entry.txt"})
        EXPECT_FALSE(opens(rest)) << rest;
    // What is judged is what is opened: a reader that drops ".." by itself would come to another file.
    const auto judged = openableDocument(Url::file((directory / "shortcut/../letter.txt").string()));
    EXPECT_EQ(judged.value(), Url::file(fs::canonical(directory / "far/letter.txt").string()));
}

TEST(DocumentOnDisk, AnythingButAFileOfThisMachineIsRefused) {
    for (const auto* address :
         {"file:///dev/null", "file:///dev/zero", "file:///dev/tty", "file:///bin/sh",
          "file://elsewhere/etc/passwd", "file:etc/passwd", "https://example.org/etc/passwd",
          "javascript:alert(1)", "smb://host/share/a.txt", "file://x@localhost/etc/passwd",
          "file://:80/etc/passwd", "file:///proc/self/environ", "file:///sys/kernel", "file:///dev/shm",
          "file:///tmp/../net/elsewhere"})
        EXPECT_FALSE(openableDocument(*Url::parse(address))) << address;
    EXPECT_TRUE(openableDocument(*Url::parse("file://localhost/etc/passwd")));
}

}  // namespace
}  // namespace quillo
