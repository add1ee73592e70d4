// The installed applications, as their .desktop files describe them.
#pragma once
#include <gio/gdesktopappinfo.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillo {

/// The type that entries declare who open folders.
inline constexpr auto folderType = "inode/directory";

struct OpenedKinds {
    bool documents = false;
    bool folders = false;  // a file manager among others
    bool pages = false;    // a browser
    bool shells = false;   // a terminal, whose windows are in a folder each
};

struct DesktopEntry {
    std::string id;           // without ".desktop"
    std::string name;         // in the person's language
    std::string file;         // absolute path
    std::string windowClass;  // StartupWMClass, may be empty
    std::string program;      // absolute path with links resolved; empty when it cannot be found
    std::string command;      // its Exec line without the fields for what is opened
    bool shown = true;        // in menus
    std::vector<std::string> types =
        {};             // of the documents that it declares to open; none where it takes none
    OpenedKinds opens;  // folders also through another entry of its program
    char field = 0;     // that its Exec line has for documents: 'f', 'F', 'u' or 'U'; 0 where it takes none
    std::string newWindowAction = {};         // the action that opens one more window; empty where none does
    bool singleWindow = false;                // it says that it opens no more than one
    std::optional<std::string> folderOption;  // of a terminal (Terminals::folderOption)
};

/// The types of an entry that takes documents by itself: none where its Exec line has no field for them, or
/// only within quotation marks, where a shell or an interpreter would read a document's name as its own
/// language. Of an entry that no menu shows only pictures, sounds, folders and the like: so do interpreters
/// register themselves.
std::vector<std::string> declaredTypes(GDesktopAppInfo* entry);

/// A command as a shell would take it apart, without running one; empty where it is none.
std::vector<std::string> commandWords(const std::string& command);

/// Read when first asked, and again when one of the directories has changed. Where several files give the
/// same id, the first directory of the XDG search order wins.
class DesktopEntries {
  public:
    /// Looks whether files came or went; a few system calls. Pointers given before may be void afterwards.
    void refresh();

    const std::vector<DesktopEntry>& all() const { return entries_; }
    const DesktopEntry* withId(std::string_view id) const;
    /// Whatever the case of its letters.
    const DesktopEntry* withIdIgnoringCase(std::string_view id) const;
    const DesktopEntry* withWindowClass(std::string_view windowClass) const;
    /// Of those that menus show; absent where several share the program and none is named like it.
    const DesktopEntry* withProgram(const std::string& program) const;
    const DesktopEntry* withFile(const std::string& file) const;

    /// The entry through which `application` opens documents of this type: itself, or another that is started
    /// by the same command (file managers keep one for the menu and one for folders). For folders its options
    /// may be others. Absent where none declares that type.
    const DesktopEntry* opener(const DesktopEntry& application, std::string_view type) const;

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
    Index byId_, byLowerId_, byWindowClass_, byProgram_, byCommand_;
    Index folderOpeners_;  // by their programs and arguments, options left out
};

}  // namespace quillo
