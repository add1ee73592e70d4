#include "app/gui/AutomationPresenter.hpp"

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

}  // namespace quillo
