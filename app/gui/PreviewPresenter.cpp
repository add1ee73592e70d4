#include "app/gui/PreviewPresenter.hpp"

#include <map>
#include <set>
#include <string>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "app/PreviewWords.hpp"
#include "app/gui/ReviewPresenter.hpp"

namespace quillo {
namespace {

constexpr std::size_t mostTroubles = 100;

ReviewRows::Words rowWords(const PreviewWords::Forecast& forecast) {
    return {line(forecast.word), line(forecast.reason)};
}

/// The plan's parts by what the rows know them by.
struct PlanIndex {
    explicit PlanIndex(const ResumePreview& preview) {
        if (!preview.plan()) return;
        for (const PlannedApplication& application : preview.plan()->applications) {
            const std::string& identifier = application.saved->bundleIdentifier;
            const std::string& notInstalled = preview.notInstalled();
            applications[identifier] = PreviewWords::of(application, notInstalled);
            for (const WindowPlan& plan : application.windows)
                windows.try_emplace(
                    CaptureFilter::windowKey(
                        identifier,
                        application.saved->windows[static_cast<std::size_t>(plan.savedIndex)].index),
                    PreviewWords::of(*preview.plan(), application, plan, notInstalled));
            for (const AdapterStep& step : application.reopening.steps)
                for (const Url& url : step.urls) opened.emplace(identifier, url.string());
            if (!application.reopening.contextTrouble.empty()) troubled.insert(identifier);
        }
    }

    std::map<std::string, PreviewWords::Forecast> applications, windows;
    std::set<std::pair<std::string, std::string>> opened;  // application, address
    std::set<std::string> troubled;                        // their folders and tabs do not come back
};

}  // namespace

PreviewPresenter::PreviewPresenter(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    connect(&model, &AppModel::previewChanged, this, &PreviewPresenter::follow);
    connect(&model, &AppModel::busyChanged, this, &PreviewPresenter::busyChanged);
    connect(this, &PreviewPresenter::planned, this, &PreviewPresenter::busyChanged);
    follow();
}

const Workspace& PreviewPresenter::shown() const {
    return workspace_;
}

void PreviewPresenter::follow() {
    ResumePreview* const preview = model_.preview();
    if (preview == preview_) return;
    if (preview_) preview_->disconnect(this);
    preview_ = preview;
    if (!preview) {
        rows_.show(nullptr);  // its ticks go
        Q_EMIT busyChanged();
        return;
    }
    const bool another = workspace_.id != preview->workspace().id;
    workspace_ = preview->workspace();
    connect(preview, &ResumePreview::ticksReplaced, this, [this] { followTicks(false); });
    connect(preview, &ResumePreview::ticksChanged, this, &PreviewPresenter::followPlan);
    connect(preview, &ResumePreview::planned, this, &PreviewPresenter::followPlan);
    followTicks(another);
    Q_EMIT changed();
    followPlan();
}

void PreviewPresenter::followTicks(bool another) {
    rows_.show(&preview_->ticks(),
               another || rows_.rowCount() == 0 ? std::nullopt : std::optional(rows_.openApps()));
    reword();
}

void PreviewPresenter::followPlan() {
    reword();
    const std::optional<RestorePreview>& plan = preview_->plan();
    map_ = drawnPart(preview_->afterwards());
    states_ = untickedWindows(preview_->ticks());
    totals_.clear();
    troubles_.clear();
    moreTroubles_.clear();
    if (plan) {
        const std::vector<std::string> totals =
            PreviewWords::totals(Restore::totalsOf(*plan), preview_->cleanSlate(), preview_->touchedOthers());
        for (const std::string& sentence : totals) totals_ << line(sentence);
        const std::vector<std::string> troubles = PreviewWords::troubles(*plan, preview_->notInstalled());
        for (const std::string& trouble : troubles)
            if (static_cast<std::size_t>(troubles_.size()) < mostTroubles) troubles_ << line(trouble);
        moreTroubles_ = andMore(std::ssize(troubles) - std::ssize(troubles_));
        for (const PlannedApplication& application : plan->applications)
            for (const WindowPlan& window : application.windows) {
                if (Restore::prospectOf(application, window) != Prospect::skipped) continue;
                const auto place = static_cast<std::size_t>(window.savedIndex);
                const QString key = qt(CaptureFilter::windowKey(application.saved->bundleIdentifier,
                                                                application.saved->windows[place].index));
                if (!states_.contains(key)) states_.insert(key, QStringLiteral("skipped"));
            }
    }
    Q_EMIT planned();
}

/// What was ticked a moment ago says nothing until the plan has it.
void PreviewPresenter::reword() {
    const PlanIndex index(*preview_);
    const auto said = [](const auto& words, const std::string& key) {
        const auto found = words.find(key);
        return found == words.end() ? ReviewRows::Words() : rowWords(found->second);
    };
    const bool quits = preview_->cleanSlate() == CleanSlateMode::quit;
    const ReviewRows::Words other{quits ? QStringLiteral("is asked to quit") : QStringLiteral("is hidden"),
                                  {}};
    rows_.reword({.leftAlone = {QStringLiteral("left alone"), {}},
                  .ofApplication =
                      [&](const std::string& identifier) {
                          return preview_->others().contains(identifier)
                                     ? other
                                     : said(index.applications, identifier);
                      },
                  .ofWindow = [&](const std::string& key) { return said(index.windows, key); },
                  .ofAddress =
                      [&](const std::string& identifier, const std::string& address) {
                          if (index.opened.contains({identifier, address}))
                              return ReviewRows::Words{QStringLiteral("opens"), {}};
                          const bool known =
                              index.applications.contains(identifier) && !index.troubled.contains(identifier);
                          return ReviewRows::Words{known ? QStringLiteral("stays") : QString(), {}};
                      }});
}

QString PreviewPresenter::leftOutText() const {
    if (!preview_) return {};
    const RunSelection selection = preview_->selection();
    const auto size = [](const auto& all) { return static_cast<std::int64_t>(all.size()); };
    QStringList parts;
    if (const auto windows = size(selection.excluded.windows)) parts << counted(windows, "window");
    if (const auto others = size(selection.spared)) parts << counted(others, "app");
    if (const auto urls = size(selection.excluded.contextURLs); urls > 0 && parts.isEmpty())
        parts << counted(urls, "folder or tab");
    return parts.isEmpty() ? QString() : parts.join(", ") + " left alone";
}

QStringList PreviewPresenter::cleanSlateLabels() const {
    QStringList labels;
    for (const CleanSlateMode mode : allCleanSlateModes) labels << qt(label(mode));
    return labels;
}

bool PreviewPresenter::canResume() const {
    return ready() && !model_.restoreRunning() && !model_.capturing() && !model_.snapshotting();
}

void PreviewPresenter::setCleanSlate(int mode) {
    if (preview_) preview_->setCleanSlate(allCleanSlateModes.at(static_cast<std::size_t>(mode)));
}

}  // namespace quillo
