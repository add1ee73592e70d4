// Windows of an application that neither its launch nor a document brought back: five terminals were saved,
// and launched once it opens one.
#pragma once
#include <optional>
#include <span>
#include <vector>

#include "WindowEngine/restore/ApplicationRestore.hpp"

namespace quillo::Restore {

/// What has a missing window back: a document that another window shows too (two terminals in one folder),
/// or, absent, nothing but a window.
using WindowRequest = std::optional<Url>;

/// One for each saved window that no live one stands for, documents first. Never more than would make as many
/// windows as were saved, dialogs left out; none for a window whose document is shown nowhere, which is the
/// documents' business, and none where the platform can ask this application for no window.
std::vector<WindowRequest> missingWindows(const Platform& platform, const ApplicationSnapshot& application,
                                          const Options& options, std::span<const LiveWindowInfo> live);

/// Asks for them one after the other, and looks what comes of each: after one that brings no window within
/// 5 s, or the launch timeout where that is less, nothing more is asked for. `live` are the application's
/// windows. Whether any was asked for: then there may be others by now.
Task<bool> openMissingWindows(ApplicationRestore& restore, std::vector<LiveWindowInfo> live);

/// Sees to it that an application which fills empty windows with documents has one: asks a running one for
/// it, unless it has as many windows as were saved, dialogs left out, or a single one without a document.
/// False where none came within 5 s, or the launch timeout where that is less, or the platform could not ask.
Task<bool> openEmptyWindow(const ApplicationRestore& restore);

}  // namespace quillo::Restore
