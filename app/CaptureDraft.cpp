#include "app/CaptureDraft.hpp"

#include <algorithm>
#include <random>
#include <utility>

#include "WindowEngine/capture/CaptureFilter.hpp"

namespace quillo {
namespace {

std::string colorByChance() {
    std::random_device source;
    return std::string(Workspace::colors[std::uniform_int_distribution<std::size_t>(
        0, Workspace::colors.size() - 1)(source)]);
}

}  // namespace

CaptureDraft::CaptureDraft(WorkspaceSnapshot snapshot, std::optional<Workspace> updating,
                           bool testRestoreAfterSave, std::string warning)
    : name_(updating ? updating->name : ""),
      icon_(updating ? updating->icon : icons.front()),
      color_(updating ? updating->color : colorByChance()),
      snapshot_(std::move(snapshot)),
      updating_(std::move(updating)),
      excludedAtFirst_(updating_ ? LeftOut::recognised(updating_->snapshot, snapshot_)
                                 : LeftOut::Exclusions()),
      testRestoreAfterSave_(testRestoreAfterSave),
      warning_(std::move(warning)) {}

void CaptureDraft::setName(std::string name) {
    if (std::exchange(name_, std::move(name)) != name_) Q_EMIT changed();
}

void CaptureDraft::setIcon(std::string icon) {
    if (std::exchange(icon_, std::move(icon)) != icon_) Q_EMIT changed();
}

void CaptureDraft::setColor(std::string color) {
    if (std::exchange(color_, std::move(color)) != color_) Q_EMIT changed();
}

bool CaptureDraft::includesApp(const std::string& bundleIdentifier) const {
    return !excluded_.apps.contains(bundleIdentifier);
}

void CaptureDraft::includeApp(const std::string& bundleIdentifier, bool included) {
    bool changes = include(excluded_.apps, bundleIdentifier, included);
    if (included && everyWindowExcluded(bundleIdentifier)) {
        for (const WindowSnapshot& window : application(bundleIdentifier)->windows)
            changes |=
                include(excluded_.windows, CaptureFilter::windowKey(bundleIdentifier, window.index), true);
    }
    if (changes) Q_EMIT exclusionsChanged();
}

bool CaptureDraft::includesWindow(const std::string& bundleIdentifier, std::int64_t index) const {
    return !excluded_.windows.contains(CaptureFilter::windowKey(bundleIdentifier, index));
}

void CaptureDraft::includeWindow(const std::string& bundleIdentifier, std::int64_t index, bool included) {
    const bool cameBack = included && everyWindowExcluded(bundleIdentifier);
    if (!include(excluded_.windows, CaptureFilter::windowKey(bundleIdentifier, index), included)) return;
    if (cameBack || everyWindowExcluded(bundleIdentifier))
        include(excluded_.apps, bundleIdentifier, cameBack);
    Q_EMIT exclusionsChanged();
}

bool CaptureDraft::includesContextURL(const std::string& bundleIdentifier, std::int64_t windowIndex,
                                      std::int64_t urlIndex) const {
    return !excluded_.contextURLs.contains(
        CaptureFilter::contextURLKey(bundleIdentifier, windowIndex, urlIndex));
}

void CaptureDraft::includeContextURL(const std::string& bundleIdentifier, std::int64_t windowIndex,
                                     std::int64_t urlIndex, bool included) {
    if (include(excluded_.contextURLs, CaptureFilter::contextURLKey(bundleIdentifier, windowIndex, urlIndex),
                included))
        Q_EMIT exclusionsChanged();
}

/// Whether that changes anything.
bool CaptureDraft::include(std::set<std::string>& excluded, const std::string& key, bool included) {
    return included ? excluded.erase(key) > 0 : excluded.insert(key).second;
}

const ApplicationSnapshot* CaptureDraft::application(const std::string& bundleIdentifier) const {
    const auto found =
        std::ranges::find(snapshot_.applications, bundleIdentifier, &ApplicationSnapshot::bundleIdentifier);
    return found == snapshot_.applications.end() ? nullptr : &*found;
}

/// False also for one that had none.
bool CaptureDraft::everyWindowExcluded(const std::string& bundleIdentifier) const {
    const ApplicationSnapshot* const one = application(bundleIdentifier);
    return one && !one->windows.empty() &&
           std::ranges::none_of(one->windows, [&](const WindowSnapshot& window) {
               return includesWindow(bundleIdentifier, window.index);
           });
}

void CaptureDraft::setExcluded(LeftOut::Exclusions excluded) {
    if (std::exchange(excluded_, std::move(excluded)) != excluded_) Q_EMIT exclusionsChanged();
}

WorkspaceSnapshot CaptureDraft::filteredSnapshot() const {
    return CaptureFilter::apply(snapshot_, excluded_.apps, excluded_.windows, excluded_.contextURLs);
}

std::string reviewLabel(const WindowSnapshot& window) {
    std::string label;
    if (window.title && !window.title->empty()) {
        label = *window.title;
    } else {
        label = window.isFullscreen ? "Full screen" : "Untitled";
    }
    if (window.tabs) label += " · " + std::to_string(window.tabs->size()) + " tabs";
    return label;
}

std::string placementLabel(const WindowSnapshot& window) {
    return window.desktop ? "Desktop " + std::to_string(window.desktop->number()) : "";
}

}  // namespace quillo
