// Where this system wants programs to keep their files.
#pragma once
#include <filesystem>

#include "WindowEngine/support/Error.hpp"

namespace quillo {

struct StandardDirectories {
    std::filesystem::path data;    // holds workspaces/ and sessions/
    std::filesystem::path state;   // holds the log
    std::filesystem::path config;  // holds the person's defaults
    /// Holds what a program that runs is found by. In the session's own folder where that is the person's
    /// alone, else in `data`.
    std::filesystem::path runtime;

    /// From the environment. No directory need exist; the first three, where they do, are closed to others.
    /// Fails when the person has no home directory.
    static Result<StandardDirectories> find();
};

}  // namespace quillo
