// What this system has where a simulated desktop has something else: its own desktop, log and defaults. Each
// system's folder (x11/, macos/) defines systemLayer(); the build takes one of them.
#pragma once
#include <memory>
#include <string>
#include <string_view>

#include "WindowEngine/services/FileSystem.hpp"
#include "WindowEngine/services/SystemLog.hpp"
#include "WindowEngine/support/Executor.hpp"
#include "ctl/DesktopConnection.hpp"
#include "platform/posix/StandardDirectories.hpp"
#include "platform/services/RestoreEvents.hpp"
#include "platform/services/UserDefaults.hpp"

namespace quillo::ctl {

/// What --desktop calls this system's own desktop.
extern const std::string_view systemDesktopName;
/// Whether there are applications that it can start only as the person has said (settings/Launchers).
extern const bool systemHasLaunchers;

class SystemLayer {
  public:
    virtual ~SystemLayer() = default;
    /// Fails where no desktop answers; the text says what to do.
    virtual Result<std::unique_ptr<DesktopConnection>> openDesktop(SystemLog& log) = 0;
    virtual SystemLog& log() = 0;
    /// Where a person finds the log.
    virtual std::string logPlace() const = 0;
    virtual UserDefaults& defaults() = 0;
    /// Listens to the running application, now or later; null where it tells nobody on this system.
    virtual std::unique_ptr<RestoreEvents> listenToRestores(Executor& executor, RestoreEvents::Told told) = 0;
    /// SHA-256, as KnownWorkspaces wants it.
    virtual std::string digest(std::string_view bytes) const = 0;
};

/// `files` must outlive it.
std::unique_ptr<SystemLayer> systemLayer(FileSystem& files, const StandardDirectories& directories);

}  // namespace quillo::ctl
