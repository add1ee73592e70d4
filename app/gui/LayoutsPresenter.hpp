// How the workspace of the detail page stands on each set of displays, and whether layouts are offered.
#pragma once
#include <QObject>
#include <QStringList>

#include "app/AppModel.hpp"
#include "app/gui/Ui.hpp"

namespace quillo {

class LayoutsPresenter final : public QObject {
    Q_OBJECT
    /// "2 displays: 2560 × 1440, 1920 × 1080" of the workspace as it was saved, then of each layout.
    Q_PROPERTY(QStringList sets READ sets NOTIFY changed)
    Q_PROPERTY(bool byItself READ byItself WRITE setByItself NOTIFY changed)  // arranged when they come
    Q_PROPERTY(bool canKeep READ canKeep NOTIFY busyChanged)
    Q_PROPERTY(bool offered READ offered WRITE setOffered NOTIFY changed)  // of every workspace

  public:
    /// Both must outlive it.
    LayoutsPresenter(AppModel& model, Ui& ui, QObject* parent = nullptr);

    QStringList sets() const;
    bool byItself() const;
    void setByItself(bool itself);
    bool canKeep() const { return !model_.restoreRunning() && !model_.capturing() && !model_.snapshotting(); }
    bool offered() const { return model_.settings().offersLayouts; }
    void setOffered(bool offered);

    /// For the displays that are attached.
    Q_INVOKABLE void keep();
    /// Of `sets`; the first one stays, as the workspace itself.
    Q_INVOKABLE void remove(int place);

  Q_SIGNALS:
    void changed();
    void busyChanged();

  private:
    const Workspace* shown() const;  // null where none is

    AppModel& model_;
    Ui& ui_;
};

}  // namespace quillo
