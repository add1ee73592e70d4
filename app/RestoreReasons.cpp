#include "app/RestoreReasons.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

constexpr std::size_t reasonCharacters = 200;  // of an application's name

struct Wording {
    std::string_view exact;  // or how it begins
    std::string_view words;  // with the application's name for %
};

/// Of two that fit, the first counts.
constexpr std::array wordings{
    Wording{"no matching accessible window", "No window of % was left to place"},
    Wording{"no accessible windows appeared", "% has opened no window that can be placed"},
    Wording{"not installed", "% is not installed"},
    Wording{"no menu entry starts it", "% is in no menu, so it couldn't be started"},
    Wording{"couldn't launch", "% couldn't be opened"},
    Wording{"couldn't reopen a window", "% didn't open a new window"},
    Wording{"window refused position", "The window of % couldn't be moved to its place"},
    Wording{"window disappeared", "The window was closed meanwhile"},
    Wording{"couldn't unminimize", "The window stayed minimized"},
    Wording{"couldn't leave full screen", "The window stayed full screen"},
    Wording{"couldn't place the window on its target display", "The window couldn't be moved to its display"},
    Wording{"full-screen", "The window didn't become full screen"},
    Wording{"entered full screen, but", "It is full screen, but perhaps not on its display"},
    Wording{"no display", "There is no display for it"},
    Wording{"position restored, but Desktop", "It is in its place, but not on its desktop"},
    Wording{"it was moved before it could be placed", "It was moved before it could be placed"},
    Wording{"it opened late, and full screen", "It opened late; full screen would have taken the keyboard"},
    Wording{"it opened late and minimized", "It opened late, and minimized"},
    Wording{"closed since", "It was closed since"},
    Wording{"its application has ended since", "% has ended since"},
    Wording{"its application does not answer", "% doesn't answer"},
    Wording{"out of reach before the restore", "It was out of reach before the resume already"},
    Wording{"App refused to hide", "% couldn't be hidden"},
    Wording{"App is still running", "% is still open; it may be asking about unsaved changes"},
    Wording{"document did not appear", "The document was not open in time"},
    Wording{"document could not be opened", "The document couldn't be opened"},
    Wording{"Restore stopped unexpectedly", "Something went wrong on the way"},
};

}  // namespace

std::string reasonInWords(const RestoreReport::Item& item) {
    const std::string_view exact = detailOf(item.status).text;
    const auto known =
        std::ranges::find_if(wordings, [exact](const Wording& one) { return exact.starts_with(one.exact); });
    if (known == wordings.end()) return std::string(exact);
    std::string words(known->words);
    if (const auto name = words.find('%'); name != std::string::npos)
        words.replace(name, 1, text::clipped(item.app, reasonCharacters));
    return words;
}

}  // namespace quillo
