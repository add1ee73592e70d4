// Short ways to write displays and windows, and random ones by seed that repeat each other often.
#pragma once
#include <random>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo::samples {

/// A menu bar of 30 points stands at the top of every display.
inline DisplaySnapshot display(std::string id, Rect frame, bool isPrimary = false, double scale = 1) {
    const Rect visible{frame.x, frame.y + 30, frame.width, frame.height - 30};
    return {std::move(id), frame, visible, scale, isPrimary};
}

inline WindowSnapshot window(Rect frame, std::optional<std::string> title = {}) {
    WindowSnapshot result;
    result.title = std::move(title);
    result.frame = frame;
    return result;
}

inline LiveWindowInfo live(Rect frame, std::optional<std::string> title = {}) {
    LiveWindowInfo result;
    result.title = std::move(title);
    result.frame = frame;
    return result;
}

class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}

    int below(int limit) { return std::uniform_int_distribution(0, limit - 1)(engine_); }
    bool flip() { return below(2) == 0; }
    double length(double least, double most) { return std::uniform_real_distribution(least, most)(engine_); }
    template <class T>
    T oneOf(const std::vector<T>& values) {
        return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
    }
    template <class T>
    std::optional<T> maybe(T value) {
        return flip() ? std::optional(std::move(value)) : std::nullopt;
    }
    Rect rect() { return {length(-3000, 3000), length(-3000, 3000), length(1, 4000), length(1, 4000)}; }

  private:
    std::mt19937 engine_;
};

}  // namespace quillo::samples
