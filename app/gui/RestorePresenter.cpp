#include "app/gui/RestorePresenter.hpp"

#include "app/gui/RestoreStates.hpp"

namespace quillo {
namespace {

/// The place of "trouble" among the fields.
constexpr int troubleRole = Qt::UserRole + 7;
constexpr int rowsWithoutScrolling = 8;

QVariantList rowValues(const RestoreReport::Item& item, const Workspace& workspace) {
    const RestoreRow row = restoreRow(item, workspace);
    const QString kind = kindOf(item.status);
    return {QString::fromStdString(item.app),
            QString::fromStdString(item.bundleIdentifier),
            QString::fromStdString(row.subject),
            QString::fromStdString(row.outcome),
            reasonOf(item.status),
            kind,
            kind == "failed" || kind == "skipped" ? "trouble" : ""};
}

}  // namespace

RestorePresenter::RestorePresenter(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    shown_.setSourceModel(&all_);
    shown_.setFilterRole(troubleRole);
    connect(&model, &AppModel::restoreChanged, this, &RestorePresenter::followRun);
    followRun();
}

QString RestorePresenter::title() const {
    return run_ ? QString::fromStdString(run_->title()) : QString();
}

QString RestorePresenter::subtitle() const {
    return run_ ? QString::fromStdString(run_->subtitle()) : QString();
}

QString RestorePresenter::icon() const {
    return run_ ? QString::fromStdString(run_->workspace().icon) : QString();
}

QString RestorePresenter::colorName() const {
    return run_ ? QString::fromStdString(run_->workspace().color) : QString();
}

void RestorePresenter::setOnlyTrouble(bool only) {
    onlyTrouble_ = only;
    shown_.setFilterFixedString(only ? QStringLiteral("trouble") : QString());
    Q_EMIT changed();
}

void RestorePresenter::followRun() {
    if (run_ == model_.restore()) return follow();
    if (run_) run_->disconnect(this);
    run_ = model_.restore();
    source_ = nullptr;
    onlyTrouble_ = false;
    shown_.setFilterFixedString({});
    if (run_) {
        source_ = std::make_shared<const WorkspaceSnapshot>(run_->workspace().snapshot);
        connect(run_, &RestoreRun::itemAdded, this, &RestorePresenter::follow);
        connect(run_, &RestoreRun::finished, this, [this] {
            follow();
            // Among many rows, those that matter now.
            if (troubleCount_ > 0 && rowCount() > rowsWithoutScrolling) setOnlyTrouble(true);
        });
    }
    Q_EMIT runChanged();
    follow();
}

void RestorePresenter::follow() {
    std::vector<RowList::Row> rows;
    troubleCount_ = 0;
    const RestoreStates states = run_ ? RestoreStates::of(*run_) : RestoreStates{};
    if (run_) {
        for (const RestoreReport::Item& item : run_->items()) {
            rows.push_back({QString::fromStdString(item.id.lower()), rowValues(item, run_->workspace())});
            troubleCount_ += !rows.back().values.back().toString().isEmpty();
        }
    }
    all_.setRows(rows);
    states_ = states.byWindow;
    progress_ = states.decided;
    Q_EMIT changed();
}

}  // namespace quillo
