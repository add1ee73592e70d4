#include "app/gui/SettingsPresenter.hpp"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <span>

#include "WindowEngine/library/AutoSnapshotPolicy.hpp"

namespace quillo {
namespace {

/// What there is to choose from while sessions are saved.
constexpr std::span<const std::int64_t> offeredMinutes = std::span(AutoSnapshotPolicy::intervals).subspan(1);
constexpr std::int64_t firstMinutes = 10;  // when saving is switched on

QString sessionText(const Workspace& session) {
    const auto seconds =
        std::chrono::floor<std::chrono::seconds>(session.updatedAt).time_since_epoch().count();
    const std::int64_t windows = session.snapshot.windowCount();
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(seconds), QLocale::ShortFormat) +
           QStringLiteral(" · %1 window%2").arg(windows).arg(windows == 1 ? "" : "s");
}

}  // namespace

SettingsPresenter::SettingsPresenter(AppModel& model, UpdateController& updates, LoginItemService& loginItem,
                                     QObject* parent)
    : QObject(parent), model_(model), updates_(updates), loginItem_(loginItem) {
    for (const auto signal : {&AppModel::settingsChanged, &AppModel::settingsTroubleChanged,
                              &AppModel::accessibilityGrantedChanged, &AppModel::autoSnapshotErrorChanged,
                              &AppModel::sessionsChanged}) {
        connect(&model, signal, this, &SettingsPresenter::changed);
    }
    for (const auto signal : {&AppModel::sessionsChanged, &AppModel::busyChanged})
        connect(&model, signal, this, &SettingsPresenter::busyChanged);
    connect(&model.loginItem(), &LoginItemController::changed, this, &SettingsPresenter::loginChanged);
    connect(&updates, &UpdateController::changed, this, &SettingsPresenter::updatesChanged);
}

QStringList SettingsPresenter::trouble() const {
    const auto& trouble = model_.settingsTrouble();
    return trouble ? QString::fromStdString(*trouble).split('\n') : QStringList();
}

bool SettingsPresenter::openAtLogin() const {
    return model_.loginItem().status() == LoginItemStatus::enabled || loginNeedsApproval();
}

bool SettingsPresenter::loginNeedsApproval() const {
    return model_.loginItem().status() == LoginItemStatus::requiresApproval;
}

QString SettingsPresenter::loginError() const {
    return QString::fromStdString(model_.loginItem().errorMessage().value_or(""));
}

void SettingsPresenter::setAppearance(int appearance) {
    if (appearance < 0 || appearance > static_cast<int>(Appearance::dark)) return;
    AppSettings settings = model_.settings();
    settings.appearance = static_cast<Appearance>(appearance);
    model_.setSettings(std::move(settings));
}

QString SettingsPresenter::accessRefusal() const {
    return QString::fromStdString(model_.accessibilityAccess().reason());
}

void SettingsPresenter::setSavesSessions(bool on) {
    setMinutes(on ? firstMinutes : 0);
}

QStringList SettingsPresenter::intervals() const {
    QStringList texts;
    for (const std::int64_t minutes : offeredMinutes)
        texts << (minutes == 60 ? QStringLiteral("Every hour")
                                : QStringLiteral("Every %1 minutes").arg(minutes));
    return texts;
}

int SettingsPresenter::interval() const {
    const auto found = std::ranges::find(offeredMinutes, model_.settings().autoSnapshotMinutes);
    return found == offeredMinutes.end() ? 0 : static_cast<int>(found - offeredMinutes.begin());
}

void SettingsPresenter::setInterval(int place) {
    if (place < 0 || place >= std::ssize(offeredMinutes)) return;
    setMinutes(offeredMinutes[static_cast<std::size_t>(place)]);
}

void SettingsPresenter::setMinutes(std::int64_t minutes) {
    AppSettings settings = model_.settings();
    settings.autoSnapshotMinutes = minutes;
    model_.setSettings(std::move(settings));
}

QString SettingsPresenter::sessionError() const {
    return QString::fromStdString(model_.autoSnapshotError().value_or(""));
}

bool SettingsPresenter::canRestore() const {
    return model_.canRestoreLastSession();
}

QVariantList SettingsPresenter::earlierSessions() const {
    QVariantList entries;
    for (std::size_t i = 1; i < model_.sessions().size(); ++i) {
        const Workspace& session = model_.sessions()[i];
        entries << QVariantMap{{"key", QString::fromStdString(session.id.lower())},
                               {"text", sessionText(session)}};
    }
    return entries;
}

void SettingsPresenter::restoreLastSession() {
    model_.restoreLastSession();
}

void SettingsPresenter::restoreSession(const QString& key) {
    const auto id = Uuid::parse(key.toStdString());
    const auto found =
        std::ranges::find(model_.sessions(), id, [](const Workspace& one) { return std::optional(one.id); });
    if (id && found != model_.sessions().end()) model_.restore(*found, found->cleanSlate);
}

QString SettingsPresenter::availableVersion() const {
    return QString::fromStdString(updates_.availableVersion().value_or(""));
}

QString SettingsPresenter::relaunchRefusal() const {
    return model_.canRelaunchForUpdate() ? QString() : QString::fromUtf8(AppModel::relaunchRefusal);
}

void SettingsPresenter::relaunch() {
    const auto install = updates_.installAndRelaunch();
    if (install && model_.canRelaunchForUpdate()) install();
}

QString SettingsPresenter::version() const {
    return QStringLiteral(QUILLO_VERSION);
}

}  // namespace quillo
