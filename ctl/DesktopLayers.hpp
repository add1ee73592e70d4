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

/// The desktop that the scene in `file` describes, on a clock of its own that never waits. With `keepScene`,
/// keepChanges() writes the changed scene back in one step.
Result<std::unique_ptr<Desktop>> openSimulatedDesktop(const std::filesystem::path& file, bool keepScene,
                                                      FileSystem& files, SystemLog& log);

}  // namespace quillo::ctl
