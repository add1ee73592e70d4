// The panel in which a workspace is found by typing and resumed by Return: its state and its keys.
#pragma once
#include <QObject>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "app/LibraryIndex.hpp"

namespace quillo {

/// The rows are the matching workspaces in the library's own order and, last, one that saves the desktop.
class Switcher final : public QObject {
    Q_OBJECT

  public:
    enum class Key : std::uint8_t {
        down,
        up,
        pageDown,
        pageUp,
        home,
        end,
        enter,
        escape,
        commandS,
        commandEnter
    };
    static constexpr std::size_t rowsPerPage = 7;  // of the eight that are seen, one stays in sight

    struct Operations {
        std::function<void(const Workspace&)> restore;
        std::function<void()> beginCapture;  // of a new workspace
        std::function<void()> closePanel;    // nothing, where it is closed
        std::function<void()> refreshCurrentSnapshot;
        std::function<void(const Workspace&)> preview = nullptr;  // of what restore would do
    };

    /// The index must outlive it.
    Switcher(const LibraryIndex& index, Operations operations, QObject* parent = nullptr);

    /// The panel has come up: everything starts afresh, with the focus in the field.
    void shown();

    const std::string& query() const { return query_; }
    /// Another one highlights the first row.
    void setQuery(std::string query);
    bool focused() const { return focused_; }
    void setFocused(bool focused);

    /// Places in the library.
    const std::vector<std::size_t>& matches() const { return matches_; }
    /// May lie beyond the rows, when matches went away under it.
    std::size_t highlightedIndex() const { return highlighted_; }
    /// The row that Return picks, as far as is known now: the save row when the index lies beyond.
    std::size_t highlightedRow() const { return std::min(highlighted_, saveRow()); }
    std::size_t saveRow() const { return matches_.size(); }
    /// "Nothing matches …" where something was typed and no workspace matches; else empty.
    std::string emptyText() const;

    /// False, and nothing happens, where the field has no focus.
    bool press(Key key);
    /// What Return does: closes the panel, then resumes the highlighted workspace or starts a capture.
    void pick();
    /// A click on a row.
    void pick(std::size_t row);
    /// What Ctrl+Return does: of a workspace it is shown first what resuming would do.
    void preview();

  Q_SIGNALS:
    void changed();

  private:
    void findMatches();
    void highlight(std::size_t index);
    void close();
    void pick(const std::function<void(const Workspace&)>& act);

    const LibraryIndex& index_;
    Operations operations_;
    std::string query_;
    std::size_t highlighted_ = 0;
    bool focused_ = false;
    std::vector<std::size_t> matches_;
};

}  // namespace quillo
