// The simulated desktop, which every system has.
#pragma once
#include <filesystem>
#include <memory>
#include <string_view>

#include "WindowEngine/services/FileSystem.hpp"
#include "WindowEngine/services/SystemLog.hpp"
#include "ctl/DesktopConnection.hpp"

namespace quillo::ctl {

/// Of --desktop, before a scene's file.
inline constexpr std::string_view simulatedPrefix = "simulated:";

struct SceneFile {
    std::filesystem::path path;  // absolute
    bool keep = false;           // keepChanges() writes the changed scene back, in one step
    FileSystem& files;
};

/// The desktop that a scene describes, or a report, on a clock of its own that never waits. A bad scene is an
/// error that names file and field; so is a report that is to be kept, which would not be one any more.
Result<std::unique_ptr<DesktopConnection>> openSimulatedDesktop(const SceneFile& scene, SystemLog& log);

}  // namespace quillo::ctl
