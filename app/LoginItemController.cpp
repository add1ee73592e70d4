#include "app/LoginItemController.hpp"

#include <tuple>
#include <utility>

#include "settings/AppSettings.hpp"

namespace quillo {
namespace {

constexpr std::string_view configuredKey = "launchAtLoginDefaultConfigured";

bool isOneOf(LoginItemStatus status, LoginItemStatus one, LoginItemStatus other) {
    return status == one || status == other;
}

}  // namespace

LoginItemController::Operations LoginItemController::operations(LoginItemService& service) {
    return {.readStatus = [&service] { return service.status(); },
            .registerItem = [&service] { return service.registerItem(); },
            .unregisterItem = [&service] { return service.unregisterItem(); }};
}

LoginItemController::LoginItemController(UserDefaults& defaults, Operations operations, QObject* parent)
    : QObject(parent),
      defaults_(defaults),
      operations_(std::move(operations)),
      status_(operations_.readStatus()) {}

void LoginItemController::configureDefault() {
    if (defaults_.boolean(configuredKey)) return;
    // Without the mark the next start would switch it on again, whatever the person chose meanwhile.
    if (!defaults_.setBoolean(configuredKey, true)) return;
    const bool isUpgrade = defaults_.data(AppSettings::defaultsKey) || defaults_.trouble();
    if (!isUpgrade && status_ == LoginItemStatus::notRegistered) setEnabled(true);
}

void LoginItemController::setEnabled(bool on) {
    using enum LoginItemStatus;
    // What the person asks for is done even where it cannot be noted that they asked.
    std::ignore = defaults_.setBoolean(configuredKey, true);
    errorMessage_.reset();
    status_ = operations_.readStatus();
    Result<void> outcome;
    if (on && isOneOf(status_, notRegistered, notFound)) outcome = operations_.registerItem();
    if (!on && isOneOf(status_, enabled, requiresApproval)) outcome = operations_.unregisterItem();
    if (!outcome) errorMessage_ = "Couldn't change launch at login: " + outcome.error().text;
    status_ = operations_.readStatus();
    Q_EMIT changed();
}

}  // namespace quillo
