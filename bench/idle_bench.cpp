// What the application's model costs while nothing happens: the look at the permission once a second and the
// snapshot timer, over the real X11 layer. The processor time of this whole process is what counts.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <memory>

#include "WindowEngine/support/Loops.hpp"
#include "app/AppModel.hpp"
#include "platform/linux/Sha256.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/simulated/SimulatedSystem.hpp"
#include "platform/x11/X11Desktop.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace {

using namespace quillo;
using namespace std::chrono_literals;

struct NoSurfaces final : Surfaces {
    bool bringMainWindowForward() override { return false; }
    void showPanel(PanelID, PanelPlace) override {}
    void closePanel(PanelID) override {}
    bool panelVisible(PanelID) const override { return false; }
    Task<std::optional<std::filesystem::path>> fileToWrite(std::string) override { co_return std::nullopt; }
    Task<std::optional<std::filesystem::path>> fileToRead() override { co_return std::nullopt; }
    Task<std::optional<std::filesystem::path>> folderToWrite() override { co_return std::nullopt; }
    std::unique_ptr<SurfaceObserver> observeOpenMainWindow(std::function<void()>) override { return nullptr; }
};

struct SilentLog final : SystemLog {
    void write(std::string_view, LogLevel, std::string_view) override {}
};

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace

int main() {
    const x11test::PrivateDesktop desktop("openbox");
    LoopExecutor executor;
    SilentLog log;
    const auto layer = X11Desktop::create(executor, {});
    if (!layer) {
        std::fprintf(stderr, "%s\n", layer.error().text.c_str());
        return 1;
    }
    WindowHandleCache handles;
    DesktopAccess access{(*layer)->platform(log), handles};
    const TemporaryDirectory data;
    PosixFileSystem files;
    SimulatedSystem system(executor);
    AppSettings settings;
    settings.onboarded = true;
    settings.autoSnapshotMinutes = 5;
    if (!settings.save(system.defaults)) return 1;
    NoSurfaces surfaces;
    const AppModel model({system.services(access, files), data.path(), sha256, system.shell, surfaces});
    executor.runUntil([] { return false; }, 2s);  // what starting up left to do

    constexpr auto watched = 30s;
    const double before = processorSeconds();
    executor.runUntil([] { return false; }, watched);
    const double used = processorSeconds() - before;
    const double percent = 100 * used / std::chrono::duration<double>(watched).count();
    std::printf("idle/model %.0f ms %.3f ms 1 percent=%.5f\n",
                std::chrono::duration<double, std::milli>(watched).count(), used * 1e3, percent);
    return model.busy() ? 1 : 0;
}
