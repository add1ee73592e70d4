// How far each window of a restore has come, for the map in the panel. Pure.
#pragma once
#include <QVariantMap>

#include "app/RestoreRun.hpp"

namespace quillo {

/// As the map has a window of which this is said: "restored", "skipped" or "failed"; empty where it is of no
/// window's return. The panel's rows have the colours of these.
QString stateOf(Verdict verdict);

struct RestoreStates {
    /// By CaptureFilter::windowKey, of every window of the workspace: "pending", "landing" once its
    /// application has been come to, then as its item says. At the end of the run a window without an item of
    /// its own shares the fate of its application, where that failed or was skipped.
    QVariantMap byWindow;
    double decided = 0;  // share of the windows whose fate is known, 0 to 1; 1 when the run is over

    static RestoreStates of(const RestoreRun& run);
};

}  // namespace quillo
