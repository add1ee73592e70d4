// The one long-lived object of the application: the library, the settings, the capture under review, the
// restore that runs, and every operation a person can ask for. Views only read its fields and call its
// operations.
#pragma once
#include <QObject>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/capture/CaptureHealth.hpp"
#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/integrations/Adapters.hpp"
#include "WindowEngine/library/DirectoryWatch.hpp"
#include "WindowEngine/library/SessionHistory.hpp"
#include "WindowEngine/library/UndoFile.hpp"
#include "WindowEngine/library/WorkspaceStore.hpp"
#include "WindowEngine/restore/DisplayTwins.hpp"
#include "WindowEngine/restore/LateWindows.hpp"
#include "WindowEngine/restore/Restore.hpp"
#include "WindowEngine/restore/RestorePreview.hpp"
#include "WindowEngine/restore/Undo.hpp"
#include "app/CaptureDraft.hpp"
#include "app/DisplayFollower.hpp"
#include "app/EditHistory.hpp"
#include "app/HotKeys.hpp"
#include "app/LoginItemController.hpp"
#include "app/RestoreRun.hpp"
#include "app/ResumePreview.hpp"
#include "app/StorageIssues.hpp"
#include "app/Surfaces.hpp"
#include "app/TaskSlot.hpp"
#include "platform/services/SystemServices.hpp"
#include "settings/AppSettings.hpp"
#include "settings/KnownWorkspaces.hpp"
#include "settings/SettingsRescue.hpp"

namespace quillo {

/// What the model stands on, which must outlive it.
struct AppServices : SystemServices {
    std::filesystem::path data;  // holds workspaces/ and sessions/
    Digest digest;
    Shell& shell;
    Surfaces& surfaces;
};

/// What a message is, which says how it looks and how long it stays.
enum class ToastKind : std::uint8_t {
    done,
    refusal,  // why something that was asked for is not done now
    failure,  // stays until it is dismissed, or the same is done after all
};

/// Who wants a workspace back: the person at one of our own controls, a link that was opened, a program on
/// the session bus, or what the person has set to happen by itself. Of a link and a program nobody knows
/// whether the person means it.
enum class Asker : std::uint8_t { person, link, program, itself };

/// What a person is asked before a workspace is brought back.
struct ResumeQuestion {
    std::optional<ReasonToAsk> reason = ReasonToAsk::notSavedHere;  // none: only because of who asks
    Asker asker = Asker::person;
    Uuid workspace;
    std::string name;
    Consequences consequences;
};

/// Identical displays that nothing tells apart: the person is asked for one after the other.
struct TwinQuestion {
    std::string workspace;                  // its name
    std::vector<std::string> applications;  // with windows on the saved display that is asked about
    std::size_t screens = 0;                // to choose from, which show numbers from 1
};

/// Everything happens on the executor's thread. Every change of a field is told by its signal, after all
/// fields that an operation changes have been set.
class AppModel final : public QObject {
    Q_OBJECT

  public:
    /// Starts up: reads settings, library and history, registers the hot keys, begins the background work.
    explicit AppModel(const AppServices& services, QObject* parent = nullptr);
    ~AppModel() override;

    /// As last read from the store, newest first; views sort them.
    const std::vector<Workspace>& workspaces() const { return workspaces_; }
    const StorageIssues& storageIssues() const { return storageIssues_; }
    void dismissStorageIssues();
    /// The library's folder, in the person's file manager.
    void showLibraryFolder();
    /// The session history, newest first.
    const std::vector<Workspace>& sessions() const { return sessions_; }
    const std::optional<std::string>& autoSnapshotError() const { return autoSnapshotError_; }
    /// Why the last automatic snapshot was not taken, as words within a sentence; absent once one was.
    const std::optional<std::string>& autoSnapshotSkipped() const { return autoSnapshotSkipped_; }
    const AppSettings& settings() const { return settings_; }
    /// What became of settings that could not be read, until dismissed.
    const std::optional<std::string>& settingsTrouble() const { return rescue_.trouble(); }
    void dismissSettingsTrouble();
    bool accessibilityGranted() const { return accessibilityGranted_; }
    /// Whether window access is a permission, which the person gives where requestAccessibility() leads; else
    /// it is there, or cannot be had.
    bool canAllowAccess() const { return bool(services_.shell.canOpenSystemSettings()); }
    /// As RestoreScope names it: an application cannot pass for another by the name in a file.
    std::string shownName(const ApplicationSnapshot& application) const {
        return Restore::shownName(services_.desktop.platform.applications, application);
    }
    /// Names of those of its applications that a restore could not start, where they do not run by then.
    std::vector<std::string> notLaunchable(const WorkspaceSnapshot& snapshot) const;
    /// Why other applications' windows cannot be read, where they cannot.
    Capability accessibilityAccess() const { return services_.desktop.platform.accessibility.access(); }
    CaptureDraft* draft() const { return draft_.get(); }  // null when nothing is under review
    /// The current or the last; null before any.
    RestoreRun* restoreRun() const { return restoreRun_.get(); }
    bool capturing() const { return capturing_; }  // for the person
    /// The message of the moment. One that comes while a failure is shown gives way to it again.
    std::optional<std::string> toast() const;
    ToastKind toastKind() const { return toast_ ? toast_->kind : ToastKind::failure; }
    void dismissToast();
    LoginItemController& loginItem() { return loginItem_; }
    HotKeys& hotKeys() { return hotKeys_; }
    /// The desktop as it was when refreshCurrentSnapshot() last looked.
    const std::optional<WorkspaceSnapshot>& currentSnapshot() const { return currentSnapshot_; }
    bool refreshingCurrentSnapshot() const { return refreshingCurrentSnapshot_; }
    bool promptedForAccessibility() const { return promptedForAccessibility_; }
    bool showingSettings() const { return showingSettings_; }

    /// Waits for answerQuestion().
    const std::optional<ResumeQuestion>& question() const { return question_; }

    bool restoreRunning() const { return restoreRun_ && !restoreRun_->report(); }
    /// An automatic session capture runs.
    bool snapshotting() const { return autoSnapshotTask_.active(); }
    /// Whether a capture, a review, a question or a restore is under way, automatic ones included.
    bool busy() const;
    /// Whether the person has something open, or waits for something, that only they themself may end:
    /// whatever else wants to begin gives way to it.
    bool atWork() const { return occupied() || asked_ || twinsAsked_ || preview_; }
    /// The person is asked about this one, or will be.
    bool asksAbout(const Uuid& workspace) const;
    /// Whether the program may be replaced by its update now; otherwise relaunchRefusal says why not.
    bool canRelaunchForUpdate() const;
    static constexpr const char* relaunchRefusal = "Finish your capture or restore before relaunching.";

    /// Opens the main window where there is none; handed in by the interface.
    std::function<void()> openWindowAction;

    /// Stores and applies at once, the same as before too: what failed then is tried again.
    void setSettings(AppSettings settings);
    void setShowingSettings(bool showing);
    /// What brings this workspace back besides its controls; without effect once it is not in the library.
    void setAutomation(const Uuid& workspace, const WorkspaceAutomation& chosen);

    /// Reads the library again; the history is read again where it changes.
    void reload();

    /// Captures the desktop and opens the review. Without permission, or where a review is open or a restore
    /// runs, it brings the main window forward instead, with a word of why. An automatic capture that runs is
    /// waited for.
    void beginCapture(std::optional<Workspace> updating = std::nullopt, bool testRestoreAfterSave = false);
    /// Saves what is under review; on failure the review stays as it is. An update changes what is stored by
    /// then, and of that only what was captured or chosen in the review.
    void commit(CaptureDraft& draft);
    /// Drops what is under review, or the capture that it would come of.
    void dismissDraft();

    /// While a capture, a review or another restore is under way that is brought forward instead, with a word
    /// of why; an automatic capture is waited for. Without a mode other applications are kept. A workspace
    /// that was not saved on this machine is asked about first, once: its restore waits for the answer, as
    /// long as nothing else is begun.
    /// Of a selection only what it leaves is brought back, this time.
    ///
    /// Where a link or a program asks for one, the person is asked each time, unless they have allowed that
    /// for the workspace. Whoever else than the person at our controls asks gives way to what they are at,
    /// and it is said; where that is a program or the hour, nothing comes forward for it.
    void restore(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate,
                 Asker asker = Asker::person, const RunSelection& selection = {});
    /// A link of the form quillo:restore?name=... was opened. What is wrong with it is said.
    void openAddress(std::string_view address);

    // What other programs ask for, through Automation. An answer comes once, at once where it is a refusal.
    template <class T>
    using Answer = std::function<void(Result<T>)>;
    /// Saves what is open as a new workspace without a review, as the command line does; numbered where the
    /// name is taken. Refused while anything of the person's is under way.
    void saveUnreviewed(const std::string& name, Answer<Uuid> answer);
    /// What a restore, as the workspace itself says, would come to now. One at a time.
    void plan(const Workspace& workspace, Answer<PlanTotals> answer);

    /// As the workspace itself says; nothing where the library no longer has it.
    void restoreFromLibrary(const Uuid& workspace, Asker asker = Asker::person);
    /// The newest of sessions(), as restore() does; nothing where there is none.
    void restoreLastSession();
    /// Moves what is open of a workspace to where it has it on the displays that are attached; nothing is
    /// launched or opened. Only of one that needs no question, and nothing while the person is at work. By
    /// itself it does not ask which of identical displays is which: windows on those stay where they are.
    void arrange(const Uuid& workspace, Asker asker = Asker::person);
    /// Keeps how its windows stand now, for the displays that are attached; what it holds stays as it is.
    void keepLayout(const Workspace& workspace);
    void removeLayout(const Workspace& workspace, const DisplayLayout& layout);
    bool arrangesByItself(const Uuid& workspace) const {
        return settings_.arrangedWorkspaces.contains(workspace.lower());
    }
    void setArrangesByItself(const Uuid& workspace, bool itself);
    /// What holds a relaunch up is what makes the model refuse a restore.
    bool canRestoreLastSession() const { return !sessions_.empty() && canRelaunchForUpdate(); }
    /// Shows in the main window what restore() would do, and lets the person untick of it; where that is
    /// refused, so is this. Planned anew when the desktop, the ticks or the workspace change.
    void openPreview(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate);
    void closePreview();
    /// restore(), with what is ticked; the preview closes once that begins.
    void resumePreview();
    /// Null where none is open.
    ResumePreview* preview() const { return preview_.get(); }
    /// Of question(). What is agreed to is remembered, and begun.
    void answerQuestion(bool resume);
    /// Waits for answerTwin(), with what is to be brought back.
    const std::optional<TwinQuestion>& twinQuestion() const { return twinQuestion_; }
    /// The screen of this place is it, which is remembered; none: nothing is brought back.
    void answerTwin(std::optional<std::size_t> screen);
    /// The panel's close control: stops the run where it still goes on, and closes the panel.
    void closeRestorePanel();
    /// Whether showReport() has something to show: the workspace was resumed since the program was started.
    bool hasReport(const Uuid& workspace) const { return lastRuns_.contains(workspace); }
    /// Makes the last run of this workspace restoreRun() again, and opens the panel, which stays until it is
    /// closed. Does nothing while a restore runs.
    void showReport(const Uuid& workspace);
    /// One that was opened so is open still.
    bool reportShown() const;
    /// The desktop before the latest restore, also one of quilloctl's, until putBack() has put it back or its
    /// session has ended; null where there is none.
    const UndoRecord* undoRecord() const { return undo_ ? &*undo_ : nullptr; }
    /// Whether putBack() undoes this run: it made that record.
    bool putsBack(const RestoreRun* run) const { return undo_ && run && undoRun_.lock().get() == run; }
    /// Puts everything back as it was before that restore. Refused like a restore.
    void putBack();
    /// What putBack() leaves, in sentences without full stop.
    std::vector<std::string> putBackLimits() const;
    /// What the restore had launched that the last putBack() undid; still running then.
    const std::vector<UndoLaunch>& launchedBefore() const { return launchedBefore_; }
    /// Asks these to quit.
    void closeLaunched();

    /// How many windows are placed once they open, as a restore found them missing; of this run, or of
    /// whichever it was.
    std::int64_t awaitedWindows(const RestoreRun* run = nullptr) const;
    /// The next restore does so, too.
    void stopWaiting();

    /// What a restore of this workspace does to other applications from now on.
    void setCleanSlate(const Workspace& workspace, CleanSlateMode mode);

    void deleteWorkspace(const Workspace& workspace);
    void deleteWorkspaces(const std::vector<Uuid>& ids);
    void duplicate(const Workspace& workspace);
    void exportWorkspace(const Workspace& workspace);
    /// Each to a file of its own in a folder that the person picks.
    void exportWorkspaces(const std::vector<Uuid>& ids);

    // Changes of a saved workspace, as it is stored by then; each can be undone. A workspace is as known
    // afterwards as before.
    void rename(const Workspace& workspace, const std::string& name);
    void setIcon(const Workspace& workspace, const std::string& icon);
    void setColor(const Workspace& workspace, const std::string& color);
    /// Leaves out exactly this; refused where the workspace is not any more as it was `shown`. `what` names
    /// what was left out now, or brought back.
    void setLeftOut(const Workspace& shown, const LeftOut::Exclusions& excluded, const std::string& what,
                    bool brought);
    /// Those installed, where the platform tells, and those that run; without what is never saved.
    std::vector<InstalledApplication> addableApplications() const;
    /// Identifiers of what runs.
    std::set<std::string> runningApplications() const;
    /// Whether any integration can open anything here.
    Capability integration() const { return Adapters::any(services_.desktop.platform); }
    void addApplication(const Workspace& workspace, const std::string& bundleIdentifier);
    /// The error is for the person who typed the address.
    Result<void> addAddress(const Workspace& workspace, const std::string& browser, const std::string& typed);

    /// "Leave Out Mail"; empty where there is nothing to undo.
    std::string undoWords(const Uuid& id) const;
    std::string redoWords(const Uuid& id) const;
    void undo(Uuid id);
    void redo(Uuid id);
    /// The workspace whose latest change the toast tells of, and which it offers to undo.
    std::optional<Uuid> toastUndoes() const { return toast_ ? toast_->undoes : std::nullopt; }

    void importWorkspace();
    /// Every workspace, the history, and automatic snapshots.
    void deleteAllData();

    /// One automatic session capture, where the rules allow it now. The hold is released when it is over.
    void captureSession(const PowerHold& hold = {});
    void deleteSessionHistory();
    void refreshCurrentSnapshot();
    /// Whether somebody looks at currentSnapshot(): it is read at once then, and for as long as that goes on
    /// again whenever the desktop has changed.
    void followCurrentDesktop(bool follow);
    /// The system's prompt the first time, its settings page from then on.
    void requestAccessibility();

    void openMain();
    /// The switcher panel: opened, or closed where it is open.
    void toggleSwitcher();
    void show(std::string message, ToastKind kind = ToastKind::done);

  Q_SIGNALS:
    void workspacesChanged();
    void storageIssuesChanged();
    void sessionsChanged();
    void autoSnapshotErrorChanged();
    void autoSnapshotSkippedChanged();
    void settingsChanged();
    void settingsTroubleChanged();
    void accessibilityGrantedChanged();
    void draftChanged();
    void restoreChanged();
    void undoChanged();  // undoRecord() or launchedBefore()
    void awaitedChanged();
    void questionChanged();
    void previewChanged();  // another one, or none
    void twinQuestionChanged();
    void capturingChanged();
    void toastChanged();
    void editsChanged();  // what can be undone or done again
    void currentSnapshotChanged();
    void refreshingCurrentSnapshotChanged();
    void showingSettingsChanged();
    void busyChanged();  // busy() or canRelaunchForUpdate()
    /// Others than before are attached, and have come to rest.
    void displaysCame(const std::vector<DisplaySnapshot>& displays);

  private:
    /// What a restore was asked for.
    struct Asked {
        Workspace workspace;
        std::optional<CleanSlateMode> cleanSlate;
        Asker asker = Asker::person;
        RunSelection selection = {};

        bool operator==(const Asked&) const = default;
    };
    struct TwinsAsked {
        Workspace workspace;
        Restore::Options options;
        bool part;  // of the workspace in the library
        std::vector<DisplaySnapshot> saved, present;
        DisplayTwins::Matching matching;
    };

    void applySettings();
    /// What is to be registered; absent while shortcuts are off.
    std::optional<HotKeys::Shortcuts> shortcuts() const;
    void registerShortcuts();
    void pressed(const HotKeyTarget& target);
    void configureAutoSnapshot();
    void startPermissionPolling();
    void observeSystem();

    Task<> snapshotLoop(std::int64_t minutes, bool atOnce);
    Task<> pollPermission();
    template <class T>
    using SharedAnswer = std::shared_ptr<Answer<T>>;  // holds none once it was given
    Task<> captureUnreviewed(std::string name, SharedAnswer<Uuid> answer);
    Task<> planTask(Workspace workspace, SharedAnswer<PlanTotals> answer);
    void snapshotEnded();
    Task<> captureForReview(std::optional<Workspace> updating, bool testRestoreAfterSave);
    Task<> captureAutomatically(Uuid generation, AppSettings settings);
    Task<> captureCurrentSnapshot();
    Task<> followDesktop();
    Task<> clearToast();
    Task<> runRestore(RestoreRun* run, Workspace workspace, Restore::Options options);
    Task<> runUndo(RestoreRun* run, UndoRecord record);
    /// Null where the person has switched it off.
    std::shared_ptr<Restore::LateWindows> beginWaiting();
    Task<> waitForWindows(std::shared_ptr<Restore::LateWindows> late);
    /// Whether a review, a capture or a restore is in the way of another; then the person is shown it and
    /// told.
    bool refusesAnother();
    bool occupied() const { return draft_ || capturing() || keepingLayout_.active() || restoreRunning(); }
    void giveWay(const Workspace& workspace, Asker asker);
    void refuseWithoutAccess();
    bool mustAskFor(const Workspace& workspace, Asker asker) const;
    void ask(Asked asked);
    Task<> prepareQuestion(Asked asked);
    void setPreview(const Workspace& workspace, CleanSlateMode cleanSlate, LeftOut::Exclusions excluded);
    void followPreviewed();
    Task<> planPreview();
    bool forgetQuestion();
    void tellQuestion();
    void dropQuestion();
    /// For a run, or what is shown of it before.
    Restore::Options optionsFor(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate,
                                bool agreed) const;
    void begin(const Asked& asked, bool agreedNow);
    /// At once, or once it is known which display is which. `part`: no more is brought back of what the
    /// library has.
    void start(Workspace workspace, Restore::Options options, bool part, bool mayAsk = true);
    void start(std::shared_ptr<RestoreRun> run, Task<> task);
    Task<> startTold(TwinsAsked told);
    bool asksAboutTwins(const Workspace& workspace, const Restore::Options& options, bool part);
    void showRestorePanel();
    void showLate(const RestoreRun& run);
    void closePanelLater(const RestoreRun& run);
    Task<> closePanelAfter(Duration delay);
    Task<> exportTask(Workspace workspace);
    Task<> exportAllTask(std::vector<Workspace> workspaces);
    Task<> addTask(Uuid id, InstalledApplication chosen);
    Task<> importTask();

    void saveSession(const WorkspaceSnapshot& snapshot);
    Task<> tallyWindows();
    /// Offers, or takes, the arrangement that the latest workspace has on these.
    void offerLayout(const std::vector<DisplaySnapshot>& displays);
    const Workspace* findInLibrary(const Uuid& id) const;  // null where it is not
    void leaveUnclear(WorkspaceSnapshot& snapshot, Restore::Options& options) const;
    Task<> keepLayoutTask(Uuid id);
    /// What keeps a capture that is made now from showing the desktop as the person has it, or one that was
    /// begun when `displays` were attached.
    std::optional<CaptureHealth::Flaw> captureFlaw(
        const std::vector<DisplaySnapshot>* displays = nullptr) const;
    void setAutoSnapshotSkipped(std::optional<std::string> why);
    RestoreRun::Start startOf(const WorkspaceSnapshot& snapshot) const;
    void restored(RestoreRun& run, const RestoreReport::Item& item);
    void restoreEnded(RestoreRun& run, RestoreReport report);
    void keepUndo(const UndoRecord& record);
    Restore::KeepRecord undoKeeper();
    void forgetUndo();
    void reloadUndo();
    /// What is stored counts, not what was last read: another process may have changed it.
    Result<WorkspaceStore::Changed> changeStored(Uuid id,
                                                 const std::function<Result<void>(Workspace&)>& change);
    /// A change to be undone, called by `words`. Whether anything is otherwise now; else nothing is to be
    /// undone.
    Result<bool> edit(Uuid id, const std::string& words,
                      const std::function<Result<void>(Workspace&)>& change);
    void setLook(const Workspace& workspace, const std::string& words,
                 const std::function<void(Workspace&)>& change);
    void takeStep(Uuid id, const EditHistory::Step& step, bool back);
    struct Toast {
        std::string text;
        ToastKind kind;
        std::optional<Uuid> undoes;
    };
    void show(Toast toast);
    /// With the offer to undo it, where anything was changed.
    void showEdited(std::string message, const Uuid& id, bool changed);
    void forget(const Uuid& id);
    Result<void> writeExport(const Workspace& workspace, const std::filesystem::path& file);
    /// The name it has here, or what to tell the person.
    Result<std::string, std::string> importFile(const std::filesystem::path& file);
    /// Says where it could not be noted where a workspace comes from: its restore will ask.
    void noteProvenance(const Result<void>& noted);
    /// Says what failed and why, until that is dismissed or `what` is done. Whether it was done.
    bool told(const std::string& what, const Result<void>& outcome);
    template <class T>
    bool told(const std::string& what, const Result<T>& outcome) {
        return told(what, outcome ? Result<void>() : std::unexpected(outcome.error()));
    }
    void complain(const std::string& what, std::string message);
    void lookAtSettings();
    /// With the store's lock, which keeps the name that it chooses free.
    void renew(Workspace& stored, const CaptureDraft& draft) const;
    Result<Workspace> save(const CaptureDraft& draft) const;
    void setAutoSnapshotError(std::optional<std::string> message);
    void captureEnded(std::shared_ptr<CaptureDraft> draft);
    void currentSnapshotRead(std::optional<WorkspaceSnapshot> snapshot);
    void setDraft(std::shared_ptr<CaptureDraft> draft);
    void reloadSessions();
    Instant wallNow() const;
    Executor& executor() const { return services_.desktop.platform.executor; }
    /// Views may still be in a handler of a retired object: it goes in a turn of its own.
    void dispose(std::shared_ptr<QObject> retired);

    AppServices services_;
    WorkspaceStore store_;
    SessionHistory history_;
    UndoFile undoFile_;
    KnownWorkspaces known_;

    std::vector<Workspace> sessions_;
    std::optional<std::string> autoSnapshotError_, autoSnapshotSkipped_;
    CaptureHealth::WindowTally windowTally_;
    Uuid autoSnapshotGeneration_ = Uuid::random();
    std::int64_t scheduledMinutes_ = -1;  // so that the first configuration always runs
    std::vector<Workspace> workspaces_;
    StorageIssues storageIssues_;
    SettingsRescue rescue_;
    AppSettings settings_;
    bool accessibilityGranted_ = false;
    std::shared_ptr<CaptureDraft> draft_;
    std::shared_ptr<RestoreRun> restoreRun_;
    std::map<Uuid, std::shared_ptr<RestoreRun>> lastRuns_;  // of workspaces in the library
    bool reportReopened_ = false;                           // restoreRun_ is one of these, shown once more
    std::optional<UndoRecord> undo_;
    bool undoStored_ = false;            // in its file; else undo_ is all there is
    std::weak_ptr<RestoreRun> undoRun_;  // whose record undo_ is; none where another start or program made it
    int deletions_ = 0;                  // of all data: no restore that was under way keeps its record
    std::vector<UndoLaunch> launchedBefore_;
    std::shared_ptr<Restore::LateWindows> late_;  // of the latest restore
    std::weak_ptr<RestoreRun> lateRun_;
    bool panelDismissed_ = false;  // of the latest restore, by the person
    std::shared_ptr<ResumePreview> preview_;
    std::optional<Asked> asked_;  // what question_ is about, or will be
    std::optional<ResumeQuestion> question_;
    std::optional<TwinsAsked> twinsAsked_;      // never beside asked_
    std::optional<TwinQuestion> twinQuestion_;  // about twinsAsked_
    bool capturing_ = false;
    struct Failure {
        std::string what, text;
    };
    std::optional<Toast> toast_;
    std::optional<Failure> failure_;  // shown while there is no toast
    EditHistory edits_;
    LoginItemController loginItem_;
    HotKeys hotKeys_;
    std::optional<WorkspaceSnapshot> currentSnapshot_;
    bool refreshingCurrentSnapshot_ = false;
    bool promptedForAccessibility_ = false;
    bool showingSettings_ = false;
    PowerHold powerHold_;  // of the system that waits for the running session capture
    std::vector<std::function<void()>> afterSnapshot_;  // what was asked for meanwhile

    std::unique_ptr<PowerObserver> powerObserver_;
    std::unique_ptr<SurfaceObserver> reopenObserver_;

    // Last: what runs ends before what it works on.
    TaskSlot autoSnapshotTimer_, autoSnapshotTask_, windowTallyTask_, permissionPoll_, captureTask_,
        currentSnapshotTask_, desktopFollower_, questionTask_, twinsTask_, previewTask_, planning_;
    TaskSlot lateTask_, toastTimer_, panelTimer_, exporting_, importing_, adding_, keepingLayout_;
    DisplayFollower displayFollower_;
    DirectoryWatch libraryWatch_, historyWatch_, undoWatch_;
};

}  // namespace quillo
