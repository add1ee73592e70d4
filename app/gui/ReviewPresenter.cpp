#include "app/gui/ReviewPresenter.hpp"

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

/// "6 of 8 windows", on one line.
QString share(std::int64_t part, std::int64_t all, const QString& noun) {
    const QString nbsp(QChar::Nbsp);
    return number(part) + nbsp + "of" + nbsp + counted(all, noun);
}

}  // namespace

ReviewPresenter::ReviewPresenter(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    connect(&model, &AppModel::capturingChanged, this, &ReviewPresenter::capturingChanged);
    connect(&model, &AppModel::draftChanged, this, &ReviewPresenter::draftReplaced);
    draftReplaced();
}

void ReviewPresenter::draftReplaced() {
    CaptureDraft* draft = model_.draft();
    rows_.show(draft);
    if (draft) {
        connect(draft, &CaptureDraft::changed, this, &ReviewPresenter::changed);
        connect(draft, &CaptureDraft::exclusionsChanged, this, &ReviewPresenter::countAnew);
    }
    all_ = draft ? amountOf(draft->snapshot()) : Amount{};
    map_ = draft ? drawnPart(draft->snapshot()) : nullptr;
    Q_EMIT draftChanged();
    Q_EMIT changed();
    countAnew();
}

void ReviewPresenter::countAnew() {
    const CaptureDraft* draft = model_.draft();
    kept_ = draft ? amountOf(draft->filteredSnapshot()) : Amount{};
    Q_EMIT exclusionsChanged();
}

ReviewPresenter::Amount ReviewPresenter::amountOf(const WorkspaceSnapshot& snapshot) {
    return {.apps = static_cast<std::int64_t>(snapshot.applications.size()),
            .windows = snapshot.windowCount(),
            .tabs = snapshot.tabCount(),
            .folders = snapshot.folderCount()};
}

QStringList ReviewPresenter::notes() const {
    QStringList lines;
    if (!present()) return lines;
    const CaptureDraft& draft = *model_.draft();
    if (!draft.warning().empty()) lines << line(draft.warning());
    for (const std::string& note : draft.snapshot().notes.value_or(std::vector<std::string>()))
        lines << line(note);
    return lines;
}

QVariant ReviewPresenter::map() const {
    return mapVariant(map_);
}

QString ReviewPresenter::name() const {
    return present() ? line(model_.draft()->name()) : QString();
}

void ReviewPresenter::setName(const QString& name) {
    if (present()) model_.draft()->setName(name.toStdString());
}

QString ReviewPresenter::icon() const {
    return present() ? qt(model_.draft()->icon()) : QString();
}

void ReviewPresenter::setIcon(const QString& icon) {
    if (present()) model_.draft()->setIcon(icon.toStdString());
}

QString ReviewPresenter::color() const {
    return present() ? qt(model_.draft()->color()) : QString();
}

void ReviewPresenter::setColor(const QString& color) {
    if (present()) model_.draft()->setColor(color.toStdString());
}

QStringList ReviewPresenter::icons() const {
    QStringList all;
    for (const std::string_view icon : CaptureDraft::icons) all << qt(icon);
    return all;
}

QStringList ReviewPresenter::colors() const {
    QStringList all;
    for (const std::string_view color : Workspace::colors) all << qt(color);
    return all;
}

QVariantMap ReviewPresenter::states() const {
    return present() ? untickedWindows(*model_.draft()) : QVariantMap();
}

QVariantMap untickedWindows(const CaptureDraft& draft) {
    QVariantMap states;
    for (const ApplicationSnapshot& application : draft.snapshot().applications) {
        const std::string& identifier = application.bundleIdentifier;
        for (const WindowSnapshot& window : application.windows) {
            if (draft.includesApp(identifier) && draft.includesWindow(identifier, window.index)) continue;
            states.insert(qt(CaptureFilter::windowKey(identifier, window.index)), QStringLiteral("unticked"));
        }
    }
    return states;
}

QString ReviewPresenter::savedText() const {
    return counted(kept_.windows, "window") + QChar(QChar::Nbsp) + "saved";
}

QString ReviewPresenter::leftOutText() const {
    const std::int64_t left = all_.windows - kept_.windows;
    if (left == 0) return {};
    return number(left) + QChar(QChar::Nbsp) + "left" + QChar(QChar::Nbsp) + "out";
}

QString ReviewPresenter::counts() const {
    QStringList parts{share(kept_.apps, all_.apps, "app"), share(kept_.windows, all_.windows, "window")};
    if (all_.tabs > 0) parts << share(kept_.tabs, all_.tabs, "tab");
    if (all_.folders > 0) parts << share(kept_.folders, all_.folders, "folder");
    return joined(parts);
}

bool ReviewPresenter::touched() const {
    if (!present()) return false;
    const CaptureDraft& draft = *model_.draft();
    const std::string before = draft.updating() ? draft.updating()->name : std::string();
    return draft.name() != before || draft.exclusionsTouched();
}

void ReviewPresenter::save() {
    if (present() && !capturing()) model_.commit(*model_.draft());
}

bool ReviewPresenter::mayClose() {
    if (touched()) {
        Q_EMIT closeAsked();
        return false;
    }
    cancel();
    return true;
}

void ReviewPresenter::cancel() {
    model_.dismissDraft();
}

}  // namespace quillo
