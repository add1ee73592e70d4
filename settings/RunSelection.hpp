// What a person leaves out of one run of a workspace, which stays as it is saved. Pure.
#pragma once
#include <set>
#include <string>

#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/restore/Restore.hpp"

namespace quillo {

struct RunSelection {
    LeftOut::Exclusions excluded{};  // of the workspace, by the keys of CaptureFilter
    std::set<std::string> spared{};  // identifiers of others that a clean slate leaves alone

    bool empty() const { return excluded.empty() && spared.empty(); }
    bool operator==(const RunSelection&) const = default;

    /// Leaves of the snapshot what is to be brought back, and has the run leave the rest alone; what the
    /// workspace holds is never hidden or quit. An application goes with the last of its windows.
    void apply(WorkspaceSnapshot& snapshot, Restore::Options& options) const;
};

}  // namespace quillo
