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
    if (!noted) show("Couldn't note what was done here; resuming will ask first: " + noted.error().text);
}

void AppModel::deleteWorkspace(const Workspace& workspace) {
    const std::string name = workspace.name;  // the workspace may be the library's own, which is read again
    if (const Result<void> removed = store_.remove(workspace.id); !removed) {
        return show("Couldn't delete " + name + ": " + removed.error().text);
    }
    (void)known_.forget(workspace.id);  // what is left of it is no harm
    edits_.forget(workspace.id);
    reload();
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
        (void)known_.forget(id);
        edits_.forget(id);
    }
    reload();
    if (failure)
        show("Couldn't delete " + ofThem(static_cast<std::int64_t>(ids.size()) - removed) + ": " +
             failure->text);
    else
        show("Deleted " + ofThem(removed));
}

void AppModel::duplicate(const Workspace& workspace) {
    Workspace copy = workspace;
    copy.id = Uuid::random();
    copy.name = uniqueName(workspace.name + " copy", workspaces_);
    copy.createdAt = copy.updatedAt = wallNow();
    copy.lastRestoredAt.reset();
    const std::string name = workspace.name;
    if (const Result<void> saved = store_.save(copy); !saved) {
        return show("Couldn't duplicate " + name + ": " + saved.error().text);
    }
    const Result<void> noted = known_.madeFrom(workspace, copy);
    reload();
    show("Duplicated " + name);
    noteProvenance(noted);
}

void AppModel::setCleanSlate(const Workspace& workspace, CleanSlateMode mode) {
    const auto saved = changeStored(workspace.id, [&](Workspace& stored) -> Result<void> {
        stored.cleanSlate = mode;
        return {};
    });
    if (!saved) show("Couldn't save restore preference");
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
    const Result<void> written = writeExport(workspace, *file);
    show(written ? "Exported " + workspace.name : "Export failed: " + written.error().text);
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
    for (std::size_t written = 0; written < workspaces.size(); ++written) {
        const Workspace& workspace = workspaces[written];
        std::filesystem::path file = *folder / proposedFileName(workspace.name);
        for (int counter = 2; services_.files.exists(file); ++counter)
            file = *folder / proposedFileName(workspace.name + " " + std::to_string(counter));
        if (const Result<void> done = writeExport(workspace, file); !done) {
            show("Export failed after " + std::to_string(written) + " of " +
                 ofThem(static_cast<std::int64_t>(workspaces.size())) + ": " + done.error().text);
            co_return;
        }
    }
    show("Exported " + ofThem(static_cast<std::int64_t>(workspaces.size())));
}

void AppModel::importWorkspace() {
    if (!importing_.active()) importing_.start(executor(), importTask());
}

Task<> AppModel::importTask() {
    const auto file = co_await services_.surfaces.fileToRead();
    if (!file) co_return;
    const Result<std::string> name = importFile(*file);
    if (name) reload();
    show(name ? "Imported " + *name : "Couldn't import workspace: " + name.error().text);
}

Result<std::string> AppModel::importFile(const std::filesystem::path& file) {
    std::error_code dangling;  // who picks a link means what it leads to
    const std::filesystem::path target = std::filesystem::canonical(file, dangling);
    const Result<std::string> bytes = services_.files.read(dangling ? file : target);
    if (!bytes) return std::unexpected(bytes.error());
    const Result<ImportedWorkspace> imported = ImportedWorkspace::read(*bytes, workspaces_, wallNow());
    if (!imported) return std::unexpected(imported.error());
    const Result<void> saved = store_.save(imported->workspace);
    if (!saved) return std::unexpected(saved.error());
    return imported->workspace.name;
}

void AppModel::deleteAllData() {
    AppSettings settings = settings_;
    settings.autoSnapshotMinutes = 0;
    setSettings(std::move(settings));
    deleteSessionHistory();
    for (const Workspace& workspace : workspaces_) {
        [[maybe_unused]] const Result<void> removed = store_.remove(workspace.id);  // the directory goes too
    }
    const Result<void> removed = services_.files.removeTree(store_.directory());
    (void)known_.forgetAll();
    reload();
    if (!removed) show("Couldn't delete all workspace data: " + removed.error().text);
}

}  // namespace quillo
