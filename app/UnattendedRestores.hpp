// Workspaces that come back by themselves: after login, at a time of the day, when their displays are
// attached. One timer runs, to the next that is due, and none where nothing is.
#pragma once
#include <QObject>
#include <QTimeZone>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/AppModel.hpp"
#include "app/TaskSlot.hpp"
#include "platform/services/SystemServices.hpp"

namespace quillo {

class UnattendedRestores final : public QObject {
    Q_OBJECT

  public:
    using Zone = std::function<QTimeZone()>;

    /// All must outlive it. The zone is asked each time, for people travel.
    UnattendedRestores(AppModel& model, const SystemServices& services,
                       Zone zone = &QTimeZone::systemTimeZone, QObject* parent = nullptr);

    /// The session has just begun. What is chosen for it comes back as soon as windows can be placed.
    void loggedIn();

  private:
    struct Due {
        Instant at;
        Uuid workspace;

        bool operator==(const Due&) const = default;
    };

    void follow();
    void reckon();
    std::optional<Due> nextAfter(Instant after) const;
    /// The one that was saved with exactly these comes back; of several, the one that was used last.
    void displaysCame(const std::vector<DisplaySnapshot>& displays);
    Task<> awaitDue();
    Task<> awaitDesktop(Uuid workspace);

    AppModel& model_;
    SystemServices services_;
    Zone zone_;
    Instant settled_;  // what was due until then has been dealt with
    std::optional<Due> next_;
    std::unique_ptr<PowerObserver> powerObserver_;

    // Last: what runs ends before what it works on.
    TaskSlot timer_, login_;
};

}  // namespace quillo
