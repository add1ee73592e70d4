// Hands every call on to another service: a fault test overrides the one it needs.
#pragma once
#include "WindowEngine/services/Screens.hpp"

namespace quillo {

class ForwardingScreens : public Screens {
  public:
    explicit ForwardingScreens(Screens& target) : target_(target) {}
    std::vector<Screen> screens() override { return target_.screens(); }

  private:
    Screens& target_;
};

}  // namespace quillo
