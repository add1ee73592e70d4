// Turns one list into another row by row, so that views keep their delegates, place and focus.
#pragma once
#include <QAbstractItemModel>
#include <algorithm>
#include <cstddef>
#include <set>
#include <vector>

#include "WindowEngine/support/Uuid.hpp"

namespace quillo {

/// A model's rows by identity, and the steps from one list of them to another.
class ListedRows {
  public:
    const std::vector<Uuid>& ids() const { return ids_; }

    /// `Model` calls its own beginInsertRows and so on: it befriends this class.
    template <class Model>
    void change(Model& model, const std::vector<Uuid>& wanted) {
        removeOthers(model, wanted);
        // Another order altogether is another list: moving row by row would take longer than drawing anew.
        if (misplaced(wanted) > 64) {
            model.beginResetModel();
            ids_ = wanted;
            model.endResetModel();
            return;
        }
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (i < ids_.size() && ids_[i] == wanted[i]) continue;
            const auto from = std::find(ids_.begin() + static_cast<std::ptrdiff_t>(i), ids_.end(), wanted[i]);
            if (from == ids_.end()) {
                model.beginInsertRows({}, static_cast<int>(i), static_cast<int>(i));
                ids_.insert(ids_.begin() + static_cast<std::ptrdiff_t>(i), wanted[i]);
                model.endInsertRows();
            } else {
                const auto row = static_cast<int>(from - ids_.begin());
                model.beginMoveRows({}, row, row, {}, static_cast<int>(i));
                std::rotate(ids_.begin() + static_cast<std::ptrdiff_t>(i), from, from + 1);
                model.endMoveRows();
            }
        }
    }

  private:
    template <class Model>
    void removeOthers(Model& model, const std::vector<Uuid>& wanted) {
        const std::set<Uuid> kept(wanted.begin(), wanted.end());
        for (std::size_t end = ids_.size(); end > 0;) {
            if (kept.contains(ids_[end - 1])) {
                --end;
                continue;
            }
            std::size_t begin = end;
            while (begin > 0 && !kept.contains(ids_[begin - 1])) --begin;
            model.beginRemoveRows({}, static_cast<int>(begin), static_cast<int>(end) - 1);
            ids_.erase(ids_.begin() + static_cast<std::ptrdiff_t>(begin),
                       ids_.begin() + static_cast<std::ptrdiff_t>(end));
            model.endRemoveRows();
            end = begin;
        }
    }

    std::size_t misplaced(const std::vector<Uuid>& wanted) const {
        std::size_t count = wanted.size() - std::min(wanted.size(), ids_.size());
        for (std::size_t i = 0; i < std::min(wanted.size(), ids_.size()); ++i) count += ids_[i] != wanted[i];
        return count;
    }

    std::vector<Uuid> ids_;
};

}  // namespace quillo
