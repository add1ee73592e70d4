#include "platform/linux/DesktopEntries.hpp"

#include <algorithm>
#include <array>
#include <chrono>

#include "WindowEngine/support/Text.hpp"
#include "platform/linux/ContentTypes.hpp"
#include "platform/linux/GObjectPtr.hpp"
#include "platform/linux/Terminals.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;

std::string orEmpty(const char* text) {
    return text ? text : "";
}

/// Where the program of an Exec line lies. Programs that only start others say nothing about windows.
std::string resolvedProgram(const char* executable) {
    static constexpr std::array<std::string_view, 4> starters{"env", "sh", "bash", "flatpak"};
    if (!executable) return {};
    const GText found(g_find_program_in_path(executable));
    if (!found) return {};
    const fs::path path(found.get());
    if (std::ranges::find(starters, path.filename().string()) != starters.end()) return {};
    std::error_code error;
    const auto real = fs::canonical(path, error);
    return error ? path.string() : real.string();
}

std::vector<fs::path> searchOrder() {
    std::vector<fs::path> roots{fs::path(g_get_user_data_dir()) / "applications"};
    for (const auto* directory = g_get_system_data_dirs(); *directory; ++directory) {
        roots.push_back(fs::path(*directory) / "applications");
    }
    return roots;
}

bool isFieldForDocuments(std::string_view word) {
    return word == "%f" || word == "%F" || word == "%u" || word == "%U";
}

/// The words of an Exec line as they are written, quotation marks and all.
std::vector<std::string> wordsOf(std::string_view command) {
    std::vector<std::string> words(1);
    char quote = 0;
    for (std::size_t i = 0; i < command.size(); ++i) {
        const char c = command[i];
        if (c == '\\' && i + 1 < command.size()) {
            words.back() += c;
            words.back() += command[++i];
            continue;
        }
        if (quote == 0 && (c == ' ' || c == '\t')) {
            if (!words.back().empty()) words.emplace_back();
            continue;
        }
        if (c == quote) {
            quote = 0;
        } else if (quote == 0 && (c == '"' || c == '\'')) {
            quote = c;
        }
        words.back() += c;
    }
    if (words.back().empty()) words.pop_back();
    return words;
}

std::string commandOf(std::string_view execLine) {
    std::string command;
    for (const auto& word : wordsOf(execLine)) {
        const bool isField = word.size() == 2 && word.front() == '%';
        if (!isField) command += (command.empty() ? "" : " ") + word;
    }
    return command;
}

/// What entries of one program have in common whatever their options; empty where the program is not known.
std::string programAndArguments(const DesktopEntry& entry) {
    std::string result = entry.program;
    if (result.empty()) return result;
    const auto words = wordsOf(entry.command);
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (!words[i].starts_with('-')) result += " " + words[i];
    }
    return result;
}

/// What is handed over must stand as a word of its own or as the end of one ("--open=%f"), wherever it is
/// handed over, and never within quotation marks or beside what escapes: there a shell would read its name.
bool takesDocuments(GAppInfo* app) {
    if (!g_app_info_supports_uris(app) && !g_app_info_supports_files(app)) return false;
    bool takes = false;
    for (const std::string& word : wordsOf(orEmpty(g_app_info_get_commandline(app)))) {
        const bool holdsField = std::ranges::any_of(std::array{"%f", "%F", "%u", "%U"},
                                                    [&](const char* field) { return word.contains(field); });
        if (!holdsField) continue;
        const std::string_view end = std::string_view(word).substr(word.size() - 2);
        if (!isFieldForDocuments(end) || word.find_first_of("\"'\\") != std::string::npos) return false;
        takes = true;
    }
    return takes;
}

char documentField(GAppInfo* app) {
    for (const std::string& word : wordsOf(orEmpty(g_app_info_get_commandline(app)))) {
        if (word.size() >= 2 && isFieldForDocuments(std::string_view(word).substr(word.size() - 2)))
            return word.back();
    }
    return 0;
}

/// Types that no program reads as its own language. An entry that no menu shows is given only these: so do
/// interpreters, engines of games and what connects somewhere register themselves.
bool isOnlyLookedAt(std::string_view type) {
    static constexpr std::array<std::string_view, 10> beginnings{
        "image/",
        "audio/",
        "video/",
        "font/",
        folderType,
        "application/pdf",
        "application/epub+zip",
        "application/vnd.oasis.opendocument.",
        "application/vnd.openxmlformats-officedocument.",
        "application/vnd.comicbook",
    };
    return std::ranges::any_of(beginnings, [&](std::string_view one) { return type.starts_with(one); });
}

OpenedKinds kindsOf(GAppInfo* app, const std::vector<std::string>& types) {
    return {.documents = takesDocuments(app),
            .folders = std::ranges::find(types, folderType) != types.end(),
            .pages = std::ranges::find(types, "x-scheme-handler/http") != types.end()};
}

/// Keys that stand for "one more window, empty and not private", without case, hyphens and underscores, the
/// best first.
std::string newWindowActionOf(GDesktopAppInfo* info) {
    static constexpr std::array<std::string_view, 2> meanings{"newwindow", "newemptywindow"};
    for (const std::string_view meaning : meanings) {
        for (const auto* action = g_desktop_app_info_list_actions(info); action && *action; ++action) {
            std::string key = text::lowercase(*action);
            std::erase_if(key, [](char c) { return c == '-' || c == '_'; });
            if (key == meaning) return *action;
        }
    }
    return {};
}

bool opensOneWindow(GDesktopAppInfo* info) {
    return g_desktop_app_info_get_boolean(info, "SingleMainWindow") ||
           g_desktop_app_info_get_boolean(info, "X-GNOME-SingleWindow");
}

fs::file_time_type changeTime(const fs::path& path) {
    std::error_code error;
    const auto time = fs::last_write_time(path, error);
    return error ? fs::file_time_type::min() : time;
}

}  // namespace

std::vector<std::string> declaredTypes(GDesktopAppInfo* entry) {
    GAppInfo* const app = G_APP_INFO(entry);
    if (!takesDocuments(app)) return {};
    std::vector<std::string> types;
    const bool shown = !g_desktop_app_info_get_nodisplay(entry);
    for (const auto* type = g_app_info_get_supported_types(app); type && *type; ++type) {
        if (shown || isOnlyLookedAt(*type)) types.emplace_back(*type);
    }
    return types;
}

std::vector<std::string> commandWords(const std::string& command) {
    gint count = 0;
    gchar** words = nullptr;
    if (!g_shell_parse_argv(command.c_str(), &count, &words, nullptr)) return {};
    const std::vector<std::string> result(words, words + count);
    g_strfreev(words);
    return result;
}

DesktopEntries::Directory DesktopEntries::lookedAt(const fs::path& path) {
    constexpr std::chrono::milliseconds clockStep(50);  // file systems stamp with the kernel's tick
    const auto changed = changeTime(path);
    return {path, changed, changed < fs::file_time_type::clock::now() - clockStep};
}

bool DesktopEntries::isCurrent() const {
    return !directories_.empty() && std::ranges::all_of(directories_, [](const Directory& directory) {
        return directory.settled && changeTime(directory.path) == directory.changed;
    });
}

void DesktopEntries::refresh() {
    if (isCurrent()) return;
    *this = {};
    for (const auto& root : searchOrder()) readDirectory(root, root);
    // What menus show may leave folders to another entry of its program.
    for (DesktopEntry& entry : entries_) {
        if (!entry.opens.shells && !entry.program.empty() &&
            folderOpeners_.contains(programAndArguments(entry)))
            entry.opens.documents = entry.opens.folders = true;
    }
}

void DesktopEntries::readDirectory(const fs::path& root, const fs::path& directory) {
    directories_.push_back(lookedAt(directory));
    std::error_code error;
    std::vector<fs::path> files, below;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_directory(ignored)) {
            below.push_back(entry->path());
        } else if (entry->path().extension() == ".desktop") {
            files.push_back(entry->path());
        }
    }
    std::ranges::sort(files);
    for (const auto& file : files) add(root, file);
    for (const auto& folder : below) readDirectory(root, folder);
}

void DesktopEntries::add(const fs::path& root, const fs::path& file) {
    auto id = file.lexically_relative(root).string();
    id.resize(id.size() - std::string_view(".desktop").size());
    std::ranges::replace(id, '/', '-');  // as the standard names files in sub-folders
    if (byId_.contains(id)) return;
    const GObjectPtr<GDesktopAppInfo> info(g_desktop_app_info_new_from_filename(file.c_str()));
    if (!info) return;
    if (g_desktop_app_info_get_is_hidden(info.get())) {
        byId_[id];  // stands for "removed", also of directories that come later
        return;
    }
    GAppInfo* app = G_APP_INFO(info.get());
    auto types = declaredTypes(info.get());
    const auto opens = kindsOf(app, types);
    DesktopEntry entry{.id = id,
                       .name = orEmpty(g_app_info_get_name(app)),
                       .file = file.string(),
                       .windowClass = orEmpty(g_desktop_app_info_get_startup_wm_class(info.get())),
                       .program = resolvedProgram(g_app_info_get_executable(app)),
                       .command = commandOf(orEmpty(g_app_info_get_commandline(app))),
                       .shown = !g_desktop_app_info_get_nodisplay(info.get()),
                       .types = std::move(types),
                       .opens = opens,
                       .field = opens.documents ? documentField(app) : '\0',
                       .newWindowAction = newWindowActionOf(info.get()),
                       .singleWindow = opensOneWindow(info.get()),
                       .folderOption = std::nullopt};
    if (const auto option = Terminals::folderOption(entry.program, entry.command))
        entry.folderOption = *option;
    entry.opens.shells = entry.folderOption.has_value();
    const auto index = entries_.size();
    byId_[id].push_back(index);
    byLowerId_[text::lowercase(id)].push_back(index);
    if (!entry.windowClass.empty()) byWindowClass_[text::lowercase(entry.windowClass)].push_back(index);
    if (!entry.command.empty()) byCommand_[entry.command].push_back(index);
    if (!entry.program.empty() && entry.shown) byProgram_[entry.program].push_back(index);
    if (opens.folders) folderOpeners_[programAndArguments(entry)].push_back(index);
    entries_.push_back(std::move(entry));
}

const DesktopEntry* DesktopEntries::best(const Index& index, const std::string& key) const {
    const auto found = index.find(key);
    if (found == index.end() || found->second.empty()) return nullptr;
    const auto shown = std::ranges::find_if(found->second, [&](std::size_t i) { return entries_[i].shown; });
    return &entries_[shown != found->second.end() ? *shown : found->second.front()];
}

const DesktopEntry* DesktopEntries::withId(std::string_view id) const {
    return best(byId_, std::string(id));
}

const DesktopEntry* DesktopEntries::withIdIgnoringCase(std::string_view id) const {
    return best(byLowerId_, text::lowercase(id));
}

const DesktopEntry* DesktopEntries::withWindowClass(std::string_view windowClass) const {
    return best(byWindowClass_, text::lowercase(windowClass));
}

const DesktopEntry* DesktopEntries::withProgram(const std::string& program) const {
    const auto found = byProgram_.find(program);
    if (found == byProgram_.end()) return nullptr;
    if (found->second.size() == 1) return &entries_[found->second.front()];
    const auto base = fs::path(program).filename().string();
    const auto* named = withIdIgnoringCase(base);
    return named && named->program == program ? named : nullptr;
}

const DesktopEntry* DesktopEntries::opener(const DesktopEntry& application, std::string_view type) const {
    if (ContentTypes::declares(application.types, type)) return &application;
    if (const auto same = byCommand_.find(application.command); same != byCommand_.end()) {
        const auto found = std::ranges::find_if(
            same->second, [&](std::size_t i) { return ContentTypes::declares(entries_[i].types, type); });
        if (found != same->second.end()) return &entries_[*found];
    }
    if (type != folderType || application.program.empty()) return nullptr;
    return best(folderOpeners_, programAndArguments(application));
}

const DesktopEntry* DesktopEntries::withFile(const std::string& file) const {
    const auto found = std::ranges::find(entries_, file, &DesktopEntry::file);
    return found == entries_.end() ? nullptr : &*found;
}

}  // namespace quillo
