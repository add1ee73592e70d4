// The engine's whole seam to the outside, bundled. main() builds one platform layer and hands this along.
#pragma once
#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/services/Applications.hpp"
#include "WindowEngine/services/BrowserFiles.hpp"
#include "WindowEngine/services/FileSystem.hpp"
#include "WindowEngine/services/Screens.hpp"
#include "WindowEngine/services/ScriptInterpreter.hpp"
#include "WindowEngine/services/SystemLog.hpp"
#include "WindowEngine/services/WindowServer.hpp"
#include "WindowEngine/support/Executor.hpp"

namespace quillo {

/// References only: whoever builds it keeps the services alive for as long as it is used.
struct Platform {
    Executor& executor;
    AccessibilityService& accessibility;
    WindowServer& windowServer;
    Applications& applications;
    Screens& screens;
    ScriptInterpreter& scripts;
    BrowserFiles& browserFiles;
    SystemLog& log;
};

}  // namespace quillo
