#include "app/gui/ShortcutsPresenter.hpp"

#include <QGuiApplication>
#include <QTimer>

namespace quillo {
namespace {

QString text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

ShortcutsPresenter::ShortcutsPresenter(AppModel& model, const HotKeyService& hotKeys,
                                       KeyMonitorService& monitors, QObject* parent)
    : QObject(parent),
      model_(model),
      hotKeys_(hotKeys),
      save_(monitors, model.settings().shortcut(HotKeyAction::save), defaultShortcut(HotKeyAction::save)),
      switcher_(monitors, model.settings().shortcut(HotKeyAction::switcher),
                defaultShortcut(HotKeyAction::switcher)) {
    connectRecorder(save_, HotKeyAction::save);
    connectRecorder(switcher_, HotKeyAction::switcher);
    connect(&model, &AppModel::settingsChanged, this, &ShortcutsPresenter::follow);
    connect(&model.hotKeys(), &HotKeys::unavailableChanged, this, &ShortcutsPresenter::changed);
    follow();
}

void ShortcutsPresenter::setEnabled(bool enabled) {
    AppSettings settings = model_.settings();
    settings.shortcutsEnabled = enabled;
    model_.setSettings(std::move(settings));
}

QString ShortcutsPresenter::hint() const {
    return text(ShortcutTexts::hint);
}

QString ShortcutsPresenter::help() const {
    return text(ShortcutTexts::help);
}

void ShortcutsPresenter::stopRecording() {
    save_.stop();
    switcher_.stop();
}

void ShortcutsPresenter::connectRecorder(ShortcutRecorder& recorder, HotKeyAction action) {
    connect(&recorder, &ShortcutRecorder::recorded, this, [this, action](const Shortcut& shortcut) {
        AppSettings settings = model_.settings();
        settings.shortcuts[std::to_string(number(action))] = shortcut;
        model_.setSettings(std::move(settings));
    });
    ShortcutRecorder& other = &recorder == &save_ ? switcher_ : save_;
    connect(&recorder, &ShortcutRecorder::recordingChanged, this, [this, &recorder, &other] {
        if (recorder.recording()) other.stop();
        pauseHotKeys();
    });
}

/// What has just been recorded is still held down: as soon as it were ours, its repetition would act.
void ShortcutsPresenter::pauseHotKeys() {
    const bool recording = save_.recording() || switcher_.recording();
    const bool heldDown = QGuiApplication::queryKeyboardModifiers() &
                          (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    model_.hotKeys().setPaused(recording || heldDown);
    if (heldDown && !recording) QTimer::singleShot(50, this, &ShortcutsPresenter::pauseHotKeys);
}

void ShortcutsPresenter::follow() {
    const bool works = enabled() && hotKeys_.capability();
    save_.setShortcut(model_.settings().shortcut(HotKeyAction::save));
    switcher_.setShortcut(model_.settings().shortcut(HotKeyAction::switcher));
    save_.setEnabled(works);
    switcher_.setEnabled(works);
    Q_EMIT changed();
}

QString ShortcutsPresenter::refusalOf(HotKeyAction action) const {
    const auto refusal = model_.hotKeys().refusal(action);
    if (!refusal) return {};
    return text(*refusal == HotKeys::Refusal::own ? ShortcutTexts::own : ShortcutTexts::taken);
}

}  // namespace quillo
