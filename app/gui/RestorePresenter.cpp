#include "app/gui/RestorePresenter.hpp"

#include <algorithm>

#include "app/RestoreReasons.hpp"
#include "app/gui/RestoreStates.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

/// The place of "trouble" among the fields.
constexpr int troubleRole = Qt::UserRole + 9;
constexpr int rowsWithoutScrolling = 8;
/// Of all lines, and of those with trouble: nobody reads more.
constexpr int mostReportRows = 200;
/// With up to 200 windows each item is shown at once; with more they wait, a millisecond for every twenty, so
/// that showing what has become of all of them takes a small part of the time.
constexpr std::int64_t windowsAtOnce = 200, windowsAMillisecond = 20;

/// The engine's text, said as a sentence where it stands for itself.
QString asSentence(QString text) {
    if (!text.isEmpty()) text[0] = text[0].toUpper();
    return text;
}

QVariantList rowValues(const RestoreReport::Item& item, const RestoreRun& run) {
    const RestoreRow row = run.row(item);
    const RestoreOutcome& outcome = outcomeOf(item.status);
    const RestoreDetail detail = detailOf(item.status);
    const bool plain = !detail.count && detail.textName.empty();
    return {line(item.app),
            QString::fromStdString(item.bundleIdentifier),
            QString::fromStdString(row.text()),
            QString::fromStdString(detail.count ? row.text() : row.subject),
            asSentence(QString::fromStdString(reasonInWords(item))),
            plain ? qt(outcome.word) : QString(),
            qt(outcome.name),
            stateOf(outcome.verdict),
            outcome.trouble() ? "trouble" : "",
            QString::fromStdString(row.desktop).replace(QLatin1Char(' '), QChar(QChar::Nbsp)),
            qt(detail.text.empty() ? outcome.reason : detail.text)};
}

}  // namespace

RestorePresenter::RestorePresenter(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    shown_.setSourceModel(&all_);
    shown_.setFilterRole(troubleRole);
    due_.setSingleShot(true);
    connect(&due_, &QTimer::timeout, this, &RestorePresenter::follow);
    connect(&model, &AppModel::restoreChanged, this, &RestorePresenter::followRun);
    for (const auto changed : {&AppModel::undoChanged, &AppModel::busyChanged})
        connect(&model, changed, this, &RestorePresenter::undoChanged);
    connect(&model, &AppModel::awaitedChanged, this, &RestorePresenter::awaitedChanged);
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

QString RestorePresenter::more() const {
    return andMore((onlyTrouble_ ? troubleCount_ : rowCount_) - shown_.rowCount());
}

void RestorePresenter::followRun() {
    if (run_ && run_ == model_.restoreRun()) return follow();
    if (run_) run_->disconnect(this);
    run_ = model_.restoreRun();
    source_ = nullptr;
    onlyTrouble_ = false;
    shown_.setFilterFixedString({});
    rows_.clear();
    rowCount_ = troubleCount_ = 0;
    if (run_) {
        const WorkspaceSnapshot& snapshot = run_->workspace().snapshot;
        source_ = drawnPart(snapshot);
        const std::int64_t windows = snapshot.windowCount();
        due_.setInterval(windows <= windowsAtOnce ? 0 : static_cast<int>(windows / windowsAMillisecond));
        connect(run_, &RestoreRun::itemAdded, this, [this] {
            if (due_.interval() == 0) return follow();
            if (!due_.isActive()) due_.start();
        });
        connect(run_, &RestoreRun::amended, this, &RestorePresenter::followAnew);
        connect(run_, &RestoreRun::finished, this, &RestorePresenter::followEnd);
    }
    Q_EMIT runChanged();
    Q_EMIT awaitedChanged();
    if (run_ && run_->report()) return followEnd();
    follow();
}

void RestorePresenter::followEnd() {
    follow();
    // Among many rows, those that matter now.
    if (troubleCount_ > 0 && rowCount_ > rowsWithoutScrolling) setOnlyTrouble(true);
}

/// Of this restore, not of a later one.
bool RestorePresenter::canPutBack() const {
    return undoable() && run_->report() && model_.putsBack(run_) && model_.canRelaunchForUpdate();
}

QString RestorePresenter::putBackLimits() const {
    if (!canPutBack()) return {};
    QStringList sentences;
    for (const std::string& one : model_.putBackLimits()) sentences << line(one) + QLatin1Char('.');
    return sentences.join(QLatin1Char(' '));
}

QString RestorePresenter::closing() const {
    const std::vector<UndoLaunch>& launched = model_.launchedBefore();
    if (undoable() || running() || launched.empty()) return {};
    if (launched.size() == 1) return QStringLiteral("Quit ") + line(launched.front().name);
    return QStringLiteral("Quit the %1 apps that were launched").arg(launched.size());
}

QString RestorePresenter::awaited() const {
    const std::int64_t count = run_ ? model_.awaitedWindows(run_) : 0;
    if (count == 0) return {};
    return count == 1 ? QStringLiteral("1 window goes to its place when it opens")
                      : QStringLiteral("%1 windows go to their places when they open").arg(count);
}

/// Some of the lines are others now; their keys stay.
void RestorePresenter::followAnew() {
    rows_.clear();
    rowCount_ = troubleCount_ = 0;
    follow();
    if (troubleCount_ == 0 && onlyTrouble_) setOnlyTrouble(false);
}

int RestorePresenter::expectedRows() const {
    return run_ ? static_cast<int>(std::min<std::int64_t>(run_->expectedItems(), rowsWithoutScrolling)) : 0;
}

void RestorePresenter::follow() {
    due_.stop();
    const auto count = run_ ? static_cast<int>(run_->items().size()) : 0;
    const std::size_t before = rows_.size();
    for (; rowCount_ < count; ++rowCount_) {
        const RestoreReport::Item& item = run_->items()[static_cast<std::size_t>(rowCount_)];
        const bool listed = outcomeOf(item.status).trouble() ? troubleCount_++ < mostReportRows : false;
        if (listed || rowCount_ < mostReportRows)
            rows_.push_back({QString::fromStdString(item.id.lower()), rowValues(item, *run_)});
    }
    if (rows_.size() != before || rows_.empty()) all_.setRows(rows_);
    const RestoreStates states = run_ ? RestoreStates::of(*run_) : RestoreStates{};
    states_ = states.byWindow;
    progress_ = states.decided;
    Q_EMIT changed();
}

}  // namespace quillo
