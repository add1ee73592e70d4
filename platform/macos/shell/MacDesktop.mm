#include "platform/macos/shell/MacDesktop.hpp"

#import <AppKit/AppKit.h>

#include "platform/macos/MacAccessibility.hpp"
#include "platform/macos/MacApplications.hpp"
#include "platform/macos/MacWindowServer.hpp"
#include "platform/macos/shell/BridgeMoveWindow.hpp"
#include "platform/macos/shell/NativeScreens.hpp"
#include "platform/macos/shell/NativeWorkspace.hpp"
#include "platform/posix/NoBrowserFiles.hpp"
#include "platform/posix/ScriptProcess.hpp"

namespace quillo {

struct MacDesktop::Services {
    explicit Services(Executor& given)
        : executor(given), applications(executor, workspace), screens(nativeScreens) {}

    Executor& executor;
    NativeWorkspace workspace;
    MacApplications applications;
    MacScreens screens;
    MacAccessibility accessibility{systemSymbol, [this](ProcessID pid) { return applications.family(pid); }};
    MacWindowServer windowServer{{executor, accessibility, applications, screens},
                                 systemSymbol,
                                 // Where it is not there, that is one way of moving windows less, and doctor
                                 // may have to say that there is none.
                                 QuilloHasBridgeMove() ? QuilloBridgeMoveWindow : nullptr};
    ScriptProcess scripts;
    NoBrowserFiles browserFiles;
};

MacDesktop::MacDesktop(Executor& executor) {
    @autoreleasepool {
        (void)NSApplication
            .sharedApplication;  // the window server answers a program only once it has this object
    }
    services_ = std::make_unique<Services>(executor);
}

MacDesktop::~MacDesktop() = default;

Platform MacDesktop::platform(SystemLog& log) {
    return {services_->executor, services_->accessibility, services_->windowServer, services_->applications,
            services_->screens,  services_->scripts,       services_->browserFiles, log};
}

}  // namespace quillo
