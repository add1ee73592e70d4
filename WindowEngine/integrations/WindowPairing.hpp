// Which window on the screen a window of a browser's session file is. Pure.
#pragma once
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "WindowEngine/services/BrowserFiles.hpp"

namespace quillo::WindowPairing {

/// How much of a window its file tells in time. Chromium writes sizes, states and desktops at once and
/// positions late; Firefox writes none of them but along with other changes.
enum class Evidence { sizeAndTitle, titleOnly };

struct Pairs {
    /// For each saved window the place of the one shown that it is, where that is sure.
    std::vector<std::optional<std::size_t>> shown;
    /// False: the file tells of windows that are not there, so it is behind the screen.
    bool consistent = true;
};

/// Both lists are in the order in which their windows were made. Every saved window is on the screen; what is
/// on the screen besides is private or too new to be written. A pair is sure where it is the only one that
/// any way of placing all saved windows in their order allows; where several do, a title or an exact position
/// decides, if it names one window only and speaks for no other saved one. Takes time in proportion to the
/// product of both numbers, for each pair that evidence settles.
Pairs match(std::span<const ShownBrowserWindow> shown, std::span<const BrowserWindow> saved,
            Evidence evidence);

}  // namespace quillo::WindowPairing
