#include "app/gui/LibraryPresenter.hpp"

#include <algorithm>
#include <set>
#include <utility>

#include "app/LibraryTexts.hpp"
#include "app/gui/Words.hpp"

namespace quillo {

LibraryPresenter::LibraryPresenter(AppModel& model, LibraryState& state, QObject* parent)
    : QAbstractListModel(parent), model_(model), state_(state) {
    connect(&state, &LibraryState::rowsChanged, this, &LibraryPresenter::rowsChanged);
    connect(&state, &LibraryState::cursorMoved, this, &LibraryPresenter::changed);
    connect(&model, &AppModel::storageIssuesChanged, this, [this] {
        Q_EMIT issuesChanged();
        Q_EMIT changed();
    });
    connect(&model, &AppModel::nowChanged, this, [this] {
        now_ = model_.now() ? drawnPart(*model_.now()) : nullptr;
        Q_EMIT nowChanged();
    });
    connect(&model, &AppModel::nowRefreshingChanged, this, &LibraryPresenter::nowChanged);
    connect(&model, &AppModel::accessibilityGrantedChanged, this, [this] {
        Q_EMIT accessChanged();
        Q_EMIT nowChanged();
        model_.refreshNow();
    });
    connect(&model, &AppModel::busyChanged, this, &LibraryPresenter::accessChanged);
    // A restore has changed the desktop that the strip shows.
    connect(&model, &AppModel::restoreChanged, this, [this] {
        if (model_.now() && !model_.restoreRunning()) model_.refreshNow();
    });
    rowsChanged();
}

int LibraryPresenter::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.ids().size());
}

QHash<int, QByteArray> LibraryPresenter::roleNames() const {
    return {{IdRole, "workspaceId"}, {NameRole, "name"}, {IconRole, "icon"}, {ColorRole, "colorName"},
            {AppsRole, "apps"},      {WhenRole, "when"}, {MapRole, "map"}};
}

QVariant LibraryPresenter::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    // While rows go and come one by one, places of the state mean others: the identity counts.
    if (!index.isValid() || row >= rows_.ids().size()) return {};
    const auto& all = model_.workspaces();
    const bool inPlace = row < state_.rows().size() && state_.workspace(row).id == rows_.ids()[row];
    const auto found = inPlace ? all.begin() + static_cast<std::ptrdiff_t>(state_.rows()[row])
                               : std::ranges::find(all, rows_.ids()[row], &Workspace::id);
    if (found == all.end()) return {};
    switch (role) {
        case IdRole:
            return QString::fromStdString(found->id.lower());
        case NameRole:
            return line(found->name);
        case IconRole:
            return qt(found->icon);
        case ColorRole:
            return qt(found->color);
        case AppsRole:
            return applicationNames(found->snapshot);
        case WhenRole:
            return shortDate(found->lastRestoredAt.value_or(found->updatedAt),
                             std::chrono::system_clock::now());
        case MapRole:
            return QVariant::fromValue(map(*found));
        default:
            return {};
    }
}

MapSource LibraryPresenter::map(const Workspace& workspace) const {
    CachedMap& cached = maps_[workspace.id];
    if (!cached.source || cached.updatedAt != workspace.updatedAt) {
        cached = {workspace.updatedAt, drawnPart(workspace.snapshot)};
    }
    return cached.source;
}

void LibraryPresenter::rowsChanged() {
    std::vector<Uuid> wanted;
    for (std::size_t row = 0; row < state_.rows().size(); ++row) wanted.push_back(state_.workspace(row).id);
    rows_.change(*this, wanted);
    if (!wanted.empty()) Q_EMIT dataChanged(index(0), index(count() - 1));
    std::set<Uuid> known;
    for (const Workspace& workspace : model_.workspaces()) known.insert(workspace.id);
    std::erase_if(maps_, [&](const auto& one) { return !known.contains(one.first); });
    Q_EMIT changed();
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
    return lines;
}

QVariant LibraryPresenter::nowMap() const {
    return QVariant::fromValue(now_);
}

QString LibraryPresenter::nowText() const {
    if (!model_.accessibilityGranted()) return accessReason();
    if (!model_.now()) return model_.nowRefreshing() ? QStringLiteral("Reading windows…") : QString();
    return snapshotCounts(*model_.now());
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
    return data(index(row), IdRole).toString();
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
