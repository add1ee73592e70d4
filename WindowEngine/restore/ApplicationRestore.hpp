// What a restore run shares with the steps that bring back one of its applications. Internal to Restore.
#pragma once
#include <chrono>
#include <optional>
#include <vector>

#include "WindowEngine/restore/ItemSink.hpp"
#include "WindowEngine/restore/SavedDocuments.hpp"
#include "WindowEngine/restore/WindowPresence.hpp"

namespace quillo::Restore {

inline Duration toDuration(double seconds) {
    return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

/// For a window that an application was asked for, by a document or by itself.
inline constexpr Duration windowPatience = std::chrono::seconds(5);
inline constexpr Duration windowInterval = std::chrono::milliseconds(150);  // between looks for it

/// One application of a run. The references outlive every task of it.
struct ApplicationRestore {
    DesktopAccess& desktop;
    const ApplicationSnapshot& application;
    const Options& options;
    const ItemSink& sink;
    WindowPresence& presence;
    TimePoint deadline;                    // its launch timeout, counted from its start
    bool launched = false;                 // by this run
    bool opensMore = false;                // launched, or asked by this run for a window, a document or a tab
    std::vector<SavedDocument> sent = {};  // documents that travelled with the launch
    std::vector<SavedDocument> following = {};  // documents for when the launch has brought a window
    std::vector<SavedDocument> late = {};       // documents that did not appear while they were waited for

    TimePoint now() const { return desktop.platform.executor.now(); }
    /// See liveWindows().
    std::vector<LiveWindow> live(bool recoverHidden) const;
    void add(RestoreReport::Status status) const { sink.add(application, std::move(status)); }
};

/// The windows of the application as a restore may see them: of Safari's only those verified as normal
/// browsing; a private window is neither moved nor reported. Nor is one that stands for a left-out window.
std::vector<LiveWindow> liveWindows(DesktopAccess& desktop, const ApplicationSnapshot& application,
                                    bool recoverHidden, const PassedOver& passedOver);
std::vector<LiveWindowInfo> infosOf(const std::vector<LiveWindow>& windows);

/// From where it can be launched; absent where it cannot. The saved location decides only among installed
/// applications of that identifier; a workspace file may come from somebody else.
std::optional<Url> locationOf(Applications& applications, const ApplicationSnapshot& application);

}  // namespace quillo::Restore
