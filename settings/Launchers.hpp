// How applications are started that no menu entry starts, as the person has said it. Kept with the settings
// of this machine, and never in a workspace: a file from elsewhere cannot choose what is run.
#pragma once
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/services/UserDefaults.hpp"

namespace quillo {

class Launchers {
  public:
    static constexpr std::string_view defaultsKey = "launchers";
    using Command = std::vector<std::string>;  // the program and its arguments; run without a shell

    /// Remembers a reference.
    explicit Launchers(UserDefaults& defaults) : defaults_(&defaults) {}

    /// By identifier, which is in lower case; what else stands among the settings is left out. As they are
    /// now, whatever program set them.
    std::map<std::string, Command, std::less<>> all() const;
    /// Whatever the case of `identifier`.
    std::optional<Command> find(std::string_view identifier) const;

    /// Replaces what the application had. `command` is not empty. On failure all stays as it was.
    Result<void> set(std::string_view identifier, Command command);
    /// False where it has none.
    Result<bool> remove(std::string_view identifier);

  private:
    Result<void> write(const std::map<std::string, Command, std::less<>>& all);

    UserDefaults* defaults_;
};

}  // namespace quillo
