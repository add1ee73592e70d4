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

    /// `Model` calls its own beginInsertRows and so on: it befriends this class. Then it must say that the
    /// data of all its rows has changed: a row may stand for another identity than before.
    template <class Model>
    void change(Model& model, const std::vector<Uuid>& wanted) {
        if (stepsTo(wanted) > 64) return replace(model, wanted);
        removeOthers(model, wanted);
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

    /// Another list altogether, as a letter typed makes it: its rows take the places of those before, whose
    /// delegates show them. Step by step would take longer than a frame may, as would new delegates.
    template <class Model>
    void replace(Model& model, const std::vector<Uuid>& wanted) {
        const std::size_t before = ids_.size(), after = wanted.size();
        if (before > after) {
            model.beginRemoveRows({}, static_cast<int>(after), static_cast<int>(before) - 1);
            ids_.resize(after);
            model.endRemoveRows();
        }
        std::copy_n(wanted.begin(), ids_.size(), ids_.begin());
        if (after > before) {
            model.beginInsertRows({}, static_cast<int>(before), static_cast<int>(after) - 1);
            ids_ = wanted;
            model.endInsertRows();
        }
    }

    /// About how many calls lead there row by row: runs that go, and rows that come or have moved.
    std::size_t stepsTo(const std::vector<Uuid>& wanted) const {
        const std::set<Uuid> kept(wanted.begin(), wanted.end());
        std::size_t steps = 0, place = 0;
        bool going = false;
        for (const Uuid& id : ids_) {
            const bool goes = !kept.contains(id);
            steps += goes && !going;
            going = goes;
            if (goes) continue;
            steps += wanted[place] != id;
            ++place;
        }
        return steps + wanted.size() - place;
    }

    std::vector<Uuid> ids_;
};

}  // namespace quillo
