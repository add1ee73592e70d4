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

Result<std::filesystem::path, Failure> fileArgument(const Arguments& arguments) {
    if (arguments.file.empty()) return failure("FILE: the name is empty", Exit::usage);
    return absolutePath(arguments.file);
}

Result<std::string, Failure> readFile(CommandContext& context, const Arguments& arguments) {
    const Result<std::filesystem::path, Failure> file = fileArgument(arguments);
    if (!file) return std::unexpected(file.error());
    Result<std::string> bytes = context.files.read(*file);
    if (!bytes) return badFile(arguments.file, bytes.error());
    return *std::move(bytes);
}

}  // namespace

CommandResult exportWorkspace(CommandContext& context, const Arguments& arguments) {
    const Result<std::filesystem::path, Failure> file = fileArgument(arguments);
    if (!file) return std::unexpected(file.error());
    const Result<Found, Failure> found = findWithHistory(context, arguments.workspace);
    if (!found) return std::unexpected(found.error());
    const Workspace& workspace = found->workspace;
    if (!arguments.force && context.files.exists(*file)) {
        return failure(printable(arguments.file) + ": a file of this name exists; --force replaces it");
    }
    const Result<std::string> document = WorkspaceCoding::encode(workspace);
    if (!document) return couldNot("export " + printable(workspace.name), document.error());
    if (const Result<void> written = writeAtomically(context.files, *file, *document); !written) {
        return couldNot("export " + printable(workspace.name), written.error());
    }
    return reportSaved(context, "Exported", workspace);
}

CommandResult importWorkspace(CommandContext& context, const Arguments& arguments) {
    const Result<std::string, Failure> bytes = readFile(context, arguments);
    if (!bytes) return std::unexpected(bytes.error());
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    const Result<ImportedWorkspace> imported = ImportedWorkspace::read(*bytes, *workspaces, now());
    if (!imported) return badFile(arguments.file, imported.error());
    if (const Result<void> saved = context.store.save(imported->workspace); !saved) {
        return couldNot("import " + printable(imported->workspace.name), saved.error());
    }
    if (imported->droppedAddresses > 0) {
        context.output.complain(counted(imported->droppedAddresses, "address", "addresses") +
                                " left out: only folders of this machine and web addresses are taken over");
    }
    return reportSaved(context, "Imported", imported->workspace);
}

CommandResult validateFile(CommandContext& context, const Arguments& arguments) {
    const Result<std::string, Failure> bytes = readFile(context, arguments);
    if (!bytes) return std::unexpected(bytes.error());
    const Result<Workspace> workspace = WorkspaceCoding::decode(*bytes);
    if (!workspace) return badFile(arguments.file, workspace.error());
    return reportSaved(context, printable(arguments.file) + ": a sound workspace file,", *workspace);
}

}  // namespace quillo::ctl
