#include "app/gui/ReviewPresenter.hpp"

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/support/Text.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

/// "6 of 8 windows", on one line.
QString share(std::int64_t part, std::int64_t all, const QString& noun) {
    const QString nbsp(QChar::Nbsp);
    return number(part) + nbsp + "of" + nbsp + counted(all, noun);
}

}  // namespace

ReviewPresenter::ReviewPresenter(AppModel& model, TextVariant variant, QObject* parent)
    : QObject(parent), model_(model), variant_(variant) {
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
    notes_ = draft ? notesOf(draft->snapshot()) : QStringList();
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

QStringList ReviewPresenter::notesOf(const WorkspaceSnapshot& snapshot) const {
    constexpr qsizetype most = 8;
    QStringList lines, names;
    if (snapshot.notes)
        for (const std::string& note : *snapshot.notes) lines << line(note);
    for (const std::string& name : model_.notLaunchable(snapshot)) names << line(name);
    if (names.isEmpty()) return lines;
    const QString more = andMore(names.size() - most);
    names = names.mid(0, most);
    if (!more.isEmpty()) names << more;
    const bool onLinux = variant_ == TextVariant::onLinux;
    return lines << (onLinux ? "No menu entry starts " : "Quillo can't start ") + names.join(", ") +
                        (onLinux ? ", so Quillo can't either: windows of it come back while it runs, or once "
                                   "“quilloctl launcher add” has said how it is started."
                                 : " again: windows of it come back while it runs.");
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
    return counted(kept_.windows, "window") + " will be saved";
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
    return text::trim(draft.name()) != text::trim(before) || draft.exclusionsTouched();
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
