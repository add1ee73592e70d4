// What brings the workspace on its page back besides the person, as AutomationSheet shows it.
#pragma once
#include <QObject>
#include <QStringList>
#include <functional>
#include <optional>

#include "app/AppModel.hpp"
#include "app/gui/Ui.hpp"

namespace quillo {

class AutomationPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool withoutAsking READ withoutAsking WRITE setWithoutAsking NOTIFY changed)
    Q_PROPERTY(bool atLogin READ atLogin WRITE setAtLogin NOTIFY changed)
    Q_PROPERTY(bool atDisplays READ atDisplays WRITE setAtDisplays NOTIFY changed)
    Q_PROPERTY(QStringList dayChoices READ dayChoices CONSTANT)
    Q_PROPERTY(int days READ days WRITE setDays NOTIFY changed)  // a place in `dayChoices`
    Q_PROPERTY(QString time READ time NOTIFY changed)            // "09:00"

  public:
    /// Both must outlive it.
    AutomationPresenter(AppModel& model, Ui& ui, QObject* parent = nullptr);

    bool withoutAsking() const { return chosen().withoutAsking; }
    void setWithoutAsking(bool allowed);
    bool atLogin() const { return chosen().atLogin; }
    void setAtLogin(bool on);
    bool atDisplays() const { return chosen().atDisplays; }
    void setAtDisplays(bool on);
    QStringList dayChoices() const { return {"Never", "Every day", "Weekdays"}; }
    int days() const { return static_cast<int>(chosen().days); }
    void setDays(int place);
    QString time() const;
    /// "9:30", "17.00", "7"; why it is no time, or empty: it is taken.
    Q_INVOKABLE QString setTime(const QString& typed);

  Q_SIGNALS:
    void changed();

  private:
    void follow();
    WorkspaceAutomation chosen() const;
    void change(const std::function<void(WorkspaceAutomation&)>& edit);

    AppModel& model_;
    Ui& ui_;
    std::optional<Uuid> shown_;
};

}  // namespace quillo
