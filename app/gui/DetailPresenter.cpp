#include "app/gui/DetailPresenter.hpp"

#include <algorithm>
#include <ranges>

namespace quillo {
namespace {

/// The grid makes all its cells at once.
constexpr std::int64_t mostApps = 200;

/// "1 window · 6 tabs", "1 window, minimized", "2 windows · Desktop 2".
QString describe(const ApplicationSnapshot& application) {
    const auto& windows = application.windows;
    QString text = counted(static_cast<std::int64_t>(windows.size()), "window");
    if (!windows.empty() && std::ranges::all_of(windows, &WindowSnapshot::isMinimized)) text += ", minimized";
    if (windows.size() == 1 && windows[0].isFullscreen) text += ", full screen";
    if (application.context) {
        const bool folders = application.context->adapter == "finder";
        const std::int64_t count = application.context->urlCount();
        if (count > 0) text += " · " + counted(count, folders ? "folder" : "tab");
    }
    if (windows.empty() || !windows[0].desktop || windows[0].desktop->index == 0) return text;
    const bool together = std::ranges::all_of(
        windows, [&](const WindowSnapshot& one) { return one.desktop == windows[0].desktop; });
    if (together) text += " · Desktop" + QString(QChar::Nbsp) + QString::number(windows[0].desktop->number());
    return text;
}

}  // namespace

DetailPresenter::DetailPresenter(AppModel& model, Ui& ui, QObject* parent)
    : QObject(parent), model_(model), ui_(ui) {
    connect(&ui, &Ui::pageChanged, this, &DetailPresenter::reload);
    connect(&model, &AppModel::workspacesChanged, this, &DetailPresenter::reload);
    connect(&model, &AppModel::busyChanged, this, &DetailPresenter::busyChanged);
    connect(&model, &AppModel::restoreChanged, this, &DetailPresenter::reportChanged);
    connect(this, &DetailPresenter::changed, this, &DetailPresenter::reportChanged);
    reload();
}

/// What was shown stays until something else is, so that a page that fades out keeps its words.
void DetailPresenter::reload() {
    const std::optional<Uuid> id = Uuid::parse(ui_.detailId().toStdString());
    const auto& all = model_.workspaces();
    const auto found = id ? std::ranges::find(all, *id, &Workspace::id) : all.end();
    if (found == all.end() || workspace_ == *found) return;
    const bool sameMap = workspace_ && workspace_->id == found->id && workspace_->snapshot == found->snapshot;
    workspace_ = *found;
    if (!sameMap) map_ = drawnPart(found->snapshot);
    Q_EMIT changed();
}

const Workspace& DetailPresenter::shown() const {
    static const Workspace none;
    return workspace_ ? *workspace_ : none;
}

QString DetailPresenter::saved() const {
    return "Saved " + longDate(shown().updatedAt, std::chrono::system_clock::now());
}

QString DetailPresenter::lastResumed() const {
    if (!shown().lastRestoredAt) return {};
    return "Last resumed " + longDate(*shown().lastRestoredAt, std::chrono::system_clock::now());
}

QVariantList DetailPresenter::counts() const {
    const WorkspaceSnapshot& snapshot = shown().snapshot;
    QVariantList all;
    const auto add = [&all](std::int64_t count, const QString& noun) {
        all << QVariantMap{{"count", static_cast<qlonglong>(count)},
                           {"noun", count == 1 ? noun : noun + "s"}};
    };
    add(static_cast<std::int64_t>(snapshot.applications.size()), "app");
    add(snapshot.windowCount(), "window");
    add(static_cast<std::int64_t>(snapshot.displays.size()), "display");
    if (snapshot.desktops) add(snapshot.desktopCount(), "desktop");
    return all;
}

QVariantList DetailPresenter::apps() const {
    QVariantList all;
    for (const ApplicationSnapshot& application :
         shown().snapshot.applications | std::views::take(mostApps)) {
        all << QVariantMap{{"identifier", qt(application.bundleIdentifier)},
                           {"name", line(model_.shownName(application))},
                           {"what", describe(application)}};
    }
    return all;
}

QString DetailPresenter::moreApps() const {
    return andMore(static_cast<std::int64_t>(shown().snapshot.applications.size()) - mostApps);
}

QStringList DetailPresenter::cleanSlateLabels() const {
    QStringList labels;
    for (const CleanSlateMode mode : allCleanSlateModes) labels << qt(label(mode));
    return labels;
}

void DetailPresenter::rename(const QString& name) {
    if (workspace_) model_.rename(Workspace(*workspace_), name.toStdString());
}

void DetailPresenter::setCleanSlate(int mode) {
    if (workspace_) {
        model_.setCleanSlate(Workspace(*workspace_), allCleanSlateModes.at(static_cast<std::size_t>(mode)));
    }
}

void DetailPresenter::showReport() {
    if (workspace_) model_.showReport(workspace_->id);
}

void DetailPresenter::resume() {
    if (workspace_) model_.restore(Workspace(*workspace_), workspace_->cleanSlate);
}

}  // namespace quillo
