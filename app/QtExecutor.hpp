// The executor over Qt's event loop: the engine's own queues, which Qt only wakes.
#pragma once
#include <QBasicTimer>
#include <QEvent>
#include <QObject>
#include <atomic>

#include "WindowEngine/support/Loops.hpp"

namespace quillo {

/// Lives on the thread of the QCoreApplication, which must exist before it. Turns run as Qt delivers events,
/// a few milliseconds' worth for each, so that Qt's own events are served between them; they go on running in
/// nested event loops (menus), so nothing may assume that a turn ends before the next one begins.
class QtExecutor final : public QObject, public Loop {
  public:
    QtExecutor() = default;
    ~QtExecutor() override { abandonAll(); }

    TimePoint now() const noexcept override { return std::chrono::steady_clock::now(); }
    Instant wallNow() const noexcept override { return std::chrono::system_clock::now(); }

  private:
    bool event(QEvent* event) override;
    void wake() noexcept override;
    bool advance(TimePoint deadline) override;
    void dispatch();
    void armTimer();

    std::atomic<bool> woken_ = false;  // an event of ours is on its way
    QBasicTimer timer_;
    TimePoint armedFor_ = TimePoint::max();
    int turnsAtOnce_ = 64;  // and no further one once they took longer than a frame has room for
};

}  // namespace quillo
