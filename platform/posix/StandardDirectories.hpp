// Where this system wants programs to keep their files.
#pragma once
#include <filesystem>

#include "WindowEngine/support/Error.hpp"

namespace quillo {

struct StandardDirectories {
    std::filesystem::path data;    // holds workspaces/ and sessions/
    std::filesystem::path state;   // holds the log
    std::filesystem::path config;  // holds the person's defaults

    /// From the environment; no directory need exist. Fails when the person has no home directory.
    static Result<StandardDirectories> find();
};

}  // namespace quillo
