#include "settings/SettingsRescue.hpp"

#include <utility>

#include "settings/AppSettings.hpp"

namespace quillo {

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
    std::string text =
        "Your settings can't be read, so the usual ones hold and nothing is excluded: " + *reason + ". ";
    text +=
        kept ? "What was there is kept as " + *kept + "." : "Nothing is changed there. " + kept.error().text;
    // Stored, they show that this is no fresh installation, which would be opened at login.
    if (kept && AppSettings{}.save(*defaults_)) (void)defaults_->setData(defaultsKey, text);
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
