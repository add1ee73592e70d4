#include "platform/linux/AutostartEntry.hpp"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

#include "WindowEngine/library/AtomicFile.hpp"
#include "platform/linux/GObjectPtr.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;

constexpr auto fileName = "app.quillo.Quillo.desktop";
constexpr auto group = G_KEY_FILE_DESKTOP_GROUP;

struct GStringsFree {
    void operator()(char** strings) const noexcept { g_strfreev(strings); }
};
using GStrings = std::unique_ptr<char*, GStringsFree>;

/// A desktop entry's keys.
class KeyFile {
  public:
    static std::optional<KeyFile> parse(const std::string& bytes) {
        KeyFile file;
        if (!g_key_file_load_from_data(file.keys_.get(), bytes.data(), bytes.size(), G_KEY_FILE_NONE,
                                       nullptr)) {
            return std::nullopt;
        }
        return file;
    }
    KeyFile() : keys_(g_key_file_new()) {}

    bool is(const char* key, bool value) const {
        GError* error = nullptr;
        const bool found = g_key_file_get_boolean(keys_.get(), group, key, &error) != 0;
        return !GErrorPtr(error) && found == value;
    }
    std::string text(const char* key) const {
        const GText value(g_key_file_get_string(keys_.get(), group, key, nullptr));
        return value ? value.get() : "";
    }
    void set(const char* key, const std::string& value) {
        g_key_file_set_string(keys_.get(), group, key, value.c_str());
    }
    std::string bytes() const {
        gsize length = 0;
        const GText text(g_key_file_to_data(keys_.get(), &length, nullptr));
        return {text.get(), length};
    }

  private:
    struct Free {
        void operator()(GKeyFile* file) const noexcept { g_key_file_free(file); }
    };
    std::unique_ptr<GKeyFile, Free> keys_;
};

/// The program that an entry starts, found through PATH, links not resolved.
std::optional<fs::path> programOf(const KeyFile& entry) {
    int count = 0;
    char** words = nullptr;
    if (!g_shell_parse_argv(entry.text("Exec").c_str(), &count, &words, nullptr)) return std::nullopt;
    const GStrings owned(words);
    std::string program = words[0];
    for (auto at = program.find("%%"); at != std::string::npos; at = program.find("%%", at + 1))
        program.erase(at, 1);
    const GText found(g_find_program_in_path(program.c_str()));
    return found ? std::optional<fs::path>(found.get()) : std::nullopt;
}

bool isSwitchedOff(const KeyFile& entry) {
    return entry.is("Hidden", true) || entry.is("X-GNOME-Autostart-enabled", false) ||
           entry.is("X-MATE-Autostart-enabled", false);
}

/// What no Exec line can hold: control characters, bytes that are no text, and, for a program, "=".
bool fitsExecLine(const std::string& program) {
    const bool isPlain = std::ranges::none_of(
        program, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == '\x7f' || c == '='; });
    return isPlain && g_utf8_validate(program.data(), static_cast<gssize>(program.size()), nullptr) != 0;
}

std::string entryFor(const fs::path& program) {
    KeyFile entry;
    entry.set("Type", "Application");
    entry.set("Name", "Quillo");
    entry.set("Comment", "Keeps your desktops at hand");
    entry.set("Exec", AutostartEntry::execArgument(program.string()) + " --background");
    entry.set("Icon", "app.quillo.Quillo");
    entry.set("Terminal", "false");
    entry.set("X-GNOME-Autostart-enabled", "true");
    return entry.bytes();
}

struct SettingsProgram {
    const char* desktop;  // as XDG_CURRENT_DESKTOP names it
    const char* program;
    const char* argument;
};
constexpr std::array settingsPrograms{
    SettingsProgram{"GNOME", "gnome-tweaks", nullptr},
    SettingsProgram{"XFCE", "xfce4-session-settings", nullptr},
    SettingsProgram{"KDE", "systemsettings", "kcm_autostart"},
    SettingsProgram{"LXQt", "lxqt-config-session", nullptr},
    SettingsProgram{"MATE", "mate-session-properties", nullptr},
    SettingsProgram{"X-Cinnamon", "cinnamon-settings", "startup"},
    SettingsProgram{"LXDE", "lxsession-edit", nullptr},
};

bool isCurrentDesktop(std::string_view desktop) {
    const char* names = std::getenv("XDG_CURRENT_DESKTOP");
    const std::string all = std::string(":") + (names ? names : "") + ":";
    return all.contains(":" + std::string(desktop) + ":");
}

/// Of the desktop that runs, where it is installed; else null.
const SettingsProgram* currentSettingsProgram() {
    const auto* const found = std::ranges::find_if(settingsPrograms, [](const SettingsProgram& settings) {
        return isCurrentDesktop(settings.desktop) && GText(g_find_program_in_path(settings.program));
    });
    return found != settingsPrograms.end() ? found : nullptr;
}

fs::path runningProgram() {
    std::error_code error;
    std::string path = fs::read_symlink("/proc/self/exe", error).string();
    // An upgrade has replaced the file under the running program: its place is what counts.
    constexpr std::string_view replaced = " (deleted)";
    if (path.ends_with(replaced)) path.resize(path.size() - replaced.size());
    return path;
}

}  // namespace

AutostartEntry::Places AutostartEntry::Places::find() {
    Places places{.program = runningProgram(),
                  .configuration = g_get_user_config_dir(),
                  .data = {Path(g_get_user_data_dir())}};
    for (const auto* directory = g_get_system_data_dirs(); *directory; ++directory)
        places.data.emplace_back(*directory);
    return places;
}

AutostartEntry::AutostartEntry(FileSystem& files, Places places)
    : files_(files), places_(std::move(places)), entry_(places_.configuration / "autostart" / fileName) {}

std::string AutostartEntry::execArgument(std::string_view argument) {
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    std::string quoted;
    for (const char c : argument) {
        if (std::string_view("\"`$\\").contains(c)) quoted += '\\';
        quoted += c;
        if (c == '%') quoted += c;
    }
    const bool isPlain = argument.find_first_of(reserved) == argument.npos && !argument.empty();
    return isPlain ? quoted : '"' + quoted + '"';
}

std::optional<std::string> AutostartEntry::read(const Path& file) const {
    std::error_code error;
    const auto real = fs::canonical(file, error);
    if (error) return std::nullopt;
    auto bytes = files_.read(real);
    return bytes ? std::optional(*std::move(bytes)) : std::nullopt;
}

bool AutostartEntry::isThisProgram(const std::optional<Path>& program) const {
    std::error_code error;
    return program && fs::canonical(*program, error) == places_.program;
}

std::optional<AutostartEntry::Path> AutostartEntry::installedProgram() const {
    for (const auto& directory : places_.data) {
        const auto file = directory / "applications" / fileName;
        if (!files_.exists(file)) continue;
        const auto bytes = read(file);
        const auto entry = bytes ? KeyFile::parse(*bytes) : std::nullopt;
        if (!entry || entry->is("Hidden", true)) return std::nullopt;  // also hides those that come later
        auto program = programOf(*entry);
        return isThisProgram(program) ? program : std::nullopt;
    }
    return std::nullopt;
}

Capability AutostartEntry::capability() const {
    if (installedProgram()) return Capability::available();
    return Capability::unavailable(
        "Quillo is not installed here, so it can't be opened at login. Install its package to switch this "
        "on.");
}

LoginItemStatus AutostartEntry::status() const {
    if (!installedProgram()) return LoginItemStatus::notFound;
    const auto bytes = read(entry_);
    const auto entry = bytes ? KeyFile::parse(*bytes) : std::nullopt;
    if (!entry) return LoginItemStatus::notRegistered;
    if (isSwitchedOff(*entry)) return LoginItemStatus::requiresApproval;
    return isThisProgram(programOf(*entry)) ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
}

Result<void> AutostartEntry::registerItem() {
    const auto program = installedProgram();
    if (!program) {
        return fail(ErrorKind::unavailable, capability().reason());
    }
    if (!fitsExecLine(program->string())) {
        return fail(ErrorKind::unavailable,
                    "the name of the folder that Quillo is installed in has characters that no startup "
                    "entry can hold");
    }
    if (!files_.exists(entry_.parent_path())) {  // one that is there is shared with others, with its mode
        if (auto made = files_.createDirectories(entry_.parent_path()); !made) return made;
    }
    return writeAtomically(files_, entry_, entryFor(*program));
}

Result<void> AutostartEntry::unregisterItem() {
    auto removed = files_.remove(entry_);
    if (!removed && removed.error().kind == ErrorKind::notFound) return {};
    return removed ? files_.syncDirectory(entry_.parent_path()) : removed;
}

bool AutostartEntry::hasSystemSettings() const {
    return currentSettingsProgram() != nullptr;
}

void AutostartEntry::openSystemSettings() {
    const SettingsProgram* const settings = currentSettingsProgram();
    if (!settings) return;
    std::array<const char*, 3> command{settings->program, settings->argument, nullptr};
    constexpr auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                                    G_SPAWN_STDERR_TO_DEV_NULL);
    g_spawn_async(nullptr, const_cast<char**>(command.data()), nullptr, flags, nullptr, nullptr, nullptr,
                  nullptr);
}

}  // namespace quillo
