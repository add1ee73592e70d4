// What the library shows: the workspaces that match, in the chosen order, and where the keyboard is.
#pragma once
#include <QObject>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "app/LibraryIndex.hpp"
#include "app/WorkspaceOrder.hpp"

namespace quillo {

class LibraryState final : public QObject {
    Q_OBJECT

  public:
    /// The index must outlive it.
    explicit LibraryState(const LibraryIndex& index, QObject* parent = nullptr);

    const LibraryIndex& index() const { return index_; }
    /// Places in the library.
    const std::vector<std::size_t>& rows() const { return rows_; }
    const Workspace& workspace(std::size_t row) const { return index_.workspaces()[rows_.at(row)]; }

    const std::string& query() const { return query_; }
    /// Another one puts the cursor on its first row.
    void setQuery(std::string query);
    WorkspaceOrder order() const { return order_; }
    void setOrder(WorkspaceOrder order);

    /// A row; 0 where there is none. It stays on its workspace when rows come and go around it.
    std::size_t cursor() const { return cursor_; }
    void moveCursorDown();  // the last row and the first are the ends
    void moveCursorUp();

    /// What stands in place of the rows, and the advice below it; empty while there are rows.
    std::string_view emptyTitle() const;
    std::string_view emptyHint() const;

  Q_SIGNALS:
    void rowsChanged();  // with the cursor as it is then
    void cursorMoved();  // over the same rows

  private:
    void findRows();

    const LibraryIndex& index_;
    std::vector<std::size_t> rows_;
    std::vector<Uuid> ids_;  // of the rows: by the time of a reload their workspaces are others
    std::string query_;
    WorkspaceOrder order_ = WorkspaceOrder::recent;
    std::size_t cursor_ = 0;
};

}  // namespace quillo
