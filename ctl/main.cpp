// Wiring only: the arguments, the store, the desktop they ask for, and the command.
#include <fmt/format.h>

#include <csignal>

#include "WindowEngine/records/UndoRecord.hpp"
#include "ctl/CommandLine.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/Interrupt.hpp"
#include "ctl/NamedFile.hpp"
#include "ctl/SimulatedLayer.hpp"
#include "ctl/SystemLayer.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/posix/StandardDirectories.hpp"

namespace quillo::ctl {
namespace {

Result<std::unique_ptr<DesktopConnection>> openDesktop(const Arguments& arguments, FileSystem& files,
                                                       SystemLayer& system) {
    const std::string& choice = arguments.desktop;
    if (choice.starts_with(simulatedPrefix)) {
        const auto scene = namedFile(choice.substr(simulatedPrefix.size()));
        return openSimulatedDesktop({.path = scene, .keep = arguments.keepScene, .files = files},
                                    system.log());
    }
    return system.openDesktop(system.log());
}

/// What --desktop may say, before anything is opened.
std::optional<Failure> wrongDesktop(const Arguments& arguments) {
    const std::string& choice = arguments.desktop;
    const bool simulated = choice.starts_with(simulatedPrefix) && choice.size() > simulatedPrefix.size();
    if (!simulated && !choice.empty() && choice != systemDesktopName) {
        return Failure{Exit::usage,
                       fmt::format("{}: {} is neither {} nor simulated:FILE", arguments.desktopIsFrom,
                                   quotedName(choice), systemDesktopName)};
    }
    if (arguments.keepScene && !simulated) {
        return Failure{Exit::usage, "--keep-scene: only a simulated desktop has a scene to keep"};
    }
    return std::nullopt;
}

/// What --data-dir may name: a folder, or one that is yet to be made.
std::optional<Failure> wrongDataDirectory(const std::filesystem::path& directory, const std::string& isFrom) {
    std::error_code trouble;
    const std::filesystem::file_status status = std::filesystem::status(directory, trouble);
    if (!std::filesystem::exists(status) || std::filesystem::is_directory(status)) return std::nullopt;
    return Failure{Exit::failed, isFrom + ": " + quotedName(directory.string()) + " is no folder"};
}

CommandResult runCommand(const Invocation& invocation, Output& output) {
    const Arguments& arguments = invocation.arguments;
    if (std::optional<Failure> wrong = wrongDesktop(arguments)) return std::unexpected(*std::move(wrong));
    const Result<StandardDirectories> directories = StandardDirectories::find();
    if (!directories) return failure(directories.error().text);

    PosixFileSystem files;
    const std::unique_ptr<SystemLayer> system = systemLayer(files, *directories);
    const std::filesystem::path data =
        arguments.dataDirectory.empty() ? directories->data : absolutePath(arguments.dataDirectory);
    if (std::optional<Failure> wrong = wrongDataDirectory(data, arguments.dataDirectoryIsFrom))
        return std::unexpected(*std::move(wrong));
    WorkspaceStore store(files, data / "workspaces");
    SessionHistory history(files, data / "sessions");
    KnownWorkspaces known(
        system->defaults(), [&](std::string_view bytes) { return system->digest(bytes); },
        [&](const Uuid& id) {
            return UndoRecord::isIdentifier(id) || files.exists(store.url(id)) ||
                   files.exists(history.store().url(id));
        });
    CommandContext context{.output = output,
                           .files = files,
                           .store = store,
                           .history = history,
                           .dataDirectory = data,
                           .simulated = arguments.desktop.starts_with(simulatedPrefix),
                           .logPlace = system->logPlace(),
                           .defaults = system->defaults(),
                           .known = known,
                           .openDesktop = [&] { return openDesktop(arguments, files, *system); },
                           .listenToRestores =
                               [&](Executor& executor, RestoreEvents::Told told) {
                                   // The application knows one library, and it is not another folder's.
                                   const bool own = arguments.dataDirectory.empty();
                                   return own ? system->listenToRestores(executor, std::move(told)) : nullptr;
                               }};
    return invocation.command(context, arguments);
}

/// A reader that went away must not end us in the middle of moving windows: writing then fails instead. A
/// handler, unlike ignoring the signal, is not inherited by the applications we launch.
void outliveClosedPipes() {
    std::signal(SIGPIPE, [](int) {});
}

int finish(const CommandResult& result, Output& output) {
    if (!result) output.complain(result.error().text);
    const Exit exit = result ? *result : result.error().exit;
    const int signal = Interrupt::received();
    if (exit == Exit::cancelled && signal != 0) return 128 + signal;  // as a shell tells of it
    if (output.finish()) return static_cast<int>(exit);
    output.complain("could not write everything to standard output");
    return static_cast<int>(exit == Exit::done ? Exit::failed : exit);
}

int runProgram(int argumentCount, const char* const* arguments) {
    const std::expected<Invocation, Exit> invocation = parseCommandLine(argumentCount, arguments);
    if (!invocation) return static_cast<int>(invocation.error());
    outliveClosedPipes();
    Output output(invocation->arguments.json, invocation->arguments.quiet);
    return finish(runCommand(*invocation, output), output);
}

}  // namespace
}  // namespace quillo::ctl

int main(int argumentCount, char** arguments) {
    return quillo::ctl::runProgram(argumentCount, arguments);
}
