// The model under random operations, events and faults: what excludes what holds at every turn, the library
// is what is stored, nothing stale is saved, and everything ends. A failure prints its seed, and the same
// seed replays it (QUILLO_SEED=n); QUILLO_SEEDS=n asks for more of them.
#include <fmt/format.h>

#include "app/LibraryState.hpp"
#include "app/Switcher.hpp"
#include "tests/LogWords.hpp"
#include "tests/app/MemoryFileSystem.hpp"
#include "tests/app/ModelFixture.hpp"
#include "tests/journeys/RandomDesktop.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using Path = std::filesystem::path;

class RandomModel {
  public:
    explicit RandomModel(std::uint64_t seed)
        : random_(seed), scenes_(seed), scene_(drawScene()), desktop_(scene_, seed) {
        prepareFiles();
        AppSettings settings;
        settings.onboarded = chance(80);
        settings.autoSnapshotMinutes = chance(70) ? 5 : 0;
        settings.enabledAdapters = {"finder", "chromium", "safari"};
        EXPECT_TRUE(settings.save(system_.defaults));
        model_ = std::make_unique<AppModel>(AppServices{system_.services(desktop_.access, disk_), "/data",
                                                        samples::digestForTests, system_.shell, surfaces_});
        index_.emplace([this]() -> const std::vector<Workspace>& { return model_->workspaces(); });
        library_.emplace(*index_);
        connect();
    }
    ~RandomModel() {
        for (const std::string& line : desktop_.simulated->logLines()) expectOnlyKnownSentences(line);
    }
    RandomModel(const RandomModel&) = delete;
    RandomModel& operator=(const RandomModel&) = delete;

    void act(int operations) {
        for (int i = 0; i < operations && !testing::Test::HasFailure(); ++i) {
            const std::int64_t worthless[] = {12, 14, 19};  // what a session capture under way may become by
            operate(model_->snapshotting() && chance(50) ? anyOf(worthless) : number(0, 26));
            check();
            wait();
        }
    }

    /// Without anything new, whatever runs comes to its end.
    void expectRest() {
        diskFails_ = false;
        handling_ = true;  // handlers begin nothing more
        AppSettings settings = model_->settings();
        settings.autoSnapshotMinutes = 0;
        model_->setSettings(settings);
        model_->dismissDraft();
        run(1h);  // a draft may still come of a capture
        model_->dismissDraft();
        model_->answerQuestion(false);
        run(10min);
        EXPECT_FALSE(model_->busy());
        if (model_->toast()) EXPECT_EQ(model_->toastKind(), ToastKind::failure);
        EXPECT_FALSE(surfaces_.panelVisible(PanelID::restore));
        EXPECT_EQ(model_->sessions(), SessionHistory(disk_, "/data/sessions").list());
    }

    /// In the midst of whatever it does.
    void expectEnd() {
        library_.reset();
        index_.reset();
        model_.reset();
        const std::uint64_t version = disk_.version;
        desktop_.executor().runFor(1h);
        EXPECT_EQ(disk_.version, version) << "something was written after the end";
        EXPECT_TRUE(desktop_.executor().idle());
        EXPECT_EQ(system_.hotKeys.registrations(), 0U);
        for (const auto& hold : holds_) EXPECT_TRUE(hold.expired());
    }

  private:
    std::int64_t number(std::int64_t from, std::int64_t to) {
        return std::uniform_int_distribution(from, to)(random_);
    }
    bool chance(int percent) { return number(1, 100) <= percent; }
    template <class List>
    auto anyOf(List& list) -> decltype(list[0]) {
        return list[static_cast<std::size_t>(number(0, std::ssize(list) - 1))];
    }

    /// With a browser that answers slowly, so that captures take their time and meet what comes meanwhile.
    simulated::Scene drawScene() {
        simulated::Scene scene = scenes_.scene();
        const bool finderThere =
            std::ranges::any_of(scene.applications, [](const simulated::SceneApplication& application) {
                return application.identifier == "com.apple.finder";
            });
        if (!finderThere) {
            simulated::SceneApplication finder;
            finder.identifier = finder.name = "com.apple.finder";
            simulated::SceneWindow& window = finder.windows.emplace_back();
            window.title = "ada";
            window.frame = {10, 40, 400, 300};
            window.tabs = {"/home/ada/"};
            scene.applications.push_back(finder);
        }
        scene.faults.push_back({.kind = simulated::FaultKind::automationSlow,
                                .application = "com.apple.finder",
                                .title = {},
                                .value = {},
                                .after = 0,
                                .seconds = static_cast<double>(number(0, 60)) / 10,
                                .onWrite = false,
                                .onScript = false});
        return scene;
    }

    void prepareFiles() {
        for (const char* directory : {"/files", "/data/workspaces"})
            ASSERT_TRUE(disk_.createDirectories(directory));
        const Workspace shared = samples::named(Uuid::random(), "Shared");
        ASSERT_TRUE(disk_.createFile("/files/good.json", WorkspaceCoding::encode(shared).value()));
        ASSERT_TRUE(disk_.createFile("/files/damaged.json", "{\"id\": 7"));
        ASSERT_TRUE(WorkspaceStore(disk_, "/data/workspaces").save(samples::named(Uuid::random(), "First")));
        disk_.refuses = [this] {
            if (!diskFails_ || !chance(20)) return false;
            lastTrouble_ = desktop_.executor().now();
            return true;
        };
        disk_.onWritten = [this](const Path& file, const std::string& bytes) { written(file, bytes); };
    }

    void connect() {
        QObject::connect(&*model_, &AppModel::workspacesChanged, &*index_, &LibraryIndex::reload);
        QObject::connect(&*model_, &AppModel::workspacesChanged, [this] {
            if (!handling_) EXPECT_FALSE(committing_ && model_->draft()) << "saved, and could be saved again";
        });
        for (const auto signal :
             {&AppModel::busyChanged, &AppModel::draftChanged, &AppModel::restoreChanged,
              &AppModel::workspacesChanged, &AppModel::sessionsChanged, &AppModel::settingsChanged,
              &AppModel::questionChanged, &AppModel::capturingChanged,
              &AppModel::refreshingCurrentSnapshotChanged, &AppModel::toastChanged}) {
            QObject::connect(&*model_, signal, [this] {
                checkExclusion();
                if (!std::exchange(handling_, true)) {
                    if (chance(4)) operate(number(0, 15));  // as a view's handler might
                    handling_ = false;
                }
            });
        }
    }

    // What happens.

    void operate(std::int64_t which) {
        switch (which) {
            case 0:
                return model_->beginCapture(chance(30) ? std::optional(workspace()) : std::nullopt,
                                            chance(30));
            case 1:
                return model_->beginCapture();
            case 2:
            case 3:
                return review();
            case 4:
                return chance(50) ? model_->dismissDraft() : model_->refreshCurrentSnapshot();
            case 5:
            case 6:
                return model_->restore(anyWorkspace(), CleanSlateMode(number(0, 2)));
            case 7:
                return chance(60) ? model_->answerQuestion(chance(80)) : model_->closeRestorePanel();
            case 8:
                return model_->rename(anyWorkspace(), name());
            case 9:
                return model_->duplicate(anyWorkspace());
            case 10:
                return model_->deleteWorkspace(anyWorkspace());
            case 11:
                return model_->setCleanSlate(anyWorkspace(), CleanSlateMode(number(0, 2)));
            case 12:
            case 13:
                return changeSettings();
            case 14:
                ++forgotten_;
                return chance(10) ? model_->deleteAllData() : model_->deleteSessionHistory();
            case 15:
                return model_->captureSession();
            case 16:
            case 17:
                return dialog();
            case 18:
                return holds_.push_back(system_.power.emit(PowerEvent(number(0, 1))));
            case 19:
                return trust(chance(70));
            case 20:
                diskFails_ = chance(50);
                return;
            case 21:
                return otherProcess();
            case 22:
                return scenes_.disturb(desktop_.world(), false);
            case 23:
                return switcher();
            case 24:
                return pressHotKey();
            case 25:
                return preview();
            default:
                return chance(50) ? model_->requestAccessibility() : model_->openMain();
        }
    }

    void wait() {
        switch (number(0, 5)) {
            case 0:
                return;
            case 1:
                return turns(number(1, 12));
            case 2:
                return run(std::chrono::milliseconds(number(1, 200)));
            case 3:
            case 4:
                return run(std::chrono::milliseconds(number(1, 10'000)));
            default:
                return run(std::chrono::minutes(number(1, 12)));
        }
    }

    /// One of the library's own, which its operations must bear to be given; or one that may be gone by now.
    const Workspace& anyWorkspace() {
        std::vector<const Workspace*> all;
        for (const auto* list : {&model_->workspaces(), &model_->sessions()})
            for (const Workspace& each : *list) all.push_back(&each);
        std::ranges::sort(all, {}, &Workspace::name);  // identities differ from run to run
        if (all.empty() || chance(15)) return gone_;
        const Workspace& chosen = *anyOf(all);
        if (chance(20)) gone_ = chosen;
        return chosen;
    }
    Workspace workspace() { return anyWorkspace(); }
    std::string name() { return fmt::format("{}Work {} ", chance(50) ? " " : "", number(1, 4)); }

    void review() {
        CaptureDraft* draft = model_->draft();
        if (!draft) return model_->beginCapture();
        draft->setName(name());
        for (const ApplicationSnapshot& application : draft->snapshot().applications)
            if (chance(20)) draft->includeApp(application.bundleIdentifier, false);
        committing_ = true;
        model_->commit(*draft);
        committing_ = false;
    }

    void changeSettings() {
        const std::int64_t minutes[] = {0, 5, 10, 30, 60, 7};
        AppSettings settings = model_->settings();
        switch (number(0, 3)) {
            case 0:
                settings.autoSnapshotMinutes = anyOf(minutes);
                break;
            case 1:
                settings.enabledAdapters.clear();
                for (const char* adapter : {"finder", "chromium", "safari"})
                    if (chance(60)) settings.enabledAdapters.insert(adapter);
                break;
            case 2: {
                const std::string& identifier = anyOf(scene_.applications).identifier;
                if (!settings.excludedBundleIdentifiers.erase(identifier))
                    settings.excludedBundleIdentifiers.insert(identifier);
                break;
            }
            default:
                settings.shortcutsEnabled = chance(70);
                break;
        }
        system_.defaults.failure =
            chance(10) ? std::optional(Error{ErrorKind::noSpace, "full", 28}) : std::nullopt;
        if (settings.autoSnapshotMinutes != model_->settings().autoSnapshotMinutes) ++forgotten_;
        model_->setSettings(settings);
    }

    void dialog() {
        const char* const files[] = {"/files/good.json", "/files/damaged.json", "/files/missing.json"};
        const bool importing = chance(60);
        if (chance(80)) surfaces_.answers.emplace_back(importing ? anyOf(files) : "/files/exported.json");
        return importing ? model_->importWorkspace() : model_->exportWorkspace(anyWorkspace());
    }

    void trust(bool granted) {
        desktop_.world().setTrusted(granted);
        lastTrust_ = desktop_.world().trusted();
        lastTrustChange_ = desktop_.executor().now();
    }

    void otherProcess() {
        lastTrouble_ = desktop_.executor().now();
        const WorkspaceStore store(disk_, "/data/workspaces");
        if (chance(50) || model_->workspaces().empty()) {
            (void)store.save(samples::named(Uuid::random(), "From quilloctl"));
        } else {
            (void)store.remove(anyWorkspace().id);
        }
    }

    void switcher() {
        Switcher switcher(
            *index_, {[this](const Workspace& chosen) { model_->restore(chosen, {}); },
                      [this] { model_->beginCapture(); }, [this] { surfaces_.closePanel(PanelID::switcher); },
                      [this] { model_->refreshCurrentSnapshot(); }});
        switcher.shown();
        if (chance(50)) switcher.setQuery(name());
        for (std::int64_t i = number(0, 3); i > 0; --i) switcher.press(Switcher::Key::down);
        switcher.press(Switcher::Key(number(1, 4)));
    }

    void preview() {
        ResumePreview* const open = model_->preview();
        if (!open || chance(30)) return model_->openPreview(anyWorkspace(), CleanSlateMode(number(0, 2)));
        const std::vector<ApplicationSnapshot>& listed = open->ticks().snapshot().applications;
        if (!listed.empty() && chance(60))
            return open->ticks().includeApp(std::string(anyOf(listed).bundleIdentifier), chance(50));
        return chance(50) ? model_->resumePreview() : model_->closePreview();
    }

    void pressHotKey() {
        const Shortcut shortcut = model_->settings().shortcut(anyOf(allHotKeyActions));
        (void)system_.hotKeys.press(shortcut.keyCode, shortcut.modifiers);
    }

    // What must hold.

    void turns(std::int64_t count) {
        desktop_.executor().runUntil(
            [&] {
                check();
                return count-- == 0;
            },
            0s);
    }
    void run(Duration duration) {
        const TimePoint end = desktop_.executor().timeAfter(duration);
        desktop_.executor().runUntil(
            [&] {
                check();
                return testing::Test::HasFailure();
            },
            duration);
        desktop_.executor().runUntil(end);
        check();
        if (!model_->snapshotting()) EXPECT_TRUE(std::ranges::all_of(holds_, &std::weak_ptr<void>::expired));
    }

    void check() {
        checkExclusion();
        checkLibrary();
        const TimePoint now = desktop_.executor().now();
        if (desktop_.world().trusted() != lastTrust_) trust(desktop_.world().trusted());
        if (now > lastTrustChange_ + 1s) EXPECT_EQ(model_->accessibilityGranted(), lastTrust_);
    }

    void checkExclusion() {
        const bool capturing = model_->capturing(), restoring = model_->restoreRunning(),
                   snapshotting = model_->snapshotting(), draft = model_->draft() != nullptr;
        EXPECT_LE(capturing + restoring + snapshotting, 1);
        EXPECT_FALSE(draft && (restoring || snapshotting));
        EXPECT_FALSE(model_->question() && (capturing || restoring || snapshotting || draft));
        EXPECT_FALSE(model_->refreshingCurrentSnapshot() && snapshotting);
        if (snapshotting && !std::exchange(snapshotting_, snapshotting)) {
            captureSettings_ = model_->settings();
            captureForgotten_ = forgotten_;
        }
        snapshotting_ = snapshotting;
    }

    /// What a failed operation or another process left behind is seen a moment later.
    void checkLibrary() {
        if (desktop_.executor().now() <= lastTrouble_ + 60ms || disk_.version == checkedVersion_) return;
        const bool fails = std::exchange(diskFails_, false);
        EXPECT_EQ(model_->workspaces(), WorkspaceStore(disk_, "/data/workspaces").scan().workspaces);
        EXPECT_EQ(library_->rows().size(), model_->workspaces().size());
        diskFails_ = fails;
        checkedVersion_ = disk_.version;
    }

    void written(const Path& file, const std::string& bytes) {
        if (file != "/data/sessions/" + SessionHistory::latestID.lower() + ".json") return;
        const Workspace session = WorkspaceCoding::decode(bytes).value();
        EXPECT_TRUE(desktop_.world().trusted());
        EXPECT_EQ(captureSettings_, model_->settings());
        EXPECT_EQ(captureForgotten_, forgotten_);
        for (const ApplicationSnapshot& application : session.snapshot.applications)
            EXPECT_FALSE(model_->settings().excludedBundleIdentifiers.contains(application.bundleIdentifier));
    }

    std::mt19937_64 random_;
    RandomDesktop scenes_;
    const simulated::Scene scene_;
    samples::TestDesktop desktop_;
    MemoryFileSystem disk_;
    SimulatedSystem system_{desktop_.executor()};
    samples::RecordedSurfaces surfaces_;
    std::unique_ptr<AppModel> model_;
    std::optional<LibraryIndex> index_;
    std::optional<LibraryState> library_;

    Workspace gone_ = samples::named(Uuid::random(), "Gone");
    std::vector<std::weak_ptr<void>> holds_;
    bool diskFails_ = false, handling_ = false, committing_ = false, snapshotting_ = false, lastTrust_ = true;
    TimePoint lastTrouble_{}, lastTrustChange_{};
    std::uint64_t checkedVersion_ = 0;
    int forgotten_ = 0;  // how often captures under way became worthless
    AppSettings captureSettings_;
    int captureForgotten_ = 0;
};

TEST(RandomModel, KeepsItsRulesWhateverHappens) {
    eachSeed(100, [](std::uint64_t seed) {
        RandomModel model(seed);
        model.act(60);
        if (seed % 2 == 0) model.expectRest();
        model.expectEnd();
    });
}

}  // namespace
}  // namespace quillo
