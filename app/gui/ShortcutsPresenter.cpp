#include "app/gui/ShortcutsPresenter.hpp"

#include <QGuiApplication>
#include <QTimer>
#include <algorithm>

namespace quillo {
namespace {

QString shown(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

ShortcutsPresenter::ShortcutsPresenter(AppModel& model, Ui& ui, const HotKeyService& hotKeys,
                                       KeyMonitorService& monitors, QObject* parent)
    : QObject(parent),
      model_(model),
      ui_(ui),
      hotKeys_(hotKeys),
      save_(monitors, model.settings().shortcut(HotKeyAction::save), defaultShortcut(HotKeyAction::save)),
      switcher_(monitors, model.settings().shortcut(HotKeyAction::switcher),
                defaultShortcut(HotKeyAction::switcher)),
      workspace_(monitors, {}, {}) {
    for (ShortcutRecorder* const recorder : recorders_) {
        connect(recorder, &ShortcutRecorder::recordingChanged, this, [this, recorder] {
            for (ShortcutRecorder* const other : recorders_)
                if (recorder->recording() && other != recorder) other->stop();
            pauseHotKeys();
        });
    }
    storeActionOf(save_, HotKeyAction::save);
    storeActionOf(switcher_, HotKeyAction::switcher);
    connect(&workspace_, &ShortcutRecorder::recorded, this, [this](const Shortcut& shortcut) {
        if (!shown_) return;
        WorkspaceAutomation automation = model_.settings().automationOf(*shown_);
        automation.shortcut = shortcut.key.empty() ? std::nullopt : std::optional(shortcut);
        model_.setAutomation(*shown_, automation);
    });
    connect(&ui, &Ui::pageChanged, this, &ShortcutsPresenter::follow);
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
    return shown(ShortcutTexts::hint);
}

QString ShortcutsPresenter::help() const {
    return shown(ShortcutTexts::help);
}

void ShortcutsPresenter::stopRecording() {
    for (ShortcutRecorder* const recorder : recorders_) recorder->stop();
}

void ShortcutsPresenter::storeActionOf(ShortcutRecorder& recorder, HotKeyAction action) {
    connect(&recorder, &ShortcutRecorder::recorded, this, [this, action](const Shortcut& shortcut) {
        AppSettings settings = model_.settings();
        settings.shortcuts[std::to_string(number(action))] = shortcut;
        model_.setSettings(std::move(settings));
    });
}

/// What has just been recorded is still held down: as soon as it were ours, its repetition would act.
void ShortcutsPresenter::pauseHotKeys() {
    const bool recording = std::ranges::any_of(recorders_, &ShortcutRecorder::recording);
    const bool heldDown = QGuiApplication::queryKeyboardModifiers() &
                          (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    model_.hotKeys().setPaused(recording || heldDown);
    if (heldDown && !recording) QTimer::singleShot(50, this, &ShortcutsPresenter::pauseHotKeys);
}

void ShortcutsPresenter::follow() {
    const std::optional<Uuid> shown = Uuid::parse(ui_.detailId().toStdString());
    if (shown && shown != shown_) {  // a page that fades out keeps its words
        workspace_.stop();
        shown_ = shown;
    }
    const AppSettings& settings = model_.settings();
    save_.setShortcut(settings.shortcut(HotKeyAction::save));
    switcher_.setShortcut(settings.shortcut(HotKeyAction::switcher));
    workspace_.setShortcut(shown_ ? settings.automationOf(*shown_).shortcut.value_or(Shortcut{})
                                  : Shortcut{});
    const bool works = enabled() && hotKeys_.capability();
    for (ShortcutRecorder* const recorder : recorders_) recorder->setEnabled(works);
    Q_EMIT changed();
}

QString ShortcutsPresenter::refusalOf(const HotKeyTarget& target) const {
    const auto refusal = model_.hotKeys().refusal(target);
    if (!refusal) return {};
    return shown(*refusal == HotKeys::Refusal::own ? ShortcutTexts::own : ShortcutTexts::taken);
}

}  // namespace quillo
