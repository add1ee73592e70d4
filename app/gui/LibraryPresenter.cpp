#include "app/gui/LibraryPresenter.hpp"

#include <algorithm>

#include "app/LibraryTexts.hpp"
#include "app/gui/Words.hpp"

namespace quillo {

LibraryPresenter::LibraryPresenter(AppModel& model, LibraryState& state, QObject* parent)
    : WorkspaceRows(state.index(), parent), model_(model), state_(state) {
    connect(&state, &LibraryState::rowsChanged, this, &LibraryPresenter::rowsChanged);
    connect(&state, &LibraryState::cursorMoved, this, &LibraryPresenter::changed);
    connect(&model, &AppModel::storageIssuesChanged, this, [this] {
        Q_EMIT issuesChanged();
        Q_EMIT changed();
    });
    connect(&model, &AppModel::currentSnapshotChanged, this, [this] {
        currentSnapshot_ = model_.currentSnapshot() ? drawnPart(*model_.currentSnapshot()) : nullptr;
        Q_EMIT currentSnapshotChanged();
    });
    connect(&model, &AppModel::refreshingCurrentSnapshotChanged, this,
            &LibraryPresenter::currentSnapshotChanged);
    connect(&model, &AppModel::accessibilityGrantedChanged, this, [this] {
        Q_EMIT accessChanged();
        Q_EMIT currentSnapshotChanged();
        model_.refreshCurrentSnapshot();
    });
    connect(&model, &AppModel::busyChanged, this, &LibraryPresenter::accessChanged);
    // A restore has changed the desktop that the strip shows.
    connect(&model, &AppModel::restoreChanged, this, [this] {
        if (model_.currentSnapshot() && !model_.restoreRunning()) model_.refreshCurrentSnapshot();
    });
    rowsChanged();
}

void LibraryPresenter::rowsChanged() {
    setPlaces(state_.rows());
    Q_EMIT changed();
    if (!selecting_) return;
    std::set<QString> known;  // what is gone is not selected any more
    for (const Workspace& one : model_.workspaces()) known.insert(QString::fromStdString(one.id.lower()));
    std::erase_if(selected_, [&](const QString& id) { return !known.contains(id); });
    if (model_.workspaces().empty()) selecting_ = false;
    Q_EMIT selectionChanged();
}

bool LibraryPresenter::allSelected() const {
    return count() > 0 &&
           std::ranges::all_of(keys(), [&](const QString& id) { return selected_.contains(id); });
}

void LibraryPresenter::beginSelecting() {
    if (!std::exchange(selecting_, true)) Q_EMIT selectionChanged();
}

void LibraryPresenter::endSelecting() {
    selected_.clear();
    if (std::exchange(selecting_, false)) Q_EMIT selectionChanged();
}

void LibraryPresenter::toggleSelected(const QString& id) {
    selecting_ = true;
    if (selected_.erase(id) == 0) selected_.insert(id);
    Q_EMIT selectionChanged();
}

void LibraryPresenter::selectAll() {
    const bool all = allSelected();
    for (const QString& id : keys()) {
        if (all)
            selected_.erase(id);
        else
            selected_.insert(id);
    }
    selecting_ = true;
    Q_EMIT selectionChanged();
}

std::vector<Uuid> LibraryPresenter::selectedIds() const {
    std::vector<Uuid> ids;
    for (const QString& id : selected_) ids.push_back(*Uuid::parse(id.toStdString()));
    return ids;
}

void LibraryPresenter::exportSelected() {
    if (!selected_.empty()) model_.exportWorkspaces(selectedIds());
}

void LibraryPresenter::removeSelected() {
    const std::vector<Uuid> ids = selectedIds();
    endSelecting();
    if (!ids.empty()) model_.deleteWorkspaces(ids);
}

QStringList LibraryPresenter::orders() const {
    QStringList labels;
    for (const WorkspaceOrder order : allWorkspaceOrders) labels << qt(label(order));
    return labels;
}

void LibraryPresenter::setOrder(int order) {
    state_.setOrder(allWorkspaceOrders.at(static_cast<std::size_t>(order)));
}

bool LibraryPresenter::unlisted() const {
    return model_.workspaces().empty() && model_.storageIssues().unlisted();
}

QString LibraryPresenter::emptyTitle() const {
    return qt(unlisted() ? LibraryTexts::unreadable : state_.emptyTitle());
}

QString LibraryPresenter::emptyHint() const {
    return qt(unlisted() ? LibraryTexts::unreadableHint : state_.emptyHint());
}

QStringList LibraryPresenter::issues() const {
    QStringList lines;
    for (const WorkspaceLoadIssue& issue : model_.storageIssues().shown()) lines << line(issue.text());
    for (const std::string& file : model_.storageIssues().moved()) lines << line(file);
    return lines;
}

QVariant LibraryPresenter::currentMap() const {
    return QVariant::fromValue(currentSnapshot_);
}

QString LibraryPresenter::currentText() const {
    if (!model_.accessibilityGranted()) return accessReason();
    if (!model_.currentSnapshot())
        return model_.refreshingCurrentSnapshot() ? QStringLiteral("Reading windows…") : QString();
    return snapshotCounts(*model_.currentSnapshot());
}

QString LibraryPresenter::accessReason() const {
    return qt(model_.accessibilityAccess().reason());
}

void LibraryPresenter::moveCursor(int steps) {
    for (; steps > 0; --steps) state_.moveCursorDown();
    for (; steps < 0; ++steps) state_.moveCursorUp();
}

void LibraryPresenter::setCursor(int row) {
    moveCursor(row - cursor());
}

QString LibraryPresenter::idAt(int row) const {
    return data(index(row), KeyRole).toString();
}

void LibraryPresenter::act(const QString& id, const std::function<void(const Workspace&)>& operation) {
    const std::optional<Uuid> wanted = Uuid::parse(id.toStdString());
    const auto& all = model_.workspaces();
    const auto found = wanted ? std::ranges::find(all, *wanted, &Workspace::id) : all.end();
    if (found == all.end()) return;  // deleted meanwhile, by another program perhaps
    operation(*found);
}

void LibraryPresenter::resume(const QString& id) {
    act(id, [this](const Workspace& one) { model_.restore(one, one.cleanSlate); });
}

void LibraryPresenter::update(const QString& id) {
    act(id, [this](const Workspace& one) { model_.beginCapture(one); });
}

void LibraryPresenter::rename(const QString& id, const QString& name) {
    act(id, [&](const Workspace& one) { model_.rename(Workspace(one), name.toStdString()); });
}

void LibraryPresenter::exportWorkspace(const QString& id) {
    act(id, [this](const Workspace& one) { model_.exportWorkspace(one); });
}

void LibraryPresenter::duplicate(const QString& id) {
    act(id, [this](const Workspace& one) { model_.duplicate(one); });
}

void LibraryPresenter::remove(const QString& id) {
    act(id, [this](const Workspace& one) { model_.deleteWorkspace(one); });
}

}  // namespace quillo
