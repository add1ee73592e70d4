// What a command works with. main() wires it; nothing here is global.
#pragma once
#include <filesystem>
#include <functional>
#include <memory>

#include "WindowEngine/library/SessionHistory.hpp"
#include "WindowEngine/library/WorkspaceStore.hpp"
#include "WindowEngine/services/FileSystem.hpp"
#include "ctl/Arguments.hpp"
#include "ctl/CommandResult.hpp"
#include "ctl/DesktopConnection.hpp"
#include "ctl/Output.hpp"
#include "platform/services/RestoreEvents.hpp"
#include "platform/services/UserDefaults.hpp"
#include "settings/AppSettings.hpp"
#include "settings/KnownWorkspaces.hpp"

namespace quillo::ctl {

struct CommandContext {
    Output& output;
    FileSystem& files;
    WorkspaceStore& store;
    SessionHistory& history;
    std::filesystem::path dataDirectory;
    bool simulated = false;  // the desktop is one in memory, whatever the library
    std::string logPlace;    // where a person finds the log
    /// What the person chose in the application; read when first asked.
    UserDefaults& defaults;
    KnownWorkspaces& known;
    /// Connects to the desktop. Only the commands that need one call it: the others stay fast and work
    /// without any.
    std::function<Result<std::unique_ptr<DesktopConnection>>()> openDesktop;
    /// Listens to the application's restores of this library's workspaces; null where it tells nobody.
    std::function<std::unique_ptr<RestoreEvents>(Executor&, RestoreEvents::Told)> listenToRestores;
};

/// The person's settings, with the integrations that this call names (--adapter) switched on besides. A
/// file that cannot be read is complained of: its exclusions do not hold.
AppSettings settingsFor(CommandContext& context, const Arguments& arguments);

/// Complains where it could not be noted where a workspace comes from: restoring it will ask.
void noteProvenance(CommandContext& context, const Result<void>& noted);

/// Says on standard error what is wrong with files, and which were renamed or removed.
void complainOf(CommandContext& context, const WorkspaceScanResult& found);

/// The workspaces of the library, and the sessions of the history, complainOf() included; a directory that
/// cannot be listed is a failure.
Result<std::vector<Workspace>, Failure> scan(CommandContext& context);
Result<std::vector<Workspace>, Failure> scanHistory(CommandContext& context);

/// The one workspace that `which` names: its identifier, or its name ignoring case. Several of one name are
/// listed with their identifiers and none is taken.
Result<Workspace, Failure> find(CommandContext& context, std::string_view which);
Result<Workspace, Failure> find(std::span<const Workspace> workspaces, std::string_view which);

/// For commands that change no workspace: the same, and where the library knows none so, among the sessions
/// of the history.
struct Found {
    Workspace workspace;
    bool isSession = false;
};
Result<Found, Failure> findWithHistory(CommandContext& context, std::string_view which);

/// A name as it is stored: trimmed. An empty one, or bytes that are not UTF-8, are a usage error that names
/// the argument.
Result<std::string, Failure> workspaceName(std::string_view argument, std::string_view text);

/// The desktop, or why there is none: no permission where nothing answers, else a failure (a bad scene).
Result<std::unique_ptr<DesktopConnection>, Failure> openDesktop(CommandContext& context);
/// The same for a command that reads or changes other applications' windows.
Result<std::unique_ptr<DesktopConnection>, Failure> openTrustedDesktop(CommandContext& context);

/// `path` seen from the working directory; as it is where there is none any more.
std::filesystem::path absolutePath(const std::filesystem::path& path);

/// The clock of records.
Instant now();

}  // namespace quillo::ctl
