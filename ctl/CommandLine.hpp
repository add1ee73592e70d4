// The command line: what it accepts, and its help.
#pragma once
#include "ctl/Commands.hpp"

namespace quillo::ctl {

struct Invocation {
    Arguments arguments;
    Command command = nullptr;
};

/// Help and version are printed here and end in Exit::done; a line that makes no sense is complained about
/// on standard error and ends in Exit::usage.
std::expected<Invocation, Exit> parseCommandLine(int argumentCount, const char* const* arguments);

}  // namespace quillo::ctl
