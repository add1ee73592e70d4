// Operations on saved workspaces. The library is never patched in memory: after a success it is read again,
// after a failure it stays as it was.
#include <algorithm>
#include <cstdint>

#include "WindowEngine/library/AtomicFile.hpp"
#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "app/AppModel.hpp"

namespace quillo {
namespace {

/// A name that no directory separator and no leading dot make into something else than one visible file.
std::string proposedFileName(std::string name) {
    std::ranges::replace_if(name, [](char c) { return c == '/' || c == '\0'; }, '-');
    if (name.starts_with('.')) name.front() = '-';
    return name + ".quillo.json";
}

std::string ofThem(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " workspace" : " workspaces");
}

}  // namespace

void AppModel::noteProvenance(const Result<void>& noted) {
    told("Couldn't note what was done here; resuming will ask first", noted);
}

void AppModel::showLibraryFolder() {
    std::filesystem::path folder = store_.directory();
    while (!services_.files.exists(folder) && folder.has_relative_path()) folder = folder.parent_path();
    if (!services_.shell.showFolder(folder)) show("No file manager opens " + folder.string());
}

void AppModel::deleteWorkspace(const Workspace& workspace) {
    const std::string what = "Couldn't delete " + workspace.name;  // which may be the library's own
    const Result<void> removed = store_.remove(workspace.id);
    if (removed) forget(workspace.id);
    if (told(what, removed)) reload();
}

void AppModel::deleteWorkspaces(const std::vector<Uuid>& ids) {
    std::int64_t removed = 0;
    std::optional<Error> failure;
    for (const Uuid& id : ids) {
        if (Result<void> gone = store_.remove(id); !gone) {
            failure = std::move(gone.error());
            continue;
        }
        ++removed;
        forget(id);
    }
    reload();
    const std::string what = "Couldn't delete workspaces";
    if (failure)
        return complain(what, "Couldn't delete " + ofThem(static_cast<std::int64_t>(ids.size()) - removed) +
                                  ": " + failure->text);
    told(what, {});
    show("Deleted " + ofThem(removed));
}

/// Of one that was deleted.
void AppModel::forget(const Uuid& id) {
    (void)known_.forget(id);  // what is left of it is no harm
    edits_.forget(id);
    setArrangesByItself(id, false);
    if (settings_.automation.contains(id.lower())) setAutomation(id, {});
}

void AppModel::duplicate(const Workspace& workspace) {
    Workspace copy = workspace;
    copy.id = Uuid::random();
    copy.name = workspace.name + " copy";
    copy.createdAt = copy.updatedAt = wallNow();
    copy.lastRestoredAt.reset();
    const std::string name = workspace.name;
    const Result<Workspace> saved = store_.saveAsNew(std::move(copy), workspaces_);
    const Result<void> noted = saved ? known_.madeFrom(workspace, *saved) : Result<void>{};
    if (!told("Couldn't duplicate " + name, saved ? Result<void>{} : std::unexpected(saved.error()))) return;
    reload();
    show("Duplicated " + name);
    noteProvenance(noted);
}

void AppModel::setCleanSlate(const Workspace& workspace, CleanSlateMode mode) {
    const auto saved = changeStored(workspace.id, [&](Workspace& stored) -> Result<void> {
        stored.cleanSlate = mode;
        return {};
    });
    told("Couldn't save restore preference", saved);
}

Result<void> AppModel::writeExport(const Workspace& workspace, const std::filesystem::path& file) {
    const Result<std::string> bytes = WorkspaceCoding::encode(workspace);
    if (!bytes) return std::unexpected(bytes.error());
    return writeAtomically(services_.files, file, *bytes);
}

void AppModel::exportWorkspace(const Workspace& workspace) {
    if (!exporting_.active()) exporting_.start(executor(), exportTask(workspace));
}

Task<> AppModel::exportTask(Workspace workspace) {
    const auto file = co_await services_.surfaces.fileToWrite(proposedFileName(workspace.name));
    if (!file) co_return;
    if (told("Export failed", writeExport(workspace, *file))) show("Exported " + workspace.name);
}

void AppModel::exportWorkspaces(const std::vector<Uuid>& ids) {
    std::vector<Workspace> chosen;
    for (const Workspace& workspace : workspaces_)
        if (std::ranges::count(ids, workspace.id) > 0) chosen.push_back(workspace);
    if (chosen.size() == 1) return exportWorkspace(chosen.front());
    if (!chosen.empty() && !exporting_.active())
        exporting_.start(executor(), exportAllTask(std::move(chosen)));
}

/// Nothing that is in the folder is replaced: nobody was asked about it.
Task<> AppModel::exportAllTask(std::vector<Workspace> workspaces) {
    const auto folder = co_await services_.surfaces.folderToWrite();
    if (!folder) co_return;
    const std::string what = "Export failed";
    for (std::size_t written = 0; written < workspaces.size(); ++written) {
        const Workspace& workspace = workspaces[written];
        std::filesystem::path file = *folder / proposedFileName(workspace.name);
        for (int counter = 2; services_.files.exists(file); ++counter)
            file = *folder / proposedFileName(workspace.name + " " + std::to_string(counter));
        if (const Result<void> done = writeExport(workspace, file); !done) {
            complain(what, what + " after " + std::to_string(written) + " of " +
                               ofThem(static_cast<std::int64_t>(workspaces.size())) + ": " +
                               done.error().text);
            co_return;
        }
    }
    told(what, {});
    show("Exported " + ofThem(static_cast<std::int64_t>(workspaces.size())));
}

void AppModel::importWorkspace() {
    if (!importing_.active()) importing_.start(executor(), importTask());
}

Task<> AppModel::importTask() {
    const auto file = co_await services_.surfaces.fileToRead();
    if (!file) co_return;
    const std::string what = "Couldn't import workspace";
    const Result<std::string, std::string> name = importFile(*file);
    if (!name) co_return complain(what, name.error());
    told(what, {});
    reload();
    show("Imported " + *name);
}

Result<std::string, std::string> AppModel::importFile(const std::filesystem::path& file) {
    const auto failed = [](const Error& error) {
        return std::unexpected("Couldn't import workspace: " + error.text);
    };
    std::error_code dangling;  // who picks a link means what it leads to
    const std::filesystem::path target = std::filesystem::canonical(file, dangling);
    const Result<std::string> bytes = services_.files.read(dangling ? file : target);
    if (!bytes) return failed(bytes.error());
    const Result<ImportedWorkspace> imported = ImportedWorkspace::read(*bytes, {}, wallNow());
    const bool isForeign = !imported && imported.error().kind == ErrorKind::invalidData &&
                           !WorkspaceCoding::isTooLarge(imported.error());
    if (isForeign) return std::unexpected("This is not a Quillo workspace: " + imported.error().text);
    if (!imported) return failed(imported.error());
    const Result<Workspace> saved = store_.saveAsNew(imported->workspace, workspaces_);
    if (!saved) return failed(saved.error());
    return saved->name;
}

void AppModel::deleteAllData() {
    AppSettings settings = settings_;
    settings.autoSnapshotMinutes = 0;
    settings.arrangedWorkspaces.clear();
    settings.automation.clear();
    setSettings(std::move(settings));
    deleteSessionHistory();
    for (const Workspace& workspace : workspaces_) {
        [[maybe_unused]] const Result<void> removed = store_.remove(workspace.id);  // the directory goes too
    }
    const Result<void> removed = services_.files.removeTree(store_.directory());
    ++deletions_;
    forgetUndo();
    const Result<void> undoRemoved = services_.files.removeTree(undoFile_.directory());
    (void)known_.forgetAll();
    reload();
    reloadUndo();
    told("Couldn't delete all workspace data", removed ? undoRemoved : removed);
}

}  // namespace quillo
