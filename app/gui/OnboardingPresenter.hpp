// The introduction: which of its steps is shown, and what each does. What a system does not have, it passes
// over.
#pragma once
#include <QObject>
#include <vector>

#include "app/AppModel.hpp"

namespace quillo {

class OnboardingPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString step READ step NOTIFY stepChanged)  // "welcome", "access", "shortcuts", "firstSave"
    Q_PROPERTY(int place READ place NOTIFY stepChanged)    // of it, from 0
    Q_PROPERTY(int steps READ steps CONSTANT)
    Q_PROPERTY(bool granted READ granted NOTIFY grantedChanged)

  public:
    /// Both must outlive it.
    OnboardingPresenter(AppModel& model, const HotKeyService& hotKeys, QObject* parent = nullptr);

    QString step() const { return steps_.at(place_); }
    int place() const { return static_cast<int>(place_); }
    int steps() const { return static_cast<int>(steps_.size()); }
    bool granted() const { return model_.accessibilityGranted(); }

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
    void setPlace(std::size_t place);
    void grantedTurned();

    AppModel& model_;
    std::vector<QString> steps_;
    std::size_t place_ = 0;
};

}  // namespace quillo
