// Launch at login on a free desktop: an entry in the person's autostart folder.
#pragma once
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "WindowEngine/services/FileSystem.hpp"
#include "platform/services/LoginItemService.hpp"

namespace quillo {

/// The states, as the files say them:
/// - notFound: this program is not installed. It counts as installed where the first
/// app.quillo.Quillo.desktop
///   among the data directories' applications/ names, in Exec, the very executable that runs (through PATH
///   and links). A build tree or a loose copy is named by none: an entry for it would break when it is moved.
/// - requiresApproval: the entry is there and says Hidden=true or X-GNOME-Autostart-enabled=false, which is
///   how desktops' own settings switch one off. Only the person takes that back, there; or here, by switching
///   off (the entry goes) and on again.
/// - enabled: the entry is there, is not switched off, and starts this program.
/// - notRegistered: anything else, entries that start another program or cannot be read included; these are
///   replaced when the person switches on.
/// A program that is not installed never touches the entry of one that is.
class AutostartEntry final : public LoginItemService {
  public:
    using Path = std::filesystem::path;

    struct Places {
        Path program;            // the executable that runs, links resolved
        Path configuration;      // holds autostart/
        std::vector<Path> data;  // each may hold applications/; the first counts most

        /// Of this process, from its environment.
        static Places find();
    };

    explicit AutostartEntry(FileSystem& files, Places places = Places::find());

    /// Only an installed program can.
    Capability capability() const override;
    LoginItemStatus status() const override;
    /// On failure the entry is as it was.
    Result<void> registerItem() override;
    Result<void> unregisterItem() override;
    /// The list of startup programs of the desktop that runs, where we know its program and that is
    /// installed.
    bool hasSystemSettings() const override;
    void openSystemSettings() override;

    /// One argument of an Exec line, quoted where the Desktop Entry Specification wants it.
    static std::string execArgument(std::string_view argument);

  private:
    /// How the installed entry names this program; absent when it is not installed.
    std::optional<Path> installedProgram() const;
    bool isThisProgram(const std::optional<Path>& program) const;
    /// Follows a link; absent when there is none or it cannot be read.
    std::optional<std::string> read(const Path& file) const;

    FileSystem& files_;
    Places places_;
    Path entry_;
};

}  // namespace quillo
