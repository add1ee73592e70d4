// The model on a simulated desktop, with surfaces that only remember and a disk that can be made to fail.
#pragma once
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/services/ForwardingFileSystem.hpp"
#include "app/AppModel.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/simulated/SimulatedSystem.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo::samples {

class RecordedSurfaces final : public Surfaces {
  public:
    bool mainWindow = false;
    int broughtForward = 0, steppedAside = 0;
    bool panelsInUse = false;
    std::vector<Rect> numbered;
    std::map<PanelID, PanelPlace> panels;
    std::deque<std::optional<std::filesystem::path>> answers;  // of the dialogs to come; none left: cancelled
    std::vector<std::string> proposedNames;
    std::function<void()> openMainAsked;

    bool bringMainWindowForward() override {
        broughtForward += mainWindow;
        return mainWindow;
    }
    void showPanel(PanelID panel, PanelPlace place) override { panels[panel] = place; }
    void closePanel(PanelID panel) override { panels.erase(panel); }
    bool panelVisible(PanelID panel) const override { return panels.contains(panel); }
    bool panelInUse(PanelID) const override { return panelsInUse; }
    void stepAside() override { ++steppedAside; }
    void numberScreens(const std::vector<Rect>& screens) override { numbered = screens; }
    Task<std::optional<std::filesystem::path>> fileToWrite(std::string proposedName) override {
        proposedNames.push_back(std::move(proposedName));
        return answer();
    }
    Task<std::optional<std::filesystem::path>> fileToRead() override { return answer(); }
    Task<std::optional<std::filesystem::path>> folderToWrite() override { return answer(); }
    std::unique_ptr<SurfaceObserver> observeOpenMainWindow(std::function<void()> asked) override {
        openMainAsked = std::move(asked);
        return std::make_unique<SurfaceObserver>();
    }

  private:
    Task<std::optional<std::filesystem::path>> answer() {
        co_await sleepFor(std::chrono::seconds(3));  // people take their time
        if (answers.empty()) co_return std::nullopt;
        auto file = std::move(answers.front());
        answers.pop_front();
        co_return file;
    }
};

/// Watches are told of changes by hand: a real one would bring them at some time of its own.
class TestDisk final : public ForwardingFileSystem {
  public:
    using ForwardingFileSystem::ForwardingFileSystem;

    std::optional<Error> createFailure, removeFailure, readFailure, listFailure;
    int lists = 0;
    std::vector<std::function<void()>> watchers;

    Result<std::string> read(const Path& file) override {
        if (readFailure) return std::unexpected(*readFailure);
        return ForwardingFileSystem::read(file);
    }
    Result<std::vector<std::string>> list(const Path& directory) override {
        ++lists;
        if (listFailure) return std::unexpected(*listFailure);
        return ForwardingFileSystem::list(directory);
    }
    Result<void> createFile(const Path& file, std::string_view bytes) override {
        if (createFailure) return std::unexpected(*createFailure);
        return ForwardingFileSystem::createFile(file, bytes);
    }
    Result<void> remove(const Path& file) override {
        if (removeFailure) return std::unexpected(*removeFailure);
        return ForwardingFileSystem::remove(file);
    }
    Result<void> removeTree(const Path& directory) override {
        if (removeFailure) return std::unexpected(*removeFailure);
        return ForwardingFileSystem::removeTree(directory);
    }
    Result<std::unique_ptr<FileWatch>> watch(const Path&, std::function<void()> changed) override {
        watchers.push_back(std::move(changed));
        return std::make_unique<FileWatch>();
    }
    void tellWatchers() {
        for (const auto& watcher : std::exchange(watchers, {})) watcher();
    }
};

/// Tells contents apart, which is all that is wanted of a digest here.
inline std::string digestForTests(std::string_view bytes) {
    return std::to_string(std::hash<std::string_view>{}(bytes));
}

/// Before the services, which live on its executor.
struct SimulatedDesk {
    TestDesktop desktop;
};

class Model : private SimulatedDesk, public SimulatedSystem {
  public:
    using SimulatedDesk::desktop;

    /// A desk with two applications, one of them not running.
    static Scene desk() {
        return scene(
            {sceneApplication("org.editor", {sceneWindow("Notes", {10, 40, 400, 300}),
                                             sceneWindow("Letter", {420, 40, 400, 300})}),
             notRunning(sceneApplication("org.viewer", {sceneWindow("Page", {10, 400, 300, 200})}))});
    }

    explicit Model(const Scene& scene = desk(), std::uint64_t seed = 1)
        : SimulatedDesk{TestDesktop(scene, seed)}, SimulatedSystem(desktop.executor()) {
        AppSettings settings;
        settings.onboarded = true;
        EXPECT_TRUE(settings.save(defaults));
        start();
    }

    /// A first or another start of the program.
    void start() {
        model.reset();
        model = std::make_unique<AppModel>(
            AppServices{services(desktop.access, disk), directory.path(), digestForTests, shell, *shown});
        model->openWindowAction = [this] { ++windowsOpened; };
    }

    AppModel* operator->() { return model.get(); }
    void run(Duration duration) { desktop.executor().runFor(duration); }
    void setTrusted(bool trusted) { desktop.world().setTrusted(trusted); }
    double seconds() { return desktop.seconds(); }

    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const Workspace& workspace : model->workspaces()) names.push_back(workspace.name);
        std::ranges::sort(names);
        return names;
    }
    const Workspace& named(std::string_view name) const {
        const auto found = std::ranges::find(model->workspaces(), name, &Workspace::name);
        if (found == model->workspaces().end()) throw std::logic_error("no workspace of this name");
        return *found;
    }
    /// Puts one into the library as if it had been saved here by quilloctl.
    void keep(const Workspace& workspace) {
        EXPECT_TRUE(store.save(workspace));
        EXPECT_TRUE(known.savedHere(workspace));
        model->reload();
    }
    void put(std::initializer_list<const char*> names) {
        for (const char* name : names) keep(samples::named(Uuid::random(), name));
    }
    /// Until the capture that was begun is under review.
    CaptureDraft& review() {
        EXPECT_TRUE(desktop.executor().runUntil([&] { return model->draft() != nullptr; }, 1min));
        return *model->draft();
    }
    void save(const std::string& name) {
        model->beginCapture();
        review().setName(name);
        model->commit(*model->draft());
    }
    void finishRestore() {
        EXPECT_TRUE(desktop.executor().runUntil([&] { return !model->restoreRunning(); }, 10min));
    }
    void change(const std::function<void(AppSettings&)>& edit) {
        AppSettings settings = model->settings();
        edit(settings);
        model->setSettings(settings);
    }

    const TemporaryDirectory directory;
    PosixFileSystem posix;
    TestDisk disk{posix};
    WorkspaceStore store{posix, directory / "workspaces"};
    SessionHistory history{posix, directory / "sessions"};
    KnownWorkspaces known{defaults, digestForTests, [](const Uuid&) { return true; }};
    RecordedSurfaces surfaces;
    Surfaces* shown = &surfaces;  // of the starts to come
    int windowsOpened = 0;
    std::unique_ptr<AppModel> model;
};

}  // namespace quillo::samples
