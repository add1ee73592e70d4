#include "app/gui/ClosingPresenter.hpp"

#include <utility>

namespace quillo {

ClosingPresenter::ClosingPresenter(AppModel& model, Windows& windows, std::function<bool()> trayShown,
                                   std::function<void()> quit, QObject* parent)
    : QObject(parent),
      model_(model),
      windows_(windows),
      trayShown_(std::move(trayShown)),
      quit_(std::move(quit)) {
    connect(&model, &AppModel::settingsChanged, this, &ClosingPresenter::changed);
    connect(&windows, &Windows::mainClosed, this,
            [this] { quits_ = withoutTray() && model_.settings().withoutTray == WithoutTray::quit; });
    connect(&windows, &Windows::allClosed, this, [this] {
        if (std::exchange(quits_, false)) this->quit();
    });
}

bool ClosingPresenter::mayClose() {
    if (!withoutTray() || !quit_ || model_.settings().withoutTray != WithoutTray::ask) return true;
    asked_ = true;
    Q_EMIT changed();
    return false;
}

void ClosingPresenter::setChoice(int choice) {
    if (choice < 0 || choice > static_cast<int>(WithoutTray::quit)) return;
    AppSettings settings = model_.settings();
    settings.withoutTray = static_cast<WithoutTray>(choice);
    model_.setSettings(std::move(settings));
}

QString ClosingPresenter::note() const {
    switch (model_.settings().withoutTray) {
        case WithoutTray::ask:
            break;
        case WithoutTray::keepRunning:
            return QStringLiteral(
                "Closing the window keeps Quillo running, unseen: this desktop shows no tray. Starting "
                "Quillo again opens the window.");
        case WithoutTray::quit:
            return QStringLiteral("Closing the window quits Quillo: this desktop shows no tray.");
    }
    return QStringLiteral(
        "This desktop shows no tray: when the window is closed, Quillo asks whether to keep running.");
}

void ClosingPresenter::answer(bool keepRunning) {
    setChoice(static_cast<int>(keepRunning ? WithoutTray::keepRunning : WithoutTray::quit));
    cancel();
    windows_.closeMain();
}

void ClosingPresenter::cancel() {
    if (std::exchange(asked_, false)) Q_EMIT changed();
}

void ClosingPresenter::quit() {
    if (quit_) quit_();
}

}  // namespace quillo
