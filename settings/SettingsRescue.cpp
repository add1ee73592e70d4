#include "settings/SettingsRescue.hpp"

#include <utility>

#include "settings/AppSettings.hpp"

namespace quillo {
namespace {

constexpr std::string_view said =
    "Your settings can't be read, so the usual ones hold. No app and no website is excluded now.";

}  // namespace

SettingsRescue::SettingsRescue(UserDefaults& defaults)
    : defaults_(&defaults), trouble_(defaults.data(defaultsKey)) {}

bool SettingsRescue::look() {
    defaults_->refresh();
    std::optional<std::string> stored = defaults_->data(AppSettings::defaultsKey);
    std::optional<std::string> reason = defaults_->trouble();
    Result<std::string> kept;
    if (reason) {
        kept = defaults_->keepAside();
    } else if (stored && !AppSettings::decode(*stored)) {
        reason = "a field is not of the type it must have";
        kept = keepSettingsAside(*std::move(stored));
    } else {
        return false;
    }
    std::string text(said);
    text += kept ? "\nWhat was there is kept as " + *kept + "."
                 : "\nNothing is changed there. " + kept.error().text + ".";
    text += " The damage: " + *reason + ".";
    // Stored, they show that this is no fresh installation, which would be introduced, and opened at login.
    AppSettings usual;
    usual.onboarded = true;
    if (kept && usual.save(*defaults_)) (void)defaults_->setData(defaultsKey, text);
    return std::exchange(trouble_, std::move(text)) != trouble_;
}

/// Beside the settings, under the first name that is free.
Result<std::string> SettingsRescue::keepSettingsAside(std::string stored) {
    constexpr int most = 9;
    for (int number = 1; number <= most; ++number) {
        const std::string key = std::string(AppSettings::defaultsKey) + ".damaged" +
                                (number == 1 ? "" : "-" + std::to_string(number));
        if (defaults_->data(key)) continue;
        if (const Result<void> set = defaults_->setData(key, std::move(stored)); !set)
            return std::unexpected(set.error());
        return key + " in " + defaults_->place();
    }
    return fail(ErrorKind::io,
                "Nine damaged ones are kept in " + defaults_->place() + " already; remove those");
}

void SettingsRescue::dismiss() {
    trouble_.reset();
    (void)defaults_->setData(defaultsKey, std::nullopt);  // on failure it is said once more
}

}  // namespace quillo
