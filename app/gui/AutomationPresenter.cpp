#include "app/gui/AutomationPresenter.hpp"

#include <QTime>

namespace quillo {

AutomationPresenter::AutomationPresenter(AppModel& model, Ui& ui, QObject* parent)
    : QObject(parent), model_(model), ui_(ui) {
    connect(&ui, &Ui::pageChanged, this, &AutomationPresenter::follow);
    connect(&model, &AppModel::settingsChanged, this, &AutomationPresenter::changed);
    follow();
}

/// What was shown stays until something else is, so that a page that fades out keeps its words.
void AutomationPresenter::follow() {
    const std::optional<Uuid> shown = Uuid::parse(ui_.detailId().toStdString());
    if (!shown || shown == shown_) return;
    shown_ = shown;
    Q_EMIT changed();
}

WorkspaceAutomation AutomationPresenter::chosen() const {
    return shown_ ? model_.settings().automationOf(*shown_) : WorkspaceAutomation{};
}

void AutomationPresenter::change(const std::function<void(WorkspaceAutomation&)>& edit) {
    if (!shown_) return;
    WorkspaceAutomation automation = chosen();
    edit(automation);
    model_.setAutomation(*shown_, automation);
}

void AutomationPresenter::setWithoutAsking(bool allowed) {
    change([&](WorkspaceAutomation& automation) { automation.withoutAsking = allowed; });
}

void AutomationPresenter::setAtLogin(bool on) {
    change([&](WorkspaceAutomation& automation) { automation.atLogin = on; });
}

void AutomationPresenter::setAtDisplays(bool on) {
    change([&](WorkspaceAutomation& automation) { automation.atDisplays = on; });
}

void AutomationPresenter::setDays(int place) {
    if (place < 0 || place >= dayChoices().size()) return;
    change([&](WorkspaceAutomation& automation) { automation.days = static_cast<Days>(place); });
}

QString AutomationPresenter::time() const {
    return QTime(0, 0).addSecs(static_cast<int>(chosen().minute % minutesOfDay) * 60).toString("HH:mm");
}

QString AutomationPresenter::setTime(const QString& typed) {
    QString text = typed.trimmed().replace('.', ':');
    if (!text.contains(':')) text += ":00";
    const QTime time = QTime::fromString(text, "H:m");
    if (!time.isValid()) return "“" + typed.left(20) + "” is no time. Write it as 09:30.";
    change([&](WorkspaceAutomation& automation) { automation.minute = time.hour() * 60 + time.minute(); });
    return {};
}

}  // namespace quillo
