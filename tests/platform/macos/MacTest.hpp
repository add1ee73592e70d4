// What tests of the macOS core share: each must leave no Core Foundation object behind.
#pragma once
#include <gtest/gtest.h>

#include "tests/platform/macos/fakes/FakeMac.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo {

/// Fails the test at its end where objects are left that were not there at its beginning.
class LeakCheck {
  public:
    LeakCheck() = default;
    LeakCheck(const LeakCheck&) = delete;
    LeakCheck& operator=(const LeakCheck&) = delete;
    ~LeakCheck() { EXPECT_EQ(fakes::liveObjects(), before_) << fakes::liveObjectList(); }

  private:
    const std::size_t before_ = fakes::liveObjects();
};

/// A fixture's members are gone before it looks: they come after its base.
class MacTest : public testing::Test {
  private:
    const LeakCheck leaks_;
};

}  // namespace quillo
