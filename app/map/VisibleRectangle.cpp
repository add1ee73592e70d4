#include "app/map/VisibleRectangle.hpp"

#include <algorithm>
#include <vector>

namespace quillo {
namespace {

double area(const Rect& rect) {
    return rect.width * rect.height;
}

void sortOnce(std::vector<double>& edges) {
    std::ranges::sort(edges);
    const auto [first, last] = std::ranges::unique(edges);
    edges.erase(first, last);
}

/// The tile cut at every edge of what covers it; each cell is covered or free as a whole.
class Cells {
  public:
    Cells(const Rect& tile, const std::vector<Rect>& covers)
        : x_{tile.minX(), tile.maxX()}, y_{tile.minY(), tile.maxY()} {
        for (const Rect& cover : covers) {
            x_.insert(x_.end(), {cover.minX(), cover.maxX()});
            y_.insert(y_.end(), {cover.minY(), cover.maxY()});
        }
        sortOnce(x_);
        sortOnce(y_);
        covered_.resize(columns() * rows());
        for (const Rect& cover : covers) fill(cover);
    }

    std::size_t columns() const { return x_.size() - 1; }
    std::size_t rows() const { return y_.size() - 1; }
    bool covered(std::size_t column, std::size_t row) const { return covered_[row * columns() + column]; }
    Rect span(std::size_t left, std::size_t right, std::size_t top, std::size_t bottom) const {
        return {x_[left], y_[top], x_[right] - x_[left], y_[bottom] - y_[top]};
    }

  private:
    void fill(const Rect& cover) {
        for (std::size_t row = 0; row < rows(); ++row) {
            if (y_[row] < cover.minY() || y_[row] >= cover.maxY()) continue;
            for (std::size_t column = 0; column < columns(); ++column) {
                if (x_[column] >= cover.minX() && x_[column] < cover.maxX())
                    covered_[row * columns() + column] = true;
            }
        }
    }

    std::vector<double> x_, y_;
    std::vector<bool> covered_;
};

class Best {
  public:
    explicit Best(const std::function<double(const Rect&)>& score) : score_(score) {}

    void offer(const Rect& rect) {
        const double score = score_(rect);
        if (score < points_ || (score == points_ && area(rect) <= area(rect_))) return;
        points_ = score;
        rect_ = rect;
    }
    const Rect& rect() const { return rect_; }

  private:
    const std::function<double(const Rect&)>& score_;
    double points_ = 0;
    Rect rect_;
};

/// Offers each run of columns that is free from row `top` to row `bottom`.
void offerRuns(const Cells& cells, const std::vector<bool>& blocked, std::size_t top, std::size_t bottom,
               Best& best) {
    std::size_t start = 0;
    for (std::size_t column = 0; column <= cells.columns(); ++column) {
        if (column < cells.columns() && !blocked[column]) continue;
        if (column > start) best.offer(cells.span(start, column, top, bottom));
        start = column + 1;
    }
}

}  // namespace

Rect intersection(const Rect& rect, const Rect& bounds) {
    const double left = std::max(rect.minX(), bounds.minX()), top = std::max(rect.minY(), bounds.minY());
    const double right = std::min(rect.maxX(), bounds.maxX()), bottom = std::min(rect.maxY(), bounds.maxY());
    return right > left && bottom > top ? Rect{left, top, right - left, bottom - top} : Rect{};
}

Rect grown(const Rect& rect, double by) {
    return {rect.x - by, rect.y - by, rect.width + 2 * by, rect.height + 2 * by};
}

Rect bestVisibleRectangle(const Rect& tile, std::span<const Rect> covers,
                          const std::function<double(const Rect&)>& score) {
    std::vector<Rect> inside;
    for (const Rect& cover : covers) {
        if (const Rect shared = intersection(cover, tile); !shared.empty()) inside.push_back(shared);
    }
    const Cells cells(tile, inside);
    Best best(score);
    for (std::size_t top = 0; top < cells.rows(); ++top) {
        std::vector<bool> blocked(cells.columns());
        for (std::size_t bottom = top; bottom < cells.rows(); ++bottom) {
            for (std::size_t column = 0; column < cells.columns(); ++column) {
                if (cells.covered(column, bottom)) blocked[column] = true;
            }
            offerRuns(cells, blocked, top, bottom + 1, best);
        }
    }
    return best.rect();
}

}  // namespace quillo
