#include "platform/macos/shell/MacLoginItem.hpp"

#import <ServiceManagement/ServiceManagement.h>

#include "platform/macos/shell/FoundationValues.hpp"

namespace quillo {
namespace {

constexpr auto numberOf(LoginItemStatus status) {
    return static_cast<SMAppServiceStatus>(status);
}
static_assert(numberOf(LoginItemStatus::notRegistered) == SMAppServiceStatusNotRegistered);
static_assert(numberOf(LoginItemStatus::enabled) == SMAppServiceStatusEnabled);
static_assert(numberOf(LoginItemStatus::requiresApproval) == SMAppServiceStatusRequiresApproval);
static_assert(numberOf(LoginItemStatus::notFound) == SMAppServiceStatusNotFound);

Result<void> resultOf(bool done, NSError* error) {
    if (done) return {};
    return fail(ErrorKind::refused,
                foundation::text(error.localizedDescription).value_or("the system refused"),
                static_cast<int>(error.code));
}

}  // namespace

LoginItemStatus MacLoginItem::status() const {
    @autoreleasepool {
        switch (SMAppService.mainAppService.status) {
            case SMAppServiceStatusNotRegistered:
                return LoginItemStatus::notRegistered;
            case SMAppServiceStatusEnabled:
                return LoginItemStatus::enabled;
            case SMAppServiceStatusRequiresApproval:
                return LoginItemStatus::requiresApproval;
            case SMAppServiceStatusNotFound:
                return LoginItemStatus::notFound;
        }
        return LoginItemStatus::notFound;
    }
}

Result<void> MacLoginItem::registerItem() {
    @autoreleasepool {
        NSError* error = nil;
        const bool done = [SMAppService.mainAppService registerAndReturnError:&error];
        return resultOf(done, error);
    }
}

Result<void> MacLoginItem::unregisterItem() {
    @autoreleasepool {
        NSError* error = nil;
        const bool done = [SMAppService.mainAppService unregisterAndReturnError:&error];
        return resultOf(done, error);
    }
}

void MacLoginItem::openSystemSettings() {
    @autoreleasepool {
        [SMAppService openSystemSettingsLoginItems];
    }
}

}  // namespace quillo
