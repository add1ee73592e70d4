// The library's list together with what searches it: one for the library and the switcher.
#pragma once
#include <QObject>
#include <functional>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "app/WorkspaceSearch.hpp"

namespace quillo {

class LibraryIndex final : public QObject {
    Q_OBJECT

  public:
    using List = std::function<const std::vector<Workspace>&()>;

    /// `list` gives the library as it is now, as long as this lives.
    explicit LibraryIndex(List list, QObject* parent = nullptr);

    const std::vector<Workspace>& workspaces() const { return list_(); }
    const WorkspaceSearch& search() const { return search_; }

    /// To be called directly after each change of the list: places that were found before mean nothing then.
    void reload();

  Q_SIGNALS:
    void reloaded();

  private:
    List list_;
    WorkspaceSearch search_;
};

}  // namespace quillo
