#include "app/LibraryIndex.hpp"

#include <utility>

namespace quillo {

LibraryIndex::LibraryIndex(List list, QObject* parent)
    : QObject(parent), list_(std::move(list)), search_(list_()) {}

void LibraryIndex::reload() {
    search_ = WorkspaceSearch(list_());
    Q_EMIT reloaded();
}

}  // namespace quillo
