#include "app/LibraryState.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "app/LibraryTexts.hpp"

namespace quillo {

LibraryState::LibraryState(const LibraryIndex& index, QObject* parent) : QObject(parent), index_(index) {
    findRows();
    connect(&index_, &LibraryIndex::reloaded, this, &LibraryState::findRows);
}

void LibraryState::setQuery(std::string query) {
    if (query == query_) return;
    query_ = std::move(query);
    ids_.clear();  // the cursor leaves its workspace
    cursor_ = 0;
    findRows();
}

void LibraryState::setOrder(WorkspaceOrder order) {
    if (std::exchange(order_, order) != order) findRows();
}

void LibraryState::moveCursorDown() {
    if (cursor_ + 1 >= rows_.size()) return;
    ++cursor_;
    Q_EMIT cursorMoved();
}

void LibraryState::moveCursorUp() {
    if (cursor_ == 0) return;
    --cursor_;
    Q_EMIT cursorMoved();
}

std::string_view LibraryState::emptyTitle() const {
    if (!rows_.empty()) return {};
    return index_.workspaces().empty() ? LibraryTexts::windowEmpty : LibraryTexts::noMatch;
}

std::string_view LibraryState::emptyHint() const {
    if (!rows_.empty()) return {};
    return index_.workspaces().empty() ? LibraryTexts::windowEmptyHint : LibraryTexts::noMatchHint;
}

void LibraryState::findRows() {
    const std::optional<Uuid> atCursor = cursor_ < ids_.size() ? std::optional(ids_[cursor_]) : std::nullopt;
    rows_ = index_.search().matches(query_, order_);
    ids_.clear();
    for (const std::size_t place : rows_) ids_.push_back(index_.workspaces()[place].id);
    const auto kept = atCursor ? std::ranges::find(ids_, *atCursor) : ids_.end();
    if (kept != ids_.end())
        cursor_ = static_cast<std::size_t>(kept - ids_.begin());
    else
        cursor_ = std::min(cursor_, rows_.empty() ? 0 : rows_.size() - 1);
    Q_EMIT rowsChanged();
}

}  // namespace quillo
