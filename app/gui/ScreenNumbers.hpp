// Numbers on screens, so that a person can tell which one is meant.
#pragma once
#include <QWindow>
#include <memory>
#include <vector>

#include "WindowEngine/support/Rect.hpp"

namespace quillo {

/// Small windows over all others, which take neither the keyboard nor the pointer.
class ScreenNumbers final {
  public:
    ScreenNumbers();
    ScreenNumbers(const ScreenNumbers&) = delete;
    ScreenNumbers& operator=(const ScreenNumbers&) = delete;
    ~ScreenNumbers();

    /// In the middle of each of these, in global points, 1 in the first; in place of those shown before.
    void show(const std::vector<Rect>& screens);

  private:
    std::vector<std::unique_ptr<QWindow>> shown_;
};

}  // namespace quillo
