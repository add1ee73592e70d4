// What tests of the macOS core share: each must leave no Core Foundation object behind.
#pragma once
#include <gtest/gtest.h>

#include "platform/macos/fakes/FakeMac.hpp"
#include "platform/macos/fakes/FakeObject.hpp"

namespace quillo {

class MacTest : public testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(fakes::liveObjects(), 0U) << fakes::liveObjectList(); }
};

}  // namespace quillo
