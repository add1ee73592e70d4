// Start-up, settings, what is shown, and what all operations share.
#include "app/AppModel.hpp"

#include <algorithm>
#include <utility>

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration toastTime = 2500ms;

}  // namespace

AppModel::AppModel(const AppServices& services, QObject* parent)
    : QObject(parent),
      services_(services),
      store_(services.files, services.data / "workspaces"),
      history_(services.files, services.data / "sessions"),
      undoFile_(services.files, services.data / "undo"),
      known_(services.defaults, services.digest,
             [this](const Uuid& id) {
                 return UndoRecord::isIdentifier(id) || services_.files.exists(store_.url(id)) ||
                        services_.files.exists(history_.store().url(id));
             }),
      rescue_(services.defaults),
      accessibilityGranted_(services.desktop.platform.accessibility.trusted()),
      loginItem_(services.defaults, LoginItemController::operations(services.loginItem)),
      hotKeys_(services.hotKeys, services.desktop.platform.executor, services.desktop.platform.log),
      displayFollower_(executor(), services.desktop.platform.screens,
                       [this](const std::vector<DisplaySnapshot>& displays) {
                           answerTwin(std::nullopt);  // it was asked of others
                           Q_EMIT displaysCame(displays);
                           offerLayout(displays);
                       }),
      libraryWatch_(executor(), services.files, store_.directory(), [this] { reload(); }),
      historyWatch_(executor(), services.files, services.data / "sessions", [this] { reloadSessions(); }),
      undoWatch_(executor(), services.files, undoFile_.directory(), [this] { reloadUndo(); }) {
    connect(this, &AppModel::workspacesChanged, this, &AppModel::followPreviewed);
    reload();
    reloadUndo();
    lookAtSettings();
    settings_ = AppSettings::load(services_.defaults);
    // Whose settings were set aside has met the program before. Workspaces alone do not say so: quilloctl
    // saves some too.
    settings_.onboarded = settings_.onboarded || rescue_.trouble();
    loginItem_.configureDefault();
    hotKeys_.onPressed = [this](const HotKeyTarget& target) { pressed(target); };
    reloadSessions();
    observeSystem();
    windowTallyTask_.start(executor(), tallyWindows());
    applySettings();
    startPermissionPolling();
}

AppModel::~AppModel() = default;

void AppModel::observeSystem() {
    powerObserver_ = services_.power.observe([this](PowerEvent event, const PowerHold& hold) {
        if (event != PowerEvent::didWake) captureSession(hold);
    });
    reopenObserver_ = services_.surfaces.observeOpenMainWindow([this] { openMain(); });
}

bool AppModel::busy() const {
    return occupied() || refreshingCurrentSnapshot() || asked_ || twinsAsked_ || snapshotting();
}

bool AppModel::canRelaunchForUpdate() const {
    return !snapshotting() && !occupied();
}

void AppModel::setSettings(AppSettings settings) {
    lookAtSettings();
    settings_ = std::move(settings);
    const Result<void> saved = settings_.save(services_.defaults);
    applySettings();
    told("Couldn't save settings", saved);
    Q_EMIT settingsChanged();
}

void AppModel::lookAtSettings() {
    if (!rescue_.look()) return;
    const std::string& trouble = *rescue_.trouble();
    complain("Settings", trouble.substr(0, trouble.find('\n')) + " Settings says more.");
    Q_EMIT settingsTroubleChanged();
}

void AppModel::dismissSettingsTrouble() {
    rescue_.dismiss();
    told("Settings", {});
    Q_EMIT settingsTroubleChanged();
}

void AppModel::applySettings() {
    registerShortcuts();
    services_.shell.setAppearance(settings_.appearance);
    configureAutoSnapshot();
}

void AppModel::setShowingSettings(bool showing) {
    if (std::exchange(showingSettings_, showing) != showing) Q_EMIT showingSettingsChanged();
}

void AppModel::reload() {
    libraryWatch_.look();
    WorkspaceScanResult found = store_.scan();
    const bool newWorkspaces = !found.failure && found.workspaces != workspaces_;
    // What cannot be listed now is still there, as far as anybody knows.
    if (newWorkspaces) {
        workspaces_ = std::move(found.workspaces);
        std::erase_if(lastRuns_, [this](const auto& one) {
            return std::ranges::find(workspaces_, one.first, &Workspace::id) == workspaces_.end();
        });
    }
    if (storageIssues_.update(found)) Q_EMIT storageIssuesChanged();
    if (newWorkspaces && hotKeys_.wanted() && hotKeys_.wanted() != shortcuts()) registerShortcuts();
    if (newWorkspaces) Q_EMIT workspacesChanged();
}

void AppModel::dismissStorageIssues() {
    if (storageIssues_.dismiss()) Q_EMIT storageIssuesChanged();
}

void AppModel::reloadSessions() {
    historyWatch_.look();
    std::vector<Workspace> found = history_.list();
    if (std::exchange(sessions_, std::move(found)) != sessions_) Q_EMIT sessionsChanged();
}

void AppModel::openMain() {
    services_.shell.setActivationPolicy(ActivationPolicy::regular);
    if (services_.surfaces.bringMainWindowForward()) return;
    if (openWindowAction) openWindowAction();
}

void AppModel::toggleSwitcher() {
    if (services_.surfaces.panelVisible(PanelID::switcher)) {
        services_.surfaces.closePanel(PanelID::switcher);
    } else {
        services_.surfaces.showPanel(PanelID::switcher, switcherPlace);
    }
}

void AppModel::show(std::string message, ToastKind kind) {
    show(Toast{std::move(message), kind, {}});
}

void AppModel::showEdited(std::string message, const Uuid& id, bool changed) {
    show(Toast{std::move(message), ToastKind::done, changed ? std::optional(id) : std::nullopt});
}

void AppModel::show(Toast toast) {
    toast_ = std::move(toast);
    toastTimer_.start(executor(), clearToast());
    Q_EMIT toastChanged();
}

/// One timer, begun anew by each toast: a newer one has its full time, the same words again too.
Task<> AppModel::clearToast() {
    co_await sleepFor(toastTime);
    toast_.reset();
    Q_EMIT toastChanged();
}

std::optional<std::string> AppModel::toast() const {
    if (toast_) return toast_->text;
    return failure_ ? std::optional(failure_->text) : std::nullopt;
}

void AppModel::dismissToast() {
    toastTimer_.cancel();
    toast_.reset();
    failure_.reset();
    Q_EMIT toastChanged();
}

bool AppModel::told(const std::string& what, const Result<void>& outcome) {
    if (!outcome) {
        complain(what, what + ": " + outcome.error().text);
    } else if (failure_ && failure_->what == what) {
        failure_.reset();
        Q_EMIT toastChanged();
    }
    return outcome.has_value();
}

void AppModel::complain(const std::string& what, std::string message) {
    toastTimer_.cancel();
    toast_.reset();
    failure_ = Failure{what, std::move(message)};
    Q_EMIT toastChanged();
}

Instant AppModel::wallNow() const {
    return executor().wallNow();
}

void AppModel::dispose(std::shared_ptr<QObject> retired) {
    if (retired) executor().post([retired = std::move(retired)] {});
}

}  // namespace quillo
