// Workspaces of the library as rows of a view.
#pragma once
#include <map>

#include "app/LibraryIndex.hpp"
#include "app/gui/KeyedList.hpp"
#include "app/gui/MapSource.hpp"

namespace quillo {

/// Values are made when a delegate asks for them: most rows are never seen. Their keys are identifiers.
class WorkspaceRows : public KeyedList {
    Q_OBJECT

  public:
    /// "name" and so on to delegates.
    enum Role { KeyRole = Qt::UserRole, NameRole, IconRole, ColorRole, AppsRole, WhenRole, MapRole };

    /// The index must outlive it.
    explicit WorkspaceRows(const LibraryIndex& index, QObject* parent = nullptr);

    /// With no view to draw them, maps need no copies of their snapshots.
    void forgetMaps() { maps_.clear(); }
    /// The rows from now on, as places in the library.
    void setPlaces(const std::vector<std::size_t>& places);

  private:
    struct Row {
        Uuid id;
        std::size_t place;  // in the library
    };
    struct CachedMap {
        Instant updatedAt;
        MapSource source;
    };

    QVariant value(const QString& key, int field) const override;
    MapSource map(const Workspace& workspace) const;
    void dropMapsOfOthers();

    const LibraryIndex& index_;
    QHash<QString, Row> rows_;
    mutable std::map<Uuid, CachedMap> maps_;
};

}  // namespace quillo
