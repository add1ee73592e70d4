// Operations on saved workspaces. The library is never patched in memory: after a success it is read again,
// after a failure it stays as it was.
#include <algorithm>

#include "WindowEngine/library/AtomicFile.hpp"
#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/support/Text.hpp"
#include "app/AppModel.hpp"

namespace quillo {
namespace {

/// A name that no directory separator and no leading dot make into something else than one visible file.
std::string proposedFileName(std::string name) {
    std::ranges::replace_if(name, [](char c) { return c == '/' || c == '\0'; }, '-');
    if (name.starts_with('.')) name.front() = '-';
    return name + ".quillo.json";
}

}  // namespace

void AppModel::noteProvenance(const Result<void>& noted) {
    if (!noted) show("Couldn't note what was done here; resuming will ask first: " + noted.error().text);
}

void AppModel::showLibraryFolder() {
    std::filesystem::path folder = store_.directory();
    while (!services_.files.exists(folder) && folder.has_relative_path()) folder = folder.parent_path();
    if (!services_.shell.showFolder(folder)) show("No file manager opens " + folder.string());
}

void AppModel::deleteWorkspace(const Workspace& workspace) {
    const std::string name = workspace.name;  // the workspace may be the library's own, which is read again
    if (const Result<void> removed = store_.remove(workspace.id); !removed) {
        return show("Couldn't delete " + name + ": " + removed.error().text);
    }
    (void)known_.forget(workspace.id);  // what is left of it is no harm
    reload();
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

/// What is stored counts, not what was last read: another process may have changed it.
Result<void> AppModel::changeStored(const Uuid& id, const std::function<void(Workspace&)>& change) {
    Result<Workspace> stored = store_.load(id);
    if (!stored) return std::unexpected(std::move(stored.error()));
    change(*stored);
    return store_.save(*stored);
}

void AppModel::rename(const Workspace& workspace, const std::string& to) {
    const std::string trimmed = text::trim(to), name = workspace.name;
    if (trimmed.empty() || trimmed == name) return;
    const Result<void> renamed = changeStored(workspace.id, [&](Workspace& stored) {
        stored.name = uniqueName(trimmed, workspaces_);
        stored.updatedAt = wallNow();
    });
    if (!renamed) return show("Couldn't rename " + name + ": " + renamed.error().text);
    reload();
}

void AppModel::setCleanSlate(const Workspace& workspace, CleanSlateMode mode) {
    Workspace before, after;
    const Result<void> saved = changeStored(workspace.id, [&](Workspace& stored) {
        before = stored;
        stored.cleanSlate = mode;
        after = stored;
    });
    if (!saved) return show("Couldn't save restore preference");
    const Result<void> noted = known_.madeFrom(before, after);
    reload();
    noteProvenance(noted);
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
