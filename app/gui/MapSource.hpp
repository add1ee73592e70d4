// The desktop that a map shows, as presenters hand it to QML.
#pragma once
#include <QMetaType>
#include <QVariant>
#include <memory>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo {

/// Shared, never changed: a map whose source is the same object does nothing. So a presenter keeps the handle
/// for as long as what it shows is the same, and makes a new one when that changed. Null shows nothing.
using MapSource = std::shared_ptr<const WorkspaceSnapshot>;

/// For a Q_PROPERTY(QVariant ...) or a role of a list.
inline QVariant mapVariant(const MapSource& source) {
    return QVariant::fromValue(source);
}
/// A copy of what maps draw of a desktop: without tabs, addresses and what integrations recorded, and with
/// titles no longer than a tile is wide.
MapSource drawnPart(const WorkspaceSnapshot& snapshot);

}  // namespace quillo

Q_DECLARE_METATYPE(quillo::MapSource)
