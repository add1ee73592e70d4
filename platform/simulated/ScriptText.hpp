// The scripts that the simulated applications understand, read from their text as an interpreter would: what
// a literal says is found by its own rules, so that one which was written wrongly means something else here
// too, or is no script at all. Internal to this layer.
#pragma once
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillo::simulated {

struct Script {
    enum class Kind {
        listFolders,
        openFolder,
        listTabs,
        identifyTabs,
        newWindow,
        openTabs,
        listSafariTabs,
        newSafariWindow,
        openSafariTabs,
    };
    Kind kind{};
    /// What stands in the places that differ from script to script, by the names in ScriptText.cpp, in the
    /// order of the text.
    std::map<std::string, std::vector<std::string>, std::less<>> fields;

    /// The only value of a field; empty where there is none.
    std::string value(std::string_view field) const;
    std::vector<std::string> values(std::string_view field) const;
};

/// Absent for every other text.
std::optional<Script> readScript(std::string_view text);

}  // namespace quillo::simulated
