// Points, sizes and rectangles in global screen points: origin at the top left of the primary display,
// y growing downwards. All comparisons are exact; tolerance is the business of the caller.
#pragma once

namespace quillo {

struct Point {
    double x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0, height = 0;
    bool operator==(const Size&) const = default;
};

struct Rect {
    double x = 0, y = 0, width = 0, height = 0;

    bool operator==(const Rect&) const = default;

    double minX() const { return x; }
    double minY() const { return y; }
    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    double midX() const { return x + width / 2; }
    double midY() const { return y + height / 2; }
    Point origin() const { return {x, y}; }
    Point center() const { return {midX(), midY()}; }
    Size size() const { return {width, height}; }
    bool empty() const { return width <= 0 || height <= 0; }

    /// Half-open: the left and top edges belong to the rectangle, the right and bottom ones do not, so
    /// that a point on the border of two displays belongs to exactly one.
    bool contains(Point p) const { return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY(); }

    /// Area shared with `other`, 0 when they only touch or lie apart.
    double intersectionArea(const Rect& other) const {
        const double left = minX() > other.minX() ? minX() : other.minX();
        const double right = maxX() < other.maxX() ? maxX() : other.maxX();
        const double top = minY() > other.minY() ? minY() : other.minY();
        const double bottom = maxY() < other.maxY() ? maxY() : other.maxY();
        return right > left && bottom > top ? (right - left) * (bottom - top) : 0;
    }

    /// True when they share an area; touching edges do not intersect.
    bool intersects(const Rect& other) const { return intersectionArea(other) > 0; }
};

}  // namespace quillo
