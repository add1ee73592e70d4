// export, import, validate: workspaces as files outside the store.
#include <fmt/format.h>

#include "WindowEngine/library/AtomicFile.hpp"
#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

/// A failed read or decode with the file's name in front, unless the text has it already.
std::unexpected<Failure> badFile(const std::string& file, const Error& error) {
    const bool named = error.text.find(file) != std::string::npos;
    return failure(printable(named ? error.text : file + ": " + error.text));
}

Expected<std::filesystem::path> fileArgument(const Arguments& arguments) {
    if (arguments.file.empty()) return failure("FILE: the name is empty", Exit::usage);
    return absolutePath(arguments.file);
}

Expected<std::string> readFile(Session& session, const Arguments& arguments) {
    const Expected<std::filesystem::path> file = fileArgument(arguments);
    if (!file) return std::unexpected(file.error());
    Result<std::string> bytes = session.files.read(*file);
    if (!bytes) return badFile(arguments.file, bytes.error());
    return *std::move(bytes);
}

}  // namespace

CommandResult exportWorkspace(Session& session, const Arguments& arguments) {
    const Expected<std::filesystem::path> file = fileArgument(arguments);
    if (!file) return std::unexpected(file.error());
    const Expected<Found> found = findWithHistory(session, arguments.workspace);
    if (!found) return std::unexpected(found.error());
    const Workspace& workspace = found->workspace;
    if (!arguments.force && session.files.exists(*file)) {
        return failure(printable(arguments.file) + ": a file of this name exists; --force replaces it");
    }
    const Result<std::string> document = WorkspaceCoding::encode(workspace);
    if (!document) return couldNot("export " + printable(workspace.name), document.error());
    if (const Result<void> written = writeAtomically(session.files, *file, *document); !written) {
        return couldNot("export " + printable(workspace.name), written.error());
    }
    return reportSaved(session, "Exported", workspace);
}

CommandResult importWorkspace(Session& session, const Arguments& arguments) {
    const Expected<std::string> bytes = readFile(session, arguments);
    if (!bytes) return std::unexpected(bytes.error());
    const Expected<std::vector<Workspace>> workspaces = scan(session);
    if (!workspaces) return std::unexpected(workspaces.error());
    const Result<ImportedWorkspace> imported = ImportedWorkspace::read(*bytes, *workspaces, now());
    if (!imported) return badFile(arguments.file, imported.error());
    if (const Result<void> saved = session.store.save(imported->workspace); !saved) {
        return couldNot("import " + printable(imported->workspace.name), saved.error());
    }
    if (imported->droppedAddresses > 0) {
        session.output.complain(counted(imported->droppedAddresses, "address", "addresses") +
                                " left out: only folders of this machine and web addresses are taken over");
    }
    return reportSaved(session, "Imported", imported->workspace);
}

CommandResult validateFile(Session& session, const Arguments& arguments) {
    const Expected<std::string> bytes = readFile(session, arguments);
    if (!bytes) return std::unexpected(bytes.error());
    const Result<Workspace> workspace = WorkspaceCoding::decode(*bytes);
    if (!workspace) return badFile(arguments.file, workspace.error());
    return reportSaved(session, printable(arguments.file) + ": a sound workspace file,", *workspace);
}

}  // namespace quillo::ctl
