// export, import, validate: workspaces as files outside the store.
#include <fmt/format.h>

#include <algorithm>

#include "WindowEngine/library/AtomicFile.hpp"
#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/support/Text.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/NamedFile.hpp"

namespace quillo::ctl {
namespace {

struct Export {
    Workspace workspace;
    std::filesystem::path file;
    std::string shown;  // the file, as the person named it
    std::string document;
};

/// Of a workspace that goes into a folder. Names may hold what no file's name does.
std::string nameOfFile(const Workspace& workspace) {
    constexpr std::size_t mostCharacters = 60;  // of up to four bytes, below what a name may have
    std::string name = text::clipped(text::repaired(text::trim(workspace.name)), mostCharacters);
    std::ranges::replace_if(
        name, [](unsigned char one) { return one < 0x20 || one == '/' || one == 0x7f; }, '-');
    if (name.empty()) name = unnamed;
    if (name.starts_with('.') || name.starts_with('-')) name.insert(0, "_");
    return name + ".json";
}

Result<std::vector<Export>, Failure> plannedExports(CommandContext& context, const Arguments& arguments) {
    const Result<std::filesystem::path, Failure> target = fileArgument(arguments);
    if (!target) return std::unexpected(target.error());
    std::error_code trouble;
    const bool isFolder = std::filesystem::is_directory(*target, trouble);
    const std::filesystem::path typed = arguments.file, folder = typed.parent_path();
    if (arguments.file != standardStream && !isFolder && !folder.empty() &&
        !std::filesystem::is_directory(folder, trouble))
        return failure("FILE: there is no folder " + quotedName(folder.string()));
    if (arguments.workspaces.size() > 1 && !isFolder)
        return failure(
            "FILE: several workspaces go into a folder, and " + printable(arguments.file) + " is none",
            Exit::usage);
    std::vector<Export> exports;
    for (const std::string& which : arguments.workspaces) {
        Result<Found, Failure> found = findWithHistory(context, which);
        if (!found) return std::unexpected(found.error());
        Result<std::string> document = documentOf(found->workspace);
        if (!document) return couldNot("export " + quotedName(found->workspace.name), document.error());
        const std::string name = isFolder ? nameOfFile(found->workspace) : "";
        std::filesystem::path file = isFolder ? *target / name : *target;
        if (std::ranges::find(exports, file, &Export::file) != exports.end())
            return failure(printable(file.string()) + ": two workspaces would go into this file");
        std::string shown = quotedName((isFolder ? typed / name : typed).string());
        exports.push_back(
            {std::move(found->workspace), std::move(file), std::move(shown), *std::move(document)});
    }
    return exports;
}

}  // namespace

CommandResult exportWorkspaces(CommandContext& context, const Arguments& arguments) {
    const Result<std::vector<Export>, Failure> exports = plannedExports(context, arguments);
    if (!exports) return std::unexpected(exports.error());
    if (arguments.file == standardStream) {
        context.output.document(exports->front().document);
        return Exit::done;
    }
    const auto stands = [&](const Export& one) { return context.files.exists(one.file); };
    const auto taken = std::ranges::find_if(*exports, stands);
    if (!arguments.force && taken != exports->end())
        return failure(printable(taken->file.string()) + ": a file of this name exists; --force replaces it");
    for (const Export& one : *exports) {
        if (const Result<void> written = writeAtomically(context.files, one.file, one.document); !written)
            return couldNot("export " + quotedName(one.workspace.name), written.error());
        (void)reportSaved(context, "Exported", one.workspace, " to " + one.shown);
    }
    return Exit::done;
}

CommandResult importWorkspace(CommandContext& context, const Arguments& arguments) {
    const Result<std::string, Failure> bytes = readNamedFile(context, arguments);
    if (!bytes) return std::unexpected(bytes.error());
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    const Result<ImportedWorkspace> imported = ImportedWorkspace::read(*bytes, {}, now());
    if (!imported) return badFile(arguments.file, imported.error());
    const Result<Workspace> saved = context.store.saveAsNew(imported->workspace, *workspaces);
    if (!saved) return couldNot("import " + quotedName(imported->workspace.name), saved.error());
    if (imported->droppedAddresses > 0) {
        context.output.complain(counted(imported->droppedAddresses, "address", "addresses") +
                                " left out: only folders of this machine and web addresses are taken over");
    }
    return reportSaved(context, "Imported", *saved);
}

CommandResult validateFile(CommandContext& context, const Arguments& arguments) {
    const Result<std::string, Failure> bytes = readNamedFile(context, arguments);
    if (!bytes) return std::unexpected(bytes.error());
    const Result<Workspace> workspace = WorkspaceCoding::decode(*bytes);
    if (!workspace) return badFile(arguments.file, workspace.error());
    return reportSaved(context, fileName(arguments.file) + ": a sound workspace file,", *workspace);
}

}  // namespace quillo::ctl
