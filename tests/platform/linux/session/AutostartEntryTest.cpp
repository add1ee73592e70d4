// The autostart entry, from the files alone; and that what it says really starts the program.
#include <glib.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "platform/linux/AutostartEntry.hpp"
#include "platform/linux/GObjectPtr.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace quillo::x11test {
namespace {

namespace fs = std::filesystem;
using enum LoginItemStatus;

constexpr auto fileName = "app.quillo.Quillo.desktop";

std::string entry(const std::string& lines) {
    return "[Desktop Entry]\nType=Application\nName=Quillo\n" + lines + "\n";
}

class AutostartEntryTest : public testing::Test {
  protected:
    AutostartEntryTest() {
        for (const auto* folder : {"config", "own/applications", "system/applications", "bin"})
            fs::create_directories(home / folder);
        setenv("PATH", ((home / "bin").string() + ":" + path).c_str(), 1);
        program("bin/quillo");
        install("system", "quillo --quietly");
    }
    ~AutostartEntryTest() override { setenv("PATH", path.c_str(), 1); }

    /// One that leaves its arguments beside itself.
    fs::path program(const std::string& name) {
        home.write(name, "#!/bin/sh\nprintf '%s' \"$*\" > \"$0.next\" && mv \"$0.next\" \"$0.ran\"\n");
        fs::permissions(home / name, fs::perms::owner_all);
        return home / name;
    }
    void install(const std::string& data, const std::string& exec, const std::string& more = "") {
        home.write(data + "/applications/" + fileName, entry("Exec=" + exec + "\n" + more));
    }
    AutostartEntry item(const fs::path& running) {
        return AutostartEntry(disk, {.program = fs::canonical(running),
                                     .configuration = home / "config",
                                     .data = {home / "own", home / "missing", home / "system"}});
    }

    const std::string path = std::getenv("PATH");
    const std::string autostart = std::string("config/autostart/") + fileName;
    TemporaryDirectory home;
    PosixFileSystem disk;
};

TEST_F(AutostartEntryTest, IsFoundWhereTheMenuStartsThisVeryProgram) {
    program("build-tree");
    program("bin/other");
    fs::create_symlink(home / "bin/quillo", home / "bin/link");
    const struct {
        std::string own, more, running;  // Exec in the person's own data directory, none when empty
        bool found;
    } cases[] = {{"", "", "bin/quillo", true},
                 {"", "", "build-tree", false},
                 {(home / "bin/link").string(), "", "bin/quillo", true},
                 {"other", "", "bin/quillo", false},  // the person's own entry counts before the system's
                 {"other", "", "bin/other", true},
                 {"quillo", "Hidden=true", "bin/quillo", false},
                 {"not-there", "", "bin/quillo", false},
                 {"\"unfinished", "", "bin/quillo", false}};
    for (const auto& [own, more, running, found] : cases) {
        SCOPED_TRACE(testing::Message() << own << " " << more << " " << running);
        fs::remove(home / ("own/applications/" + std::string(fileName)));
        if (!own.empty()) install("own", own, more);
        auto login = item(home / running);
        EXPECT_EQ(login.status(), found ? notRegistered : notFound);
        const auto registered = login.registerItem();
        EXPECT_EQ(registered.has_value(), found);
        EXPECT_EQ(bool(login.capability()), found);
        EXPECT_EQ(fs::exists(home / autostart), found);
        if (!found) EXPECT_TRUE(registered.error().text.starts_with("Quillo is not installed here"));
        EXPECT_TRUE(login.unregisterItem());
    }
}

TEST_F(AutostartEntryTest, SaysWhatTheEntrySays) {
    program("bin/other");
    auto login = item(home / "bin/quillo");
    ASSERT_TRUE(login.registerItem());
    EXPECT_EQ(login.status(), enabled);
    const auto ours = home.read(autostart);
    const std::pair<std::string, LoginItemStatus> cases[] = {
        {ours + "Hidden=true\n", requiresApproval},
        {entry("Exec=quillo\nX-GNOME-Autostart-enabled=false"), requiresApproval},
        {entry("Exec=quillo\nX-MATE-Autostart-enabled=false"), requiresApproval},
        {entry("Hidden=true"), requiresApproval},
        {entry("Exec=quillo --hidden\nHidden=false\nX-GNOME-Autostart-enabled=true"), enabled},
        {entry("Exec=other"), notRegistered},
        {entry("Exec=/gone/quillo"), notRegistered},
        {"no entry\n", notRegistered},
        {"", notRegistered}};
    for (const auto& [bytes, status] : cases) {
        SCOPED_TRACE(bytes);
        home.write(autostart, bytes);
        EXPECT_EQ(login.status(), status);
        ASSERT_TRUE(login.registerItem());
        EXPECT_EQ(login.status(), enabled);
        EXPECT_EQ(home.read(autostart), ours);
        EXPECT_TRUE(login.unregisterItem());
        EXPECT_TRUE(login.unregisterItem());  // of nothing
        EXPECT_EQ(login.status(), notRegistered);
    }
    // As tools that manage settings files keep them.
    home.write("managed", ours);
    fs::create_symlink(home / "managed", home / autostart);
    EXPECT_EQ(login.status(), enabled);
    ASSERT_TRUE(login.unregisterItem());
    EXPECT_EQ(home.read("managed"), ours);
}

/// An installed entry for any program, quoted by others than the entry under test.
std::string foreignEntry(const std::string& program) {
    std::string exec = GText(g_shell_quote(program.c_str())).get();
    for (auto at = exec.find('%'); at != exec.npos; at = exec.find('%', at + 2)) exec.insert(at, 1, '%');
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> keys(g_key_file_new(), g_key_file_free);
    g_key_file_set_string(keys.get(), G_KEY_FILE_DESKTOP_GROUP, "Exec", exec.c_str());
    return GText(g_key_file_to_data(keys.get(), nullptr, nullptr)).get();
}

TEST_F(AutostartEntryTest, StartsTheProgramWhateverItsFolderIsNamed) {
    for (const std::string name : {"plain", "two words", "100%", "%f", "$HOME `id` \"quoted\" back\\slash",
                                   "it's;&|<>*?#()~", "ünï"}) {
        SCOPED_TRACE(name);
        const auto running = program(name);
        home.write("own/applications/" + std::string(fileName), foreignEntry(running));
        ASSERT_TRUE(item(running).registerItem());
        EXPECT_EQ(item(running).status(), enabled);
        // Its quoting is a shell's, but for the doubled percent signs.
        const std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> keys(g_key_file_new(), g_key_file_free);
        g_key_file_load_from_file(keys.get(), (home / autostart).c_str(), G_KEY_FILE_NONE, nullptr);
        std::string exec =
            GText(g_key_file_get_string(keys.get(), G_KEY_FILE_DESKTOP_GROUP, "Exec", nullptr)).get();
        for (auto at = exec.find("%%"); at != exec.npos; at = exec.find("%%", at + 1)) exec.erase(at, 1);
        const Process started({"sh", "-c", exec});
        EXPECT_TRUE(waitFor([&] { return fs::exists(running.string() + ".ran"); }));
    }
    for (const std::string name : {"a=b", "two\nlines", "\xff"}) {
        const auto running = program(name);
        home.write("own/applications/" + std::string(fileName), foreignEntry(running));
        EXPECT_FALSE(item(running).registerItem()) << name;
    }
}

TEST_F(AutostartEntryTest, OpensTheDesktopsOwnListWhereItIsInstalled) {
    program("bin/xfce4-session-settings");
    program("bin/cinnamon-settings");
    const std::array<std::string, 3> cases[] = {{"XFCE", "xfce4-session-settings", ""},
                                                {"ubuntu:X-Cinnamon", "cinnamon-settings", "startup"},
                                                {"LXDE", "", ""},
                                                {"unheard-of", "", ""}};
    for (const auto& [desktop, opens, arguments] : cases) {
        setenv("XDG_CURRENT_DESKTOP", desktop.c_str(), 1);
        auto login = item(home / "bin/quillo");
        EXPECT_EQ(login.hasSystemSettings(), !opens.empty()) << desktop;
        login.openSystemSettings();
        if (opens.empty()) continue;
        EXPECT_TRUE(waitFor([&] { return fs::exists(home / ("bin/" + opens + ".ran")); })) << desktop;
        EXPECT_EQ(home.read("bin/" + opens + ".ran"), arguments);
    }
    unsetenv("XDG_CURRENT_DESKTOP");
}

}  // namespace
}  // namespace quillo::x11test
