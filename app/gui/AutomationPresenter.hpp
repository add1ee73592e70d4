// What brings the workspace on its page back besides the person, as AutomationSheet shows it.
#pragma once
#include <QObject>
#include <optional>

#include "app/AppModel.hpp"
#include "app/gui/Ui.hpp"

namespace quillo {

class AutomationPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool withoutAsking READ withoutAsking WRITE setWithoutAsking NOTIFY changed)

  public:
    /// Both must outlive it.
    AutomationPresenter(AppModel& model, Ui& ui, QObject* parent = nullptr);

    bool withoutAsking() const { return chosen().withoutAsking; }
    void setWithoutAsking(bool allowed);

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
