// What becomes of the program when its window is closed. In the tray it stays at hand; without a tray the
// person is asked once, and the answer is kept.
#pragma once
#include <QObject>
#include <functional>

#include "app/AppModel.hpp"
#include "app/gui/Windows.hpp"

namespace quillo {

class ClosingPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool asked READ asked NOTIFY changed)  // the window waits for the answer
    Q_PROPERTY(bool withoutTray READ withoutTray NOTIFY changed)
    Q_PROPERTY(int choice READ choice WRITE setChoice NOTIFY changed)  // ask, keep running, quit
    Q_PROPERTY(bool canQuit READ canQuit CONSTANT)
    Q_PROPERTY(QString note READ note NOTIFY changed)  // what closing does without a tray

  public:
    /// Model and windows must outlive it. `trayShown`: none where there always is a tray; `quit`: none where
    /// the person quits elsewhere.
    ClosingPresenter(AppModel& model, Windows& windows, std::function<bool()> trayShown,
                     std::function<void()> quit, QObject* parent = nullptr);

    bool asked() const { return asked_; }
    bool withoutTray() const { return trayShown_ && !trayShown_(); }
    int choice() const { return static_cast<int>(model_.settings().withoutTray); }
    void setChoice(int choice);
    bool canQuit() const { return quit_ != nullptr; }
    QString note() const;

    /// Of the main window, by the person; where it may not yet, they are asked.
    bool mayClose();
    /// Remembers it, and closes the window.
    Q_INVOKABLE void answer(bool keepRunning);
    /// The window stays open, and the next closing asks again.
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void quit();

  Q_SIGNALS:
    void changed();

  private:
    AppModel& model_;
    Windows& windows_;
    const std::function<bool()> trayShown_;
    const std::function<void()> quit_;
    bool asked_ = false;
    bool quits_ = false;  // once the last panel is closed, too: a restore is not cut off
};

}  // namespace quillo
