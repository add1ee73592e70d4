// Whoever clicks twice has clicked what was there before: what comes up under the pointer meanwhile is not
// meant.
#pragma once
#include <QDeadlineTimer>
#include <QObject>

class QPointerEvent;

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

    bool holds(const QPointerEvent& press) const;

    QDeadlineTimer until_{0};
    // Of all presses, and when the page came: milliseconds by the window system's clock, 0 where there was
    // none.
    quint64 lastPress_ = 0, pressBefore_ = 0;
    bool swallowing_ = false;  // a press that began while it held
};

}  // namespace quillo
