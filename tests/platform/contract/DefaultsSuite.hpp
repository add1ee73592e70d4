// What every keeper of the person's defaults must hold, written once and instantiated with each of them.
#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/services/UserDefaults.hpp"

namespace quillo {

class DefaultsUnderTest {
  public:
    virtual ~DefaultsUnderTest() = default;

    virtual UserDefaults& defaults() = 0;
    /// Another program looks at what is kept; where nothing is, it stays the same.
    virtual void startAgain() {}
    /// Whether nothing can be kept, from now on.
    virtual void refuse(bool refuses) = 0;
};

class DefaultsContract : public testing::TestWithParam<std::unique_ptr<DefaultsUnderTest> (*)()> {
  protected:
    UserDefaults& defaults() { return kept->defaults(); }

    const std::unique_ptr<DefaultsUnderTest> kept = GetParam()();
};

TEST_P(DefaultsContract, WhatWasSetIsThereUntilItIsTakenAway) {
    EXPECT_FALSE(defaults().data("data") || defaults().boolean("flag") || defaults().trouble());
    for (const std::string value : {"{\"a\":1}", "\"text\" \n", ""}) {
        ASSERT_TRUE(defaults().setData("data", value));
        kept->startAgain();
        EXPECT_EQ(defaults().data("data"), value);
    }
    for (const bool value : {true, false, true}) {
        ASSERT_TRUE(defaults().setBoolean("flag", value));
        kept->startAgain();
        EXPECT_EQ(defaults().boolean("flag"), value);
    }
    ASSERT_TRUE(defaults().setData("data", std::nullopt));
    kept->startAgain();
    EXPECT_EQ(defaults().data("data"), std::nullopt);
    EXPECT_TRUE(defaults().boolean("flag"));
}

TEST_P(DefaultsContract, AKeyHoldsOneValueOfOneType) {
    ASSERT_TRUE(defaults().setBoolean("key", true));
    EXPECT_EQ(defaults().data("key"), std::nullopt);
    ASSERT_TRUE(defaults().setData("key", "{}"));
    EXPECT_FALSE(defaults().boolean("key"));
    ASSERT_TRUE(defaults().setBoolean("key", true));
    EXPECT_EQ(defaults().data("key"), std::nullopt);
}

TEST_P(DefaultsContract, AFailedSetLeavesEverythingAsItWas) {
    ASSERT_TRUE(defaults().setData("data", "before"));
    kept->refuse(true);
    EXPECT_FALSE(defaults().setData("data", "after"));
    EXPECT_FALSE(defaults().setData("data", std::nullopt));
    EXPECT_FALSE(defaults().setBoolean("flag", true));
    EXPECT_EQ(defaults().data("data"), "before");
    EXPECT_FALSE(defaults().boolean("flag"));
    kept->refuse(false);
    ASSERT_TRUE(defaults().setBoolean("other", true));  // which keeps all there is
    kept->startAgain();
    EXPECT_EQ(defaults().data("data"), "before");
    EXPECT_FALSE(defaults().boolean("flag"));
}

}  // namespace quillo
