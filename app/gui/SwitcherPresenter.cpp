#include "app/gui/SwitcherPresenter.hpp"

#include <optional>

#include "app/LibraryTexts.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

Switcher::Operations operations(AppModel& model, Surfaces& surfaces) {
    return {.restore = [&model](const Workspace& one) { model.restore(one, one.cleanSlate); },
            .beginCapture = [&model] { model.beginCapture(); },
            .closePanel = [&surfaces] { surfaces.closePanel(PanelID::switcher); },
            .refreshCurrentSnapshot = [&model] { model.refreshCurrentSnapshot(); },
            .preview = [&model](const Workspace& one) { model.openPreview(one, one.cleanSlate); }};
}

std::optional<Switcher::Key> keyOf(int key, int modifiers) {
    const Qt::KeyboardModifiers held =
        Qt::KeyboardModifiers(modifiers) & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (key == Qt::Key_S && held == Qt::ControlModifier) return Switcher::Key::commandS;
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && held == Qt::ControlModifier)
        return Switcher::Key::commandEnter;
    if (held) return std::nullopt;
    switch (key) {
        case Qt::Key_Down:
            return Switcher::Key::down;
        case Qt::Key_Up:
            return Switcher::Key::up;
        case Qt::Key_PageDown:
            return Switcher::Key::pageDown;
        case Qt::Key_PageUp:
            return Switcher::Key::pageUp;
        case Qt::Key_Home:
            return Switcher::Key::home;
        case Qt::Key_End:
            return Switcher::Key::end;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return Switcher::Key::enter;
        case Qt::Key_Escape:
            return Switcher::Key::escape;
        default:
            return std::nullopt;
    }
}

}  // namespace

SwitcherPresenter::SwitcherPresenter(AppModel& model, const LibraryIndex& index, Surfaces& surfaces,
                                     QObject* parent)
    : QObject(parent), switcher_(index, operations(model, surfaces)), rows_(index) {
    follow();
    connect(&index, &LibraryIndex::reloaded, this, &SwitcherPresenter::follow);
    connect(&switcher_, &Switcher::changed, this, [this] {
        if (switcher_.matches() != shown_) follow();
        Q_EMIT changed();
    });
}

void SwitcherPresenter::follow() {
    shown_ = switcher_.matches();
    rows_.setPlaces(shown_);
}

QString SwitcherPresenter::prompt() const {
    return qt(LibraryTexts::switcherPrompt);
}

QString SwitcherPresenter::saveTitle() const {
    return qt(LibraryTexts::saveRow);
}

QString SwitcherPresenter::saveDetail() const {
    return qt(LibraryTexts::saveRowDetail);
}

bool SwitcherPresenter::press(int key, int modifiers) {
    const auto meant = keyOf(key, modifiers);
    return meant && switcher_.press(*meant);
}

void SwitcherPresenter::pick(int row) {
    if (row >= 0) switcher_.pick(static_cast<std::size_t>(row));
}

}  // namespace quillo
