// What brings workspaces back besides the window: the shortcuts of single ones, and links.
#include <algorithm>

#include "app/AppModel.hpp"
#include "app/WorkspaceAddress.hpp"

namespace quillo {

void AppModel::setAutomation(const Uuid& workspace, const WorkspaceAutomation& chosen) {
    AppSettings settings = settings_;
    settings.setAutomation(workspace, chosen);
    setSettings(std::move(settings));
}

/// A workspace that is not in the library holds no combination.
std::optional<HotKeys::Shortcuts> AppModel::shortcuts() const {
    if (!settings_.shortcutsEnabled) return std::nullopt;
    HotKeys::Shortcuts shortcuts;
    for (const HotKeyAction action : allHotKeyActions) shortcuts[action] = settings_.shortcut(action);
    for (const Workspace& workspace : workspaces_) {
        if (const auto chosen = settings_.automationOf(workspace.id).shortcut)
            shortcuts[workspace.id] = *chosen;
    }
    return shortcuts;
}

void AppModel::registerShortcuts() {
    if (const std::optional<HotKeys::Shortcuts> wanted = shortcuts())
        hotKeys_.registerAll(*wanted);
    else
        hotKeys_.unregisterAll();
}

void AppModel::pressed(const HotKeyTarget& target) {
    if (const Uuid* const workspace = std::get_if<Uuid>(&target)) return restoreFromLibrary(*workspace);
    if (std::get<HotKeyAction>(target) == HotKeyAction::save)
        beginCapture();
    else
        toggleSwitcher();
}

void AppModel::restoreFromLibrary(const Uuid& workspace) {
    const auto found = std::ranges::find(workspaces_, workspace, &Workspace::id);
    if (found != workspaces_.end()) restore(Workspace(*found), found->cleanSlate);
}

void AppModel::openAddress(std::string_view address) {
    const Result<std::string> which = workspaceInAddress(address);
    const Result<Workspace> found = which ? workspaceCalled(*which, workspaces_) : std::unexpected(which.error());
    if (found) return restore(*found, found->cleanSlate, Asker::link);
    openMain();
    show("A link can't be followed: " + found.error().text, ToastKind::refusal);
}

}  // namespace quillo
