#include "WindowEngine/integrations/WindowPairing.hpp"

#include <algorithm>
#include <functional>

namespace quillo::WindowPairing {
namespace {

/// Rows are windows shown, columns saved ones.
class Grid {
  public:
    Grid(std::size_t rows, std::size_t columns) : rows_(rows), columns_(columns), cells_(rows * columns) {}

    std::size_t rows() const { return rows_; }
    std::size_t columns() const { return columns_; }
    std::vector<bool>::reference at(std::size_t row, std::size_t column) {
        return cells_[row * columns_ + column];
    }
    bool at(std::size_t row, std::size_t column) const { return cells_[row * columns_ + column]; }
    bool any() const { return std::ranges::find(cells_, true) != cells_.end(); }

    /// The rows that `test(row)` holds for, of those set in the column.
    std::vector<std::size_t> rowsOf(std::size_t column, auto test) const {
        std::vector<std::size_t> found;
        for (std::size_t row = 0; row < rows_; ++row) {
            if (at(row, column) && test(row)) found.push_back(row);
        }
        return found;
    }

  private:
    std::size_t rows_, columns_;
    std::vector<bool> cells_;
};

bool sameSize(const Rect& a, const Rect& b) {
    return a.size() == b.size();
}

/// Whether they can be the same window, by what is never out of date for longer than the browser's delay.
bool compatible(const ShownBrowserWindow& shown, const BrowserWindow& saved) {
    if (shown.desktop && saved.desktop && shown.desktop != saved.desktop) return false;
    if (shown.isPlain != saved.isPlain) return !saved.frame || !shown.isPlain;  // full screen is told late
    if (!shown.isPlain || !saved.frame) return true;
    return sameSize(*saved.frame, shown.client) || sameSize(*saved.frame, shown.frame);
}

/// The pairs of `allowed` that occur in some way of finding all saved windows among those shown, in their
/// order.
Grid feasible(const Grid& allowed) {
    const std::size_t n = allowed.rows(), m = allowed.columns();
    Grid front(n + 1, m + 1),
        back(n + 1, m + 1);  // the first i rows can hold the first j columns; the rest the rest
    for (std::size_t i = 0; i <= n; ++i) {
        front.at(i, 0) = true;
        for (std::size_t j = 1; j <= std::min(i, m); ++j)
            front.at(i, j) = front.at(i - 1, j) || (front.at(i - 1, j - 1) && allowed.at(i - 1, j - 1));
    }
    for (std::size_t i = n + 1; i-- > 0;) {
        back.at(i, m) = true;
        for (std::size_t j = m; j-- > 0;)
            back.at(i, j) = i < n && (back.at(i + 1, j) || (back.at(i + 1, j + 1) && allowed.at(i, j)));
    }
    Grid result(n, m);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < m; ++j)
            result.at(i, j) = front.at(i, j) && allowed.at(i, j) && back.at(i + 1, j + 1);
    }
    return result;
}

/// The title is that of a page the window has.
bool titleSpeaks(const ShownBrowserWindow& shown, const BrowserWindow& saved) {
    return std::ranges::any_of(saved.tabs, [&](const BrowserTab& tab) {
        return !tab.title.empty() && shown.title.starts_with(tab.title);
    });
}

/// A position is written late, but two windows seldom stand on the same spot.
bool positionSpeaks(const ShownBrowserWindow& shown, const BrowserWindow& saved) {
    return saved.frame && (*saved.frame == shown.client || *saved.frame == shown.frame);
}

Grid judged(std::span<const ShownBrowserWindow> shown, std::span<const BrowserWindow> saved, auto judge) {
    Grid grid(shown.size(), saved.size());
    for (std::size_t i = 0; i < shown.size(); ++i) {
        for (std::size_t j = 0; j < saved.size(); ++j) grid.at(i, j) = judge(shown[i], saved[j]);
    }
    return grid;
}

/// Settles one column that has several rows left, where the evidence names one of them and that one for no
/// other column; whether it did.
bool narrow(Grid& possible, const Grid& evidence) {
    for (std::size_t j = 0; j < possible.columns(); ++j) {
        const auto here = possible.rowsOf(j, [](std::size_t) { return true; });
        const auto named = possible.rowsOf(j, [&](std::size_t row) { return evidence.at(row, j); });
        if (here.size() < 2 || named.size() != 1) continue;
        const std::size_t row = named.front();
        bool disputed = false;
        for (std::size_t k = 0; k < possible.columns(); ++k)
            disputed |= k != j && possible.at(row, k) && evidence.at(row, k);
        if (disputed) continue;
        Grid only = possible;
        for (const std::size_t other : here) only.at(other, j) = other == row;
        Grid narrowed = feasible(only);
        if (!narrowed.any()) continue;
        possible = std::move(narrowed);
        return true;
    }
    return false;
}

}  // namespace

Pairs match(std::span<const ShownBrowserWindow> shown, std::span<const BrowserWindow> saved,
            Evidence evidence) {
    Pairs pairs{std::vector<std::optional<std::size_t>>(saved.size()), true};
    Grid possible = feasible(judged(shown, saved, [&](const ShownBrowserWindow& a, const BrowserWindow& b) {
        return evidence == Evidence::titleOnly || compatible(a, b);
    }));
    if (!saved.empty() && !possible.any()) {
        pairs.consistent = false;
        return pairs;
    }
    const Grid titles = judged(shown, saved, titleSpeaks), positions = judged(shown, saved, positionSpeaks);
    while (narrow(possible, titles) || narrow(possible, positions)) {
    }
    for (std::size_t j = 0; j < saved.size(); ++j) {
        const auto left = possible.rowsOf(j, [](std::size_t) { return true; });
        const bool sure =
            left.size() == 1 && (evidence == Evidence::sizeAndTitle || titles.at(left.front(), j));
        if (sure) pairs.shown[j] = left.front();
    }
    return pairs;
}

}  // namespace quillo::WindowPairing
