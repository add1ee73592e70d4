// The introduction: which of its four steps is shown, and what each does.
#pragma once
#include <QObject>

#include "app/AppModel.hpp"

namespace quillo {

class OnboardingPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int step READ step NOTIFY stepChanged)  // from 0
    Q_PROPERTY(int steps READ steps CONSTANT)
    Q_PROPERTY(bool granted READ granted NOTIFY grantedChanged)
    Q_PROPERTY(QString refusal READ refusal NOTIFY grantedChanged)  // why not, where the system says so

  public:
    enum Step { welcome, access, shortcuts, firstSave };

    explicit OnboardingPresenter(AppModel& model, QObject* parent = nullptr);

    int step() const { return step_; }
    int steps() const { return firstSave + 1; }
    bool granted() const { return model_.accessibilityGranted(); }
    QString refusal() const { return QString::fromStdString(model_.accessibilityAccess().reason()); }

    Q_INVOKABLE void next();
    Q_INVOKABLE void back();
    Q_INVOKABLE void requestAccess() { model_.requestAccessibility(); }
    /// The introduction is over, and the desktop as it is comes under review.
    Q_INVOKABLE void saveDesktop();
    Q_INVOKABLE void skip();

  Q_SIGNALS:
    void stepChanged();
    void grantedChanged();

  private:
    void setStep(int step);
    void grantedTurned();

    AppModel& model_;
    int step_ = welcome;
};

}  // namespace quillo
