#include "app/gui/OnboardingPresenter.hpp"

#include <algorithm>
#include <utility>

namespace quillo {

OnboardingPresenter::OnboardingPresenter(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    connect(&model, &AppModel::accessibilityGrantedChanged, this, &OnboardingPresenter::grantedTurned);
}

void OnboardingPresenter::grantedTurned() {
    Q_EMIT grantedChanged();
    if (granted() && step_ == access) next();
}

void OnboardingPresenter::setStep(int step) {
    if (std::exchange(step_, std::clamp<int>(step, welcome, firstSave)) != step_) Q_EMIT stepChanged();
}

void OnboardingPresenter::next() {
    setStep(step_ + 1);
}

void OnboardingPresenter::back() {
    setStep(step_ - 1);
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
