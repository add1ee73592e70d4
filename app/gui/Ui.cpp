#include "app/gui/Ui.hpp"

#include <algorithm>

namespace quillo {

Ui::Ui(AppModel& model, TextVariant variant, QObject* parent)
    : QObject(parent), model_(model), variant_(variant) {
    for (const auto changed : {&AppModel::draftChanged, &AppModel::capturingChanged,
                               &AppModel::showingSettingsChanged, &AppModel::workspacesChanged}) {
        connect(&model, changed, this, &Ui::pageChanged);
    }
    connect(&model, &AppModel::settingsChanged, this, &Ui::pageChanged);
    connect(&model, &AppModel::settingsChanged, this, &Ui::settingsChanged);
    connect(&model, &AppModel::toastChanged, this, &Ui::toastChanged);
}

QString Ui::page() const {
    if (!model_.settings().onboarded) return QStringLiteral("onboarding");
    if (model_.draft() || model_.capturing()) return QStringLiteral("review");
    return place().page;
}

Ui::Place Ui::place() const {
    const std::optional<Uuid> id = Uuid::parse(detailId_.toStdString());
    const bool known =
        id && std::ranges::any_of(model_.workspaces(), [&](const Workspace& one) { return one.id == *id; });
    return {model_.showingSettings() ? QStringLiteral("settings")
            : known                  ? QStringLiteral("detail")
                                     : QStringLiteral("library"),
            detailId_, settingsPane_};
}

void Ui::goTo(const Place& place) {
    detailId_ = place.detailId;
    settingsPane_ = place.settingsPane;
    model_.setShowingSettings(place.page == QLatin1String("settings"));
    Q_EMIT pageChanged();
}

QString Ui::toastKind() const {
    switch (model_.toastKind()) {
        case ToastKind::done:
            return QStringLiteral("done");
        case ToastKind::refusal:
            return QStringLiteral("refusal");
        case ToastKind::failure:
            return QStringLiteral("failure");
    }
    return {};
}

void Ui::setSettingsPane(const QString& pane) {
    if (std::exchange(settingsPane_, pane) != pane) Q_EMIT pageChanged();
}

QString Ui::saveShortcut() const {
    if (!model_.settings().shortcutsEnabled) return {};
    return shortcut(QString::fromStdString(model_.settings().shortcut(HotKeyAction::save).label()));
}

QString Ui::text(const QString& text) const {
    return QString::fromStdString(platformText(text.toStdString(), variant_));
}

QString Ui::modifierWord(const QString& glyph) const {
    return QString::fromStdString(modifierName(glyph.toStdString(), variant_));
}

QString Ui::shortcut(const QString& label) const {
    return QString::fromStdString(shortcutText(label.toStdString(), variant_));
}

void Ui::openDetail(const QString& id) {
    detailId_ = id;
    model_.setShowingSettings(false);
    Q_EMIT pageChanged();
}

void Ui::openSettings(const QString& pane) {
    if (!pane.isEmpty()) settingsPane_ = pane;
    model_.setShowingSettings(true);
    Q_EMIT pageChanged();
}

void Ui::undoToast() {
    if (const std::optional<Uuid> id = model_.toastUndoes()) model_.undo(*id);
}

void Ui::leave() {
    if (model_.reportShown()) return model_.closeRestorePanel();
    if (page() == QLatin1String("detail") || page() == QLatin1String("settings")) back();
}

void Ui::back() {
    if (model_.showingSettings()) return model_.setShowingSettings(false);
    detailId_.clear();
    Q_EMIT pageChanged();
}

}  // namespace quillo
