// A capture under review: the snapshot as taken, and what the person unticked of it. Nothing is saved before
// AppModel::commit, and nothing of it is left when it is dropped.
#pragma once
#include <QObject>
#include <array>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/records/Workspace.hpp"

namespace quillo {

class CaptureDraft final : public QObject {
    Q_OBJECT

  public:
    /// Symbol names of the icons there are to choose from.
    static constexpr std::array<std::string_view, 12> icons{
        "square.stack.3d.up", "briefcase",  "hammer", "paintbrush.pointed", "terminal", "book",
        "gamecontroller",     "music.note", "person", "sparkles",           "leaf",     "globe"};

    /// Name, icon and color of `updating`, and unticked what had been left out of it; without one no name,
    /// the first icon, a color by chance, and everything ticked.
    /// `warning`: why it may not be what the person wants back, a sentence; empty where nothing says so.
    CaptureDraft(WorkspaceSnapshot snapshot, std::optional<Workspace> updating, bool testRestoreAfterSave,
                 std::string warning = {});

    const Uuid& id() const { return id_; }
    const std::string& name() const { return name_; }
    const std::string& icon() const { return icon_; }
    const std::string& color() const { return color_; }
    const WorkspaceSnapshot& snapshot() const { return snapshot_; }
    const std::optional<Workspace>& updating() const { return updating_; }
    bool testRestoreAfterSave() const { return testRestoreAfterSave_; }
    const std::string& warning() const { return warning_; }

    void setName(std::string name);
    void setIcon(std::string icon);
    void setColor(std::string color);

    const std::set<std::string>& excludedApps() const { return excluded_.apps; }
    const std::set<std::string>& excludedWindows() const { return excluded_.windows; }
    const std::set<std::string>& excludedContextURLs() const { return excluded_.contextURLs; }
    const LeftOut::Exclusions& excluded() const { return excluded_; }
    void setExcluded(LeftOut::Exclusions excluded);
    /// Whether the ticks are others than at first.
    bool exclusionsTouched() const { return excluded_ != excludedAtFirst_; }

    // The ticks of the review's rows. An application that is ticked again comes back with exactly the windows
    // and addresses that were not unticked by themselves; with all its windows where none of them would be
    // left.
    bool includesApp(const std::string& bundleIdentifier) const;
    void includeApp(const std::string& bundleIdentifier, bool included);
    bool includesWindow(const std::string& bundleIdentifier, std::int64_t index) const;
    /// An application goes with the last of its windows, and comes back with the first.
    void includeWindow(const std::string& bundleIdentifier, std::int64_t index, bool included);
    /// `windowIndex`: the context window's source index, else its place; `urlIndex`: the address's place.
    bool includesContextURL(const std::string& bundleIdentifier, std::int64_t windowIndex,
                            std::int64_t urlIndex) const;
    void includeContextURL(const std::string& bundleIdentifier, std::int64_t windowIndex,
                           std::int64_t urlIndex, bool included);

    /// What would be saved now; computed at each call.
    WorkspaceSnapshot filteredSnapshot() const;

  Q_SIGNALS:
    void changed();  // name, icon or color
    void exclusionsChanged();

  private:
    bool include(std::set<std::string>& excluded, const std::string& key, bool included);
    const ApplicationSnapshot* application(const std::string& bundleIdentifier) const;
    bool everyWindowExcluded(const std::string& bundleIdentifier) const;

    const Uuid id_ = Uuid::random();
    std::string name_, icon_, color_;
    const WorkspaceSnapshot snapshot_;
    const std::optional<Workspace> updating_;
    const LeftOut::Exclusions excludedAtFirst_;
    LeftOut::Exclusions excluded_ = excludedAtFirst_;
    const bool testRestoreAfterSave_;
    const std::string warning_;
};

/// A window's row in the review: its title, or what stands for it, and how many tabs it holds.
std::string reviewLabel(const WindowSnapshot& window);
/// "Desktop 2"; empty for a window that no desktop is known of.
std::string placementLabel(const WindowSnapshot& window);

}  // namespace quillo
