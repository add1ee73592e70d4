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
    if (removed) (void)known_.forget(workspace.id);  // what is left of it is no harm
    if (told(what, removed)) reload();
}

void AppModel::duplicate(const Workspace& workspace) {
    Workspace copy = workspace;
    copy.id = Uuid::random();
    copy.name = uniqueName(workspace.name + " copy", workspaces_);
    copy.createdAt = copy.updatedAt = wallNow();
    copy.lastRestoredAt.reset();
    const std::string name = workspace.name;
    const Result<void> saved = store_.save(copy);
    const Result<void> noted = saved ? known_.madeFrom(workspace, copy) : saved;
    if (!told("Couldn't duplicate " + name, saved)) return;
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
    if (told("Couldn't rename " + name, renamed)) reload();
}

void AppModel::setCleanSlate(const Workspace& workspace, CleanSlateMode mode) {
    Workspace before, after;
    const Result<void> saved = changeStored(workspace.id, [&](Workspace& stored) {
        before = stored;
        stored.cleanSlate = mode;
        after = stored;
    });
    if (!told("Couldn't save restore preference", saved)) return;
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
    if (told("Export failed", writeExport(workspace, *file))) show("Exported " + workspace.name);
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
    const Result<ImportedWorkspace> imported = ImportedWorkspace::read(*bytes, workspaces_, wallNow());
    const bool isForeign = !imported && imported.error().kind == ErrorKind::invalidData &&
                           !WorkspaceCoding::isTooLarge(imported.error());
    if (isForeign) return std::unexpected("This is not a Quillo workspace: " + imported.error().text);
    if (!imported) return failed(imported.error());
    if (const Result<void> saved = store_.save(imported->workspace); !saved) return failed(saved.error());
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
    told("Couldn't delete all workspace data", removed);
}

}  // namespace quillo
