// Whoever clicks twice has clicked what was there before: what comes up under the pointer meanwhile is not
// meant.
#pragma once
#include <QDeadlineTimer>
#include <QObject>
#include <QPointerEvent>
#include <optional>
#include <utility>

namespace quillo {

/// An event filter of the application, for its views: a dialog takes presses before the filters of its window
/// see them. Presses that it holds back, each with all that belongs to it up to its release, reach no view;
/// keys, the wheel and the bare pointer always do.
class PressGuard final : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// A page, a dialog or a panel has come, or has gone from over what is there: no press counts from now on
    /// until the system's time for a double click is over (QStyleHints::mouseDoubleClickInterval), nor does
    /// one that was made within that time of the press before, however late a busy machine delivers it.
    Q_INVOKABLE void pageCame();
    Q_INVOKABLE bool holding() const { return !until_.hasExpired(); }

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;

    using Timestamp =
        decltype(std::declval<QInputEvent>().timestamp());  // milliseconds, by the window system's clock

    bool holds(const QPointerEvent& press) const;

    QDeadlineTimer until_{0};
    std::optional<Timestamp> lastPress_, pressBefore_;  // of all; when the page came
    bool swallowing_ = false;                           // a press that began while it held
};

}  // namespace quillo
