// How a running browser is asked for windows and tabs by its own command. Pure; what each form does was
// measured with Chromium 156 and Firefox ESR 153.
#pragma once
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/services/BrowserFiles.hpp"
#include "WindowEngine/support/Url.hpp"

namespace quillo::BrowserCommands {

using Arguments = std::vector<std::string>;

/// The addresses in portions of which each fits one command. Chromium ends when it is handed more than 32 KB.
std::vector<std::span<const Url>> portions(std::span<const Url> urls, BrowserFamily family);

/// Takes out addresses that fit no command by themselves; how many.
std::size_t dropTooLong(std::vector<Url>& urls, BrowserFamily family);

/// One new window of this profile with the addresses, of which there is one at least, in order.
Arguments newWindow(const BrowserProfile& profile, BrowserFamily family, std::span<const Url> urls);
/// Tabs in that window of the profile which was in front last.
Arguments moreTabs(const BrowserProfile& profile, BrowserFamily family, std::span<const Url> urls);

}  // namespace quillo::BrowserCommands
