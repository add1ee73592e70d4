// Launch at login: what each state asks of the system, and the one time it is switched on by itself.
#include <gtest/gtest.h>

#include "app/LoginItemController.hpp"
#include "platform/simulated/MemoryDefaults.hpp"
#include "platform/simulated/SimulatedLoginItem.hpp"
#include "settings/AppSettings.hpp"

namespace quillo {
namespace {

using enum LoginItemStatus;

constexpr auto configured = "launchAtLoginDefaultConfigured";
const Error refusal{.kind = ErrorKind::refused, .text = "not today"};

TEST(LoginItemController, AsksTheSystemForNoMoreThanTheStateNeeds) {
    for (const bool on : {true, false}) {
        for (const auto before : {notRegistered, enabled, requiresApproval, notFound}) {
            for (const bool fails : {false, true}) {
                SCOPED_TRACE(testing::Message() << on << " " << static_cast<int>(before) << " " << fails);
                const bool isRegistered = before == enabled || before == requiresApproval;
                const bool calls = on != isRegistered;
                MemoryDefaults defaults;
                SimulatedLoginItem item(enabled);
                if (fails) item.registerFailure = item.unregisterFailure = refusal;
                LoginItemController controller(defaults, LoginItemController::operations(item));
                item.current = before;  // changed elsewhere after it was read
                int told = 0;
                QObject::connect(&controller, &LoginItemController::changed, [&] { ++told; });

                controller.setEnabled(on);
                EXPECT_EQ(item.registrations, on && calls);
                EXPECT_EQ(item.unregistrations, !on && calls);
                EXPECT_EQ(controller.status(), !calls || fails ? before : on ? enabled : notRegistered);
                EXPECT_EQ(controller.errorMessage(),
                          calls && fails
                              ? std::optional<std::string>("Couldn't change launch at login: not today")
                              : std::nullopt);
                EXPECT_TRUE(defaults.boolean(configured));
                EXPECT_EQ(told, 1);

                item.registerFailure.reset();
                item.unregisterFailure.reset();
                controller.setEnabled(on);
                EXPECT_EQ(controller.errorMessage(), std::nullopt);
            }
        }
    }
}

TEST(LoginItemController, IsSwitchedOnOnceForAFreshInstallationOnly) {
    const struct {
        bool settingsExist, isConfigured, defaultsFail;
        LoginItemStatus before, after;
        int registrations;
    } cases[] = {{false, false, false, notRegistered, enabled, 1},
                 {true, false, false, notRegistered, notRegistered, 0},  // an upgrade
                 {false, true, false, notRegistered, notRegistered, 0},  // switched off by the person
                 {false, false, false, requiresApproval, requiresApproval, 0},
                 {false, false, false, notFound, notFound, 0},
                 {false, false, true, notRegistered, notRegistered, 0}};  // it would come back at each start
    for (const auto& one : cases) {
        SCOPED_TRACE(&one - cases);
        MemoryDefaults defaults;
        if (one.settingsExist) ASSERT_TRUE(defaults.setData(AppSettings::defaultsKey, "{}"));
        if (one.isConfigured) ASSERT_TRUE(defaults.setBoolean(configured, true));
        if (one.defaultsFail) defaults.failure = refusal;
        SimulatedLoginItem item(one.before);
        for (int starts = 0; starts < 2; ++starts) {
            LoginItemController controller(defaults, LoginItemController::operations(item));
            controller.configureDefault();
            EXPECT_EQ(controller.status(), one.after);
            EXPECT_EQ(item.registrations, one.registrations);
            EXPECT_EQ(defaults.boolean(configured), !one.defaultsFail);
        }
        // Asked for, it happens even where it cannot be noted.
        LoginItemController(defaults, LoginItemController::operations(item)).setEnabled(true);
        EXPECT_NE(item.current, notRegistered);
    }
}

}  // namespace
}  // namespace quillo
