// The platform layer of a Mac: the core's services over the system's own objects.
#pragma once
#include <memory>

#include "WindowEngine/services/Platform.hpp"

namespace quillo {

/// Main thread. That the person has yet to permit window access is the accessibility service's to say; the
/// desktop is there all the same.
class MacDesktop {
  public:
    /// Connects this program to the window server. The executor must outlive it.
    explicit MacDesktop(Executor& executor);
    MacDesktop(const MacDesktop&) = delete;
    MacDesktop& operator=(const MacDesktop&) = delete;
    ~MacDesktop();

    /// References into this object.
    Platform platform(SystemLog& log);

  private:
    struct Services;
    std::unique_ptr<Services> services_;
};

}  // namespace quillo
