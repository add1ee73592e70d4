// The desktop as a restore finds it, so that everything can be put back.
#pragma once
#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/records/UndoRecord.hpp"

namespace quillo::Capture {

/// A capture like any other, with what tells its windows again. `options` are those of the person's captures;
/// what is open inside windows is asked for only where `mode` quits applications, for only then it has to
/// come back: otherwise windows of applications that an integration would have to tell private ones of stand
/// in it without title and document. `workspace` is about to be restored, and lends its looks.
Task<UndoRecord> undoRecord(DesktopAccess& desktop, Options options, Workspace workspace,
                            CleanSlateMode mode);

}  // namespace quillo::Capture
