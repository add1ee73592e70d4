#include "app/gui/DetailPresenter.hpp"

#include <QCollator>
#include <algorithm>
#include <ranges>
#include <set>

#include "WindowEngine/integrations/Adapters.hpp"
#include "app/WorkspaceContents.hpp"
#include "app/gui/ReviewPresenter.hpp"

namespace quillo {
namespace {

/// What was saved last came from the desktop when it was made or captured anew; an edit changes neither.
Instant savedAt(const Workspace& workspace) {
    return std::max(workspace.createdAt, workspace.snapshot.capturedAt);
}

/// "1 window · 6 tabs", "1 window, minimized", "2 windows · Desktop 2".
QString describe(const ApplicationSnapshot& application) {
    const auto& windows = application.windows;
    QString text = windows.empty() ? QStringLiteral("no saved windows")
                                   : counted(static_cast<std::int64_t>(windows.size()), "window");
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
    connect(&model, &AppModel::editsChanged, this, &DetailPresenter::editsChanged);
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
    const bool another = !workspace_ || workspace_->id != found->id;
    const bool same = !another && workspace_->snapshot == found->snapshot;
    workspace_ = *found;
    if (!same) showContents(another);
    Q_EMIT changed();
    if (another) Q_EMIT editsChanged();
}

/// Rows stay as they are, open or closed, where only the ticks changed.
void DetailPresenter::showContents(bool another) {
    LeftOut::Whole whole = LeftOut::whole(workspace_->snapshot);
    const bool sameRows = !another && contents_ && whole.snapshot == whole_.snapshot;
    whole_ = std::move(whole);
    if (sameRows) return contents_->setExcluded(whole_.excluded);
    WorkspaceSnapshot named = whole_.snapshot;
    for (ApplicationSnapshot& application : named.applications)
        application.name = model_.shownName(application);
    map_ = drawnPart(whole_.snapshot);
    auto contents = std::make_unique<CaptureDraft>(std::move(named), std::nullopt, false);
    contents->setExcluded(whole_.excluded);
    connect(contents.get(), &CaptureDraft::exclusionsChanged, this, &DetailPresenter::statesChanged);
    rows_.show(contents.get(), another ? std::set<std::string>() : rows_.openApps(), describe);
    contents_ = std::move(contents);
    Q_EMIT statesChanged();
}

const Workspace& DetailPresenter::shown() const {
    static const Workspace none;
    return workspace_ ? *workspace_ : none;
}

QString DetailPresenter::saved() const {
    return "Saved " + longDate(savedAt(shown()), std::chrono::system_clock::now());
}

QString DetailPresenter::edited() const {
    if (shown().updatedAt < savedAt(shown()) + std::chrono::minutes(1)) return {};
    return "Edited " + longDate(shown().updatedAt, std::chrono::system_clock::now());
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

QString DetailPresenter::leftOutText() const {
    const std::size_t parts = shown().snapshot.leftOut ? shown().snapshot.leftOut->size() : 0;
    if (parts == 0) return {};
    return number(static_cast<std::int64_t>(parts)) + QChar(QChar::Nbsp) + "left" + QChar(QChar::Nbsp) +
           "out";
}

QVariantMap DetailPresenter::states() const {
    return contents_ ? untickedWindows(*contents_) : QVariantMap();
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

void DetailPresenter::preview() {
    if (workspace_) model_.openPreview(Workspace(*workspace_), workspace_->cleanSlate);
}

void DetailPresenter::setIcon(const QString& icon) {
    if (workspace_) model_.setIcon(Workspace(*workspace_), icon.toStdString());
}

void DetailPresenter::setColor(const QString& color) {
    if (workspace_) model_.setColor(Workspace(*workspace_), color.toStdString());
}

void DetailPresenter::toggle(int row) {
    if (!workspace_ || row < 0 || row >= rows_.rowCount()) return;
    const auto asked = [&](int role) { return rows_.data(rows_.index(row), role); };
    const bool brought = !asked(ReviewRows::IncludedRole).toBool() || asked(ReviewRows::FadedRole).toBool();
    const std::string what = asked(ReviewRows::TitleRole).toString().toStdString();
    rows_.toggle(row);
    if (contents_->excluded() == whole_.excluded) return;
    model_.setLeftOut(Workspace(*workspace_), contents_->excluded(), what, brought);
    contents_->setExcluded(
        whole_.excluded);  // which the library has told by now; the old ones where it failed
}

QVariantList DetailPresenter::browsers() const {
    QVariantList all;
    for (const std::string& identifier : WorkspaceContents::browsers(shown().snapshot)) {
        const auto found = std::ranges::find(shown().snapshot.applications, identifier,
                                             &ApplicationSnapshot::bundleIdentifier);
        all << QVariantMap{{"key", qt(identifier)}, {"name", line(model_.shownName(*found))}};
    }
    return all;
}

QString DetailPresenter::addressRefusal() const {
    if (const Capability able = model_.integration(); !able) return qt(able.reason());
    if (!browsers().isEmpty()) return {};
    return "No browser in this workspace has an integration. Add one first.";
}

QString DetailPresenter::addressNote(const QString& browser) const {
    const std::string key = browser.toStdString();
    const bool on = Adapters::adapter(key, model_.settings().enabledAdapters) != nullptr;
    return on ? QString() : "It is opened once this browser's integration is on in Settings.";
}

QVariantList DetailPresenter::addableApps() const {
    std::vector<InstalledApplication> apps = model_.addableApplications();
    std::erase_if(apps, [&](const InstalledApplication& one) {
        return std::ranges::find(shown().snapshot.applications, one.bundleIdentifier,
                                 &ApplicationSnapshot::bundleIdentifier) !=
               shown().snapshot.applications.end();
    });
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::sort(apps, [&](const InstalledApplication& one, const InstalledApplication& other) {
        const int order = collator.compare(qt(one.name), qt(other.name));
        return order != 0 ? order < 0 : one.bundleIdentifier < other.bundleIdentifier;
    });
    const std::set<std::string> running = model_.runningApplications();
    QVariantList list;
    for (const InstalledApplication& one : apps) {
        list << QVariantMap{{"key", qt(one.bundleIdentifier)},
                            {"name", line(one.name)},
                            {"running", running.contains(one.bundleIdentifier)}};
    }
    return list;
}

void DetailPresenter::addApp(const QString& key) {
    if (workspace_) model_.addApplication(Workspace(*workspace_), key.toStdString());
}

QString DetailPresenter::addAddress(const QString& browser, const QString& typed) {
    if (!workspace_) return {};
    const Result<void> added =
        model_.addAddress(Workspace(*workspace_), browser.toStdString(), typed.toStdString());
    return added ? QString() : line(added.error().text);
}

void DetailPresenter::undo() {
    model_.undo(shown().id);
}

void DetailPresenter::redo() {
    model_.redo(shown().id);
}

}  // namespace quillo
