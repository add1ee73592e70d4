#include "app/gui/SwitcherPresenter.hpp"

#include <QSet>
#include <optional>

#include "app/LibraryTexts.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

QString keyOf(const Workspace& workspace) {
    return QString::fromStdString(workspace.id.lower());
}

Switcher::Operations operations(AppModel& model, Surfaces& surfaces) {
    return {.restore = [&model](const Workspace& one) { model.restore(one, one.cleanSlate); },
            .beginCapture = [&model] { model.beginCapture(); },
            .closePanel = [&surfaces] { surfaces.closePanel(PanelID::switcher); },
            .refreshNow = [&model] { model.refreshNow(); }};
}

std::optional<Switcher::Key> keyOf(int key, int modifiers) {
    const Qt::KeyboardModifiers held =
        Qt::KeyboardModifiers(modifiers) & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (key == Qt::Key_S && held == Qt::ControlModifier) return Switcher::Key::commandS;
    if (held) return std::nullopt;
    switch (key) {
        case Qt::Key_Down:
            return Switcher::Key::down;
        case Qt::Key_Up:
            return Switcher::Key::up;
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

SwitcherRows::SwitcherRows(const LibraryIndex& index, const Switcher& switcher)
    : KeyedList({"name", "apps", "icon", "colorName", "source"}), index_(index), switcher_(switcher) {
    follow(true);
    connect(&index, &LibraryIndex::reloaded, this, &SwitcherRows::reload);
    connect(&switcher, &Switcher::changed, this, [this] { follow(false); });
}

QVariant SwitcherRows::value(const QString& key, int field) const {
    const auto place = places_.constFind(key);
    if (place == places_.cend()) return {};
    const Workspace& workspace = index_.workspaces()[*place];
    switch (field) {
        case 0:
            return line(workspace.name);
        case 1:
            return applicationNames(workspace.snapshot);
        case 2:
            return QString::fromStdString(workspace.icon);
        case 3:
            return QString::fromStdString(workspace.color);
        default:
            return mapVariant(mapOf(key, workspace));
    }
}

/// The same handle for as long as the workspace is the same: a map draws anew for another one.
MapSource SwitcherRows::mapOf(const QString& key, const Workspace& workspace) const {
    Seen& seen = maps_[key];
    if (!seen.map || seen.updatedAt != workspace.updatedAt)
        seen = {workspace.updatedAt, drawnPart(workspace.snapshot)};
    return seen.map;
}

void SwitcherRows::reload() {
    QSet<QString> known;
    for (const Workspace& workspace : index_.workspaces()) known.insert(keyOf(workspace));
    maps_.removeIf([&](const auto& entry) { return !known.contains(entry.key()); });
    follow(true);
}

/// The switcher may hear of a reload before this does: places are those of its matches, not of an own list.
void SwitcherRows::follow(bool evenIfSame) {
    std::vector<QString> keys;
    for (const std::size_t place : switcher_.matches()) {
        keys.push_back(keyOf(index_.workspaces()[place]));
        places_.insert(keys.back(), place);
    }
    if (evenIfSame || keys != this->keys()) setKeys(std::move(keys));
}

SwitcherPresenter::SwitcherPresenter(AppModel& model, const LibraryIndex& index, Surfaces& surfaces,
                                     QObject* parent)
    : QObject(parent), switcher_(index, operations(model, surfaces)), rows_(index, switcher_) {
    connect(&switcher_, &Switcher::changed, this, &SwitcherPresenter::changed);
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
