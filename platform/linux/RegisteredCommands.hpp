// Starting applications that have no menu entry, by the command that the person has said for them.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/support/Error.hpp"
#include "WindowEngine/support/Url.hpp"

namespace quillo {

class RegisteredCommands {
  public:
    using Command = std::vector<std::string>;  // the program and its arguments, never empty
    /// The command of an application, asked each time; on the executor's thread.
    using CommandOf = std::function<std::optional<Command>(std::string_view identifier)>;

    /// Without a function there are none.
    explicit RegisteredCommands(CommandOf commandOf) : commandOf_(std::move(commandOf)) {}

    /// What stands for the location of an application with a command: an address that names the application
    /// and not the command, so that nothing of it comes into a workspace.
    std::optional<Url> location(std::string_view identifier) const;
    /// Of such an address, while the application has a command.
    std::optional<std::string> identifierAt(const Url& location) const;

    /// Without a shell and detached, in a session of its own, its output going nowhere. The error's text
    /// holds no path; notFound where the application has no command.
    Result<ProcessID> start(std::string_view identifier, const std::string& display) const;

  private:
    std::optional<Command> command(std::string_view identifier) const;

    CommandOf commandOf_;
};

}  // namespace quillo
