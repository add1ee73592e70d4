// The installed applications, as their .desktop files describe them.
#pragma once
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillo::x11 {

struct OpenedKinds {
    bool documents = false;
    bool folders = false;  // a file manager among others
    bool pages = false;    // a browser
};

struct DesktopEntry {
    std::string id;           // without ".desktop"
    std::string name;         // in the person's language
    std::string file;         // absolute path
    std::string windowClass;  // StartupWMClass, may be empty
    std::string program;      // absolute path with links resolved; empty when it cannot be found
    bool shown = true;        // in menus
    OpenedKinds opens;
};

/// Read when first asked, and again when one of the directories has changed. Where several files give the
/// same id, the first directory of the XDG search order wins.
class DesktopEntries {
  public:
    /// Looks whether files came or went; a few system calls. Pointers given before may be void afterwards.
    void refresh();

    const DesktopEntry* withId(std::string_view id) const;
    /// Whatever the case of its letters.
    const DesktopEntry* withIdIgnoringCase(std::string_view id) const;
    const DesktopEntry* withWindowClass(std::string_view windowClass) const;
    /// Absent where several share the program and none is named like it.
    const DesktopEntry* withProgram(const std::string& program) const;
    const DesktopEntry* withFile(const std::string& file) const;

  private:
    struct Directory {
        std::filesystem::path path;
        std::filesystem::file_time_type changed;
        bool settled = false;  // long enough unchanged that another change shows in its time
    };
    using Index = std::unordered_map<std::string, std::vector<std::size_t>>;

    static Directory lookedAt(const std::filesystem::path& path);
    bool isCurrent() const;
    void readDirectory(const std::filesystem::path& root, const std::filesystem::path& directory);
    void add(const std::filesystem::path& root, const std::filesystem::path& file);
    const DesktopEntry* best(const Index& index, const std::string& key) const;

    std::vector<Directory> directories_;
    std::vector<DesktopEntry> entries_;
    Index byId_, byLowerId_, byWindowClass_, byProgram_;
};

}  // namespace quillo::x11
