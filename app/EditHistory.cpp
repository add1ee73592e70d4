#include "app/EditHistory.hpp"

#include <utility>

namespace quillo {
namespace {

std::size_t partsOf(const WorkspaceSnapshot& snapshot) {
    std::size_t parts = snapshot.applications.size();
    for (const ApplicationSnapshot& application : snapshot.applications) {
        parts += application.windows.size();
        if (!application.context) continue;
        for (const ContextWindow& window : application.context->windows) parts += window.urls.size();
    }
    return parts;
}

}  // namespace

EditHistory::Parts::Parts(const Workspace& workspace)
    : name(workspace.name),
      icon(workspace.icon),
      color(workspace.color),
      snapshot(std::make_shared<const WorkspaceSnapshot>(workspace.snapshot)) {}

void EditHistory::add(const Uuid& workspace, std::string words, const Workspace& before,
                      const Workspace& after) {
    Steps& steps = steps_[workspace];
    steps.all.erase(steps.all.begin() + static_cast<std::ptrdiff_t>(steps.done), steps.all.end());
    Step step{std::move(words), Parts(before), Parts(after)};
    // Most changes leave it alone, and most follow upon another.
    if (!steps.all.empty() && *steps.all.back().after.snapshot == before.snapshot)
        step.before.snapshot = steps.all.back().after.snapshot;
    if (before.snapshot == after.snapshot) step.after.snapshot = step.before.snapshot;
    steps.all.push_back(std::move(step));
    shorten(steps.all);
    steps.done = steps.all.size();
}

void EditHistory::shorten(std::vector<Step>& steps) {
    std::size_t parts = 0, kept = 0;
    while (kept < steps.size() && kept < mostSteps) {
        const Step& step = steps[steps.size() - 1 - kept];
        if (step.before.snapshot != step.after.snapshot) parts += partsOf(*step.after.snapshot);
        if (kept > 0 && parts > mostParts) break;
        ++kept;
    }
    steps.erase(steps.begin(), steps.end() - static_cast<std::ptrdiff_t>(kept));
}

const EditHistory::Step* EditHistory::undoable(const Uuid& workspace) const {
    const auto found = steps_.find(workspace);
    return found == steps_.end() || found->second.done == 0 ? nullptr
                                                            : &found->second.all[found->second.done - 1];
}

const EditHistory::Step* EditHistory::redoable(const Uuid& workspace) const {
    const auto found = steps_.find(workspace);
    if (found == steps_.end() || found->second.done == found->second.all.size()) return nullptr;
    return &found->second.all[found->second.done];
}

void EditHistory::undone(const Uuid& workspace) {
    --steps_.at(workspace).done;
}

void EditHistory::redone(const Uuid& workspace) {
    ++steps_.at(workspace).done;
}

Result<void> EditHistory::apply(const Parts& from, const Parts& to, Workspace& stored) {
    bool changedSince = false;
    const auto put = [&](const auto& old, const auto& wanted, auto& value) {
        if (old == wanted) return;
        changedSince = changedSince || value != old;
        value = wanted;
    };
    put(from.name, to.name, stored.name);
    put(from.icon, to.icon, stored.icon);
    put(from.color, to.color, stored.color);
    put(*from.snapshot, *to.snapshot, stored.snapshot);
    if (!changedSince) return {};
    return fail(ErrorKind::refused, "the workspace was changed by something else since then");
}

}  // namespace quillo
