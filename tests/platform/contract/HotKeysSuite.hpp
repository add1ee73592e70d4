// What every service of hot keys must hold, written once and instantiated with each of them.
#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "platform/services/HotKeyService.hpp"
#include "platform/services/KeyEvent.hpp"

namespace quillo {

struct Combination {
    std::uint32_t keyCode = 0, modifiers = 0;
};

class HotKeysUnderTest {
  public:
    virtual ~HotKeysUnderTest() = default;

    virtual HotKeyService& service() = 0;
    /// By the person. What comes of it may come later.
    virtual void press(const Combination& combination) = 0;
    /// By another program, for itself, until this goes.
    virtual void take(const Combination& combination) = 0;
    virtual bool runUntil(const std::function<bool()>& condition) = 0;
};

class HotKeysContract : public testing::TestWithParam<std::unique_ptr<HotKeysUnderTest> (*)()> {
  protected:
    Result<std::unique_ptr<HotKeyRegistration>> hold(const Combination& combination, std::uint32_t number) {
        return keys->service().registerHotKey(combination.keyCode, combination.modifiers,
                                              {{'T', 'E', 'S', 'T'}, number});
    }
    /// What was heard since the last call, up to the press of the combination that is registered as this one.
    std::vector<std::uint32_t> heardUntil(const Combination& combination, std::uint32_t number) {
        keys->press(combination);
        EXPECT_TRUE(keys->runUntil([&] { return !heard.empty() && heard.back() == number; }));
        return std::exchange(heard, {});
    }

    using Numbers = std::vector<std::uint32_t>;
    static constexpr std::uint32_t three = modifier::control | modifier::option | modifier::command;
    static constexpr Combination save{1, three}, switcher{15, three};
    const std::unique_ptr<HotKeysUnderTest> keys = GetParam()();
    Numbers heard;
    const std::unique_ptr<HotKeyHandler> handler = keys->service().installHandler(
        [this](HotKeyID id) {
            heard.push_back(id.number);
            return true;
        },
        [](HotKeyID, const Error&) { FAIL() << "nothing is lost"; });
};

TEST_P(HotKeysContract, APressOfWhatIsHeldIsToldOnceAndOfNothingElse) {
    EXPECT_TRUE(keys->service().capability());
    auto first = hold(save, 1);
    const auto second = hold(switcher, 2);
    ASSERT_TRUE(first && second);
    keys->press(save);
    keys->press({save.keyCode, modifier::command});
    EXPECT_EQ(heardUntil(switcher, 2), (Numbers{1, 2}));
    first->reset();
    keys->press(save);
    EXPECT_EQ(heardUntil(switcher, 2), Numbers{2});
}

TEST_P(HotKeysContract, WhatAnybodyHoldsIsRefusedUntilItIsFree) {
    keys->take(save);
    auto held = hold(switcher, 2);
    ASSERT_TRUE(held);
    for (const Combination& combination : {save, switcher}) {
        const auto refused = hold(combination, 1);
        ASSERT_FALSE(refused) << combination.keyCode;
        EXPECT_EQ(refused.error().kind, ErrorKind::refused);
        EXPECT_NE(refused.error().code, 0);
    }
    EXPECT_EQ(heardUntil(switcher, 2), Numbers{2});
    held->reset();
    held = hold(switcher, 3);
    ASSERT_TRUE(held);
    EXPECT_EQ(heardUntil(switcher, 3), Numbers{3});
}

}  // namespace quillo
