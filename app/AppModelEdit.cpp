// Changing saved workspaces without capturing again. What is stored is changed, under the store's lock, never
// what was last read; each change can be undone.
#include <algorithm>
#include <utility>

#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/support/Text.hpp"
#include "app/AppModel.hpp"
#include "app/WorkspaceContents.hpp"

namespace quillo {

Result<WorkspaceStore::Changed> AppModel::changeStored(
    Uuid id, const std::function<Result<void>(Workspace&)>& change) {
    const Result<WorkspaceStore::Changed> changed = store_.change(id, change);
    if (!changed || changed->before == changed->after) return changed;
    const Result<void> noted = known_.madeFrom(changed->before, changed->after);
    reload();
    noteProvenance(noted);
    return changed;
}

Result<bool> AppModel::edit(Uuid id, const std::string& words,
                            const std::function<Result<void>(Workspace&)>& change) {
    const auto changed = changeStored(id, [&](Workspace& stored) -> Result<void> {
        const Workspace before = stored;
        if (auto done = change(stored); !done) return done;
        if (stored != before) stored.updatedAt = wallNow();
        return {};
    });
    if (!changed) {
        reload();  // what is shown may be older than what is there
        return std::unexpected(changed.error());
    }
    if (changed->before == changed->after) return false;
    edits_.add(id, words, changed->before, changed->after);
    Q_EMIT editsChanged();
    return true;
}

void AppModel::rename(const Workspace& workspace, const std::string& to) {
    const std::string trimmed = text::trim(to), name = workspace.name;
    if (trimmed.empty() || trimmed == name) return;
    const Result<bool> renamed = edit(workspace.id, "Rename", [&](Workspace& stored) -> Result<void> {
        stored.name = store_.freeName(trimmed, workspaces_);
        return {};
    });
    told("Couldn't rename " + name, renamed);
}

void AppModel::setIcon(const Workspace& workspace, const std::string& icon) {
    setLook(workspace, "Change Icon", [&](Workspace& stored) { stored.icon = icon; });
}

void AppModel::setColor(const Workspace& workspace, const std::string& color) {
    setLook(workspace, "Change Color", [&](Workspace& stored) { stored.color = color; });
}

void AppModel::setLook(const Workspace& workspace, const std::string& words,
                       const std::function<void(Workspace&)>& change) {
    const std::string name = workspace.name;
    const Result<bool> done = edit(workspace.id, words, [&](Workspace& stored) -> Result<void> {
        change(stored);
        return {};
    });
    told("Couldn't change " + name, done);
}

void AppModel::setLeftOut(const Workspace& shown, const LeftOut::Exclusions& excluded,
                          const std::string& what, bool brought) {
    const Uuid id = shown.id;
    const std::string name = shown.name;
    const WorkspaceSnapshot seen = shown.snapshot;
    const Result<bool> done =
        edit(id, (brought ? "Bring Back " : "Leave Out ") + what, [&](Workspace& stored) -> Result<void> {
            if (stored.snapshot != seen)
                return fail(ErrorKind::refused, "it was changed by something else meanwhile");
            stored.snapshot = LeftOut::without({LeftOut::whole(stored.snapshot).snapshot, excluded});
            return {};
        });
    if (told("Couldn't change " + name, done))
        showEdited((brought ? "Brought back " : "Left out ") + what, id, *done);
}

std::vector<InstalledApplication> AppModel::addableApplications() const {
    Applications& applications = services_.desktop.platform.applications;
    std::vector<InstalledApplication> found = applications.installed();
    const auto isNeverSaved = Capture::neverSaved(applications, settings_.captureOptions());
    std::erase_if(found, [&](const InstalledApplication& one) { return isNeverSaved(one.bundleIdentifier); });
    for (const RunningApplication& one :
         Capture::eligibleApplications(services_.desktop, settings_.captureOptions())) {
        const bool listed = std::ranges::find(found, *one.bundleIdentifier,
                                              &InstalledApplication::bundleIdentifier) != found.end();
        if (!listed && one.bundleURL)
            found.push_back(
                {*one.bundleIdentifier, one.localizedName.value_or(*one.bundleIdentifier), *one.bundleURL});
    }
    return found;
}

std::set<std::string> AppModel::runningApplications() const {
    std::set<std::string> identifiers;
    for (const RunningApplication& one : services_.desktop.platform.applications.running())
        if (one.bundleIdentifier) identifiers.insert(*one.bundleIdentifier);
    return identifiers;
}

void AppModel::addApplication(const Workspace& workspace, const std::string& bundleIdentifier) {
    const std::vector<InstalledApplication> all = addableApplications();
    const auto chosen = std::ranges::find(all, bundleIdentifier, &InstalledApplication::bundleIdentifier);
    if (chosen == all.end())
        return show("Couldn't add the app: it is not installed any more", ToastKind::refusal);
    adding_.start(executor(), addTask(workspace.id, *chosen));
}

/// A running one comes with its windows.
Task<> AppModel::addTask(Uuid id, InstalledApplication chosen) {
    ApplicationSnapshot application{chosen.bundleIdentifier, chosen.name, chosen.location, {}, {}};
    WorkspaceSnapshot current;
    if (runningApplications().contains(chosen.bundleIdentifier) && accessibilityGranted_) {
        current = co_await Capture::snapshot(services_.desktop, settings_.captureOptions());
        const auto seen = std::ranges::find(current.applications, chosen.bundleIdentifier,
                                            &ApplicationSnapshot::bundleIdentifier);
        if (seen != current.applications.end()) application = *seen;
    }
    const Result<bool> done = edit(id, "Add " + chosen.name, [&](Workspace& stored) {
        return WorkspaceContents::add(stored.snapshot,
                                      WorkspaceContents::fitting(application, stored.snapshot, current));
    });
    if (told("Couldn't add " + chosen.name, done)) showEdited("Added " + chosen.name, id, *done);
}

Result<void> AppModel::addAddress(const Workspace& workspace, const std::string& browser,
                                  const std::string& typed) {
    const Result<Url> address = WorkspaceContents::webAddress(typed, settings_.excludedDomains);
    if (!address) return std::unexpected(address.error());
    const Uuid id = workspace.id;
    const Result<bool> done = edit(id, "Add Address", [&](Workspace& stored) {
        return WorkspaceContents::addAddress(stored.snapshot, browser, *address);
    });
    if (!done) return std::unexpected(done.error());
    showEdited("Added the address", id, *done);
    return {};
}

std::string AppModel::undoWords(const Uuid& id) const {
    const EditHistory::Step* step = edits_.undoable(id);
    return step ? step->words : std::string();
}

std::string AppModel::redoWords(const Uuid& id) const {
    const EditHistory::Step* step = edits_.redoable(id);
    return step ? step->words : std::string();
}

void AppModel::undo(Uuid id) {
    if (const EditHistory::Step* step = edits_.undoable(id)) takeStep(id, *step, true);
}

void AppModel::redo(Uuid id) {
    if (const EditHistory::Step* step = edits_.redoable(id)) takeStep(id, *step, false);
}

void AppModel::takeStep(Uuid id, const EditHistory::Step& step, bool back) {
    const std::string words = step.words;
    const auto changed = changeStored(id, [&](Workspace& stored) -> Result<void> {
        stored.updatedAt = wallNow();
        return back ? EditHistory::apply(step.after, step.before, stored)
                    : EditHistory::apply(step.before, step.after, stored);
    });
    if (!changed) {
        // What was done before it stands on what is there no more.
        edits_.forget(id);
        reload();
    } else if (back) {
        edits_.undone(id);
    } else {
        edits_.redone(id);
    }
    Q_EMIT editsChanged();
    const std::string verb = back ? "undo" : "redo";
    if (told("Couldn't " + verb + " “" + words + "”", changed)) show((back ? "Undid: " : "Redid: ") + words);
}

}  // namespace quillo
