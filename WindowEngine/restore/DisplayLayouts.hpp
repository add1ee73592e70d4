// A workspace is arranged otherwise on each set of displays: which arrangement holds now, and how they are
// kept from one capture to the next. Pure.
#pragma once
#include <cstddef>
#include <functional>
#include <string>

#include "WindowEngine/restore/DisplayTwins.hpp"

namespace quillo::DisplayLayouts {

inline constexpr std::size_t mostKept = 16;

/// Whether the workspace was arranged on these displays, by the snapshot itself or one of its layouts.
bool has(const WorkspaceSnapshot& snapshot, DisplayMapper::DisplayList displays);

/// The snapshot as it was arranged on the set of displays that is there; as it is where it was not. A window
/// that the layout does not know goes where DisplayMapper puts it.
WorkspaceSnapshot arrangedFor(WorkspaceSnapshot snapshot, DisplayMapper::DisplayList current);

/// The same under the identifiers of the displays that are there.
WorkspaceSnapshot fitted(WorkspaceSnapshot snapshot, DisplayMapper::DisplayList current,
                         const DisplayTwins::Pairs& answers);

/// The saved displays of what arrangedFor() would give, within the snapshot.
DisplayMapper::DisplayList displaysFor(const WorkspaceSnapshot& snapshot, DisplayMapper::DisplayList current);

/// A new capture that takes the place of `before`: with what that was on another set of displays, and with
/// its layouts, for the windows that are in both.
WorkspaceSnapshot carriedOver(const WorkspaceSnapshot& before, WorkspaceSnapshot saved);

/// The same workspace, arranged on the displays of `now` as its windows stand there: those that are
/// recognised. Nothing else of `now` is taken. `answers` are of displaysFor() those of `now`.
WorkspaceSnapshot arranged(WorkspaceSnapshot snapshot, const WorkspaceSnapshot& now,
                           const DisplayTwins::Pairs& answers = {});

/// Takes exactly this one out of `layouts`, where it is still there.
void remove(WorkspaceSnapshot& snapshot, const DisplayLayout& layout);

/// Only the applications whose identifier `runs`: what can be arranged.
void keepRunning(WorkspaceSnapshot& snapshot, const std::function<bool(const std::string&)>& runs);

}  // namespace quillo::DisplayLayouts
