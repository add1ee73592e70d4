// The platform layers that main() chooses from, each as a Desktop.
#pragma once
#include <filesystem>
#include <memory>

#include "WindowEngine/services/FileSystem.hpp"
#include "WindowEngine/services/SystemLog.hpp"
#include "ctl/Desktop.hpp"

namespace quillo::ctl {

/// The real desktop. Fails where no X server answers; the text says what to do.
Result<std::unique_ptr<Desktop>> openX11Desktop(SystemLog& log);

struct SceneFile {
    std::filesystem::path path;  // absolute
    bool keep = false;           // keepChanges() writes the changed scene back, in one step
    FileSystem& files;
};

/// The desktop that a scene describes, on a clock of its own that never waits. A bad scene is an error that
/// names file and field.
Result<std::unique_ptr<Desktop>> openSimulatedDesktop(const SceneFile& scene, SystemLog& log);

}  // namespace quillo::ctl
