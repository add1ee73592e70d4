#include "app/gui/OnboardingPresenter.hpp"

#include <algorithm>
#include <utility>

namespace quillo {

OnboardingPresenter::OnboardingPresenter(AppModel& model, const HotKeyService& hotKeys, QObject* parent)
    : QObject(parent), model_(model), steps_{QStringLiteral("welcome")} {
    if (model.canAllowAccess()) steps_.push_back(QStringLiteral("access"));
    if (hotKeys.capability()) steps_.push_back(QStringLiteral("shortcuts"));
    steps_.push_back(QStringLiteral("firstSave"));
    connect(&model, &AppModel::accessibilityGrantedChanged, this, &OnboardingPresenter::grantedTurned);
}

void OnboardingPresenter::grantedTurned() {
    Q_EMIT grantedChanged();
    if (granted() && step() == "access") next();
}

void OnboardingPresenter::setPlace(std::size_t place) {
    if (std::exchange(place_, place) != place_) Q_EMIT stepChanged();
}

void OnboardingPresenter::next() {
    setPlace(std::min(place_ + 1, steps_.size() - 1));
}

void OnboardingPresenter::back() {
    setPlace(place_ - std::min<std::size_t>(place_, 1));
}

void OnboardingPresenter::skip() {
    AppSettings settings = model_.settings();
    settings.onboarded = true;
    model_.setSettings(std::move(settings));
}

void OnboardingPresenter::saveDesktop() {
    skip();
    model_.beginCapture();
}

}  // namespace quillo
