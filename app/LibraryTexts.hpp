// What the library and the switcher say.
#pragma once
#include <string>
#include <string_view>

namespace quillo::LibraryTexts {

inline constexpr std::string_view menuEmpty = "No workspaces yet";
inline constexpr std::string_view unreadable = "Your workspaces can't be read";
inline constexpr std::string_view unreadableHint =
    "They are listed again as soon as their folder can be opened.";
inline constexpr std::string_view windowEmpty = "Save your first workspace";
inline constexpr std::string_view windowEmptyHint =
    "Save this desktop as a workspace. Your apps and windows\nwill be ready when you come back.";
inline constexpr std::string_view noMatch = "No matching workspaces";
inline constexpr std::string_view noMatchHint = "Try a workspace name or an app, like Safari or Xcode.";

inline constexpr std::string_view switcherPrompt = "Resume a workspace…";
inline constexpr std::string_view saveRow = "Save current desktop as a workspace";
inline constexpr std::string_view saveRowDetail = "Everything that's open right now";
/// The query as it was typed.
inline std::string nothingMatches(std::string_view query) {
    return "Nothing matches “" + std::string(query) + "”";
}

}  // namespace quillo::LibraryTexts
