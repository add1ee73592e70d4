// The arguments of one call, as parsed.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillo::ctl {

struct Arguments {
    // of every command
    std::string desktop;        // systemDesktopName or "simulated:FILE"; empty for the system's own
    std::string dataDirectory;  // empty for the default
    std::string desktopIsFrom = "--desktop", dataDirectoryIsFrom = "--data-dir";  // or the variable's name
    bool json = false;
    bool quiet = false;
    bool keepScene = false;  // write the changed scene of a simulated desktop back to its file

    // of single commands
    std::string workspace;                  // W
    std::vector<std::string> workspaces;    // W... of delete and export
    std::optional<std::string> name;        // NAME
    std::string application;                // APP of launcher add
    std::vector<std::string> words;         // COMMAND... of launcher add, APP... of its remove; of complete
    std::string file;                       // FILE
    std::optional<std::string> update;      // save --update W
    std::vector<std::string> only;          // --only APP[/WINDOW]
    std::vector<std::string> except;        // --except APP[/WINDOW]
    std::vector<std::string> displays;      // --display SAVED=PRESENT
    bool arrange = false;                   // restore --arrange, plan --arrange
    std::int64_t number = 0;                // NUMBER of layout remove
    std::optional<std::int64_t> count;      // watch --count N
    bool longList = false;                  // list --long
    bool force = false;                     // of export, report, save and layout save
    bool exitCode = false;                  // plan --exit-code
    bool wait = false;                      // restore --wait
    double waitLimit = 30;                  // restore --wait-limit SECONDS
    bool yes = false;                       // restore --yes
    double late = 0;                        // restore --late SECONDS
    bool planOnly = false;                  // undo --plan
    bool quitLaunched = false;              // undo --quit-launched
    std::vector<std::string> adapters;      // --adapter ID
    std::optional<std::string> cleanSlate;  // --clean-slate MODE; absent: as the workspace says
};

}  // namespace quillo::ctl
