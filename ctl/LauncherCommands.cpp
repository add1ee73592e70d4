// launcher add, list, remove: how applications are started that no menu entry starts. In the settings of this
// machine, never in a workspace.
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "WindowEngine/support/Text.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/NearestName.hpp"
#include "ctl/SystemLayer.hpp"
#include "ctl/Table.hpp"
#include "settings/Launchers.hpp"

namespace quillo::ctl {
namespace {

bool isProgram(const std::filesystem::path& file) {
    std::error_code trouble;
    return std::filesystem::is_regular_file(file, trouble) && access(file.c_str(), X_OK) == 0;
}

bool isInPath(const std::string& program) {
    const char* variable = std::getenv("PATH");
    std::istringstream folders(variable ? variable : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (isProgram(std::filesystem::path(folder) / program)) return true;
    return false;
}

/// The command as it is kept: it is run from other folders than this one.
Result<Launchers::Command, Failure> checkedCommand(const Arguments& arguments) {
    Launchers::Command command = arguments.words;
    for (const std::string& word : command)
        if (!text::isValidUtf8(word)) return failure("COMMAND: not valid UTF-8", Exit::usage);
    std::string& program = command.front();
    if (program.contains('/')) program = absolutePath(program).lexically_normal().string();
    if (program.contains('/') ? !isProgram(program) : !isInPath(program))
        return failure("COMMAND: there is no program " + quotedName(arguments.words.front()) + " to run");
    return command;
}

/// As a shell would be given it.
std::string shellText(const Launchers::Command& command) {
    std::string text;
    for (const std::string& word : command) {
        constexpr std::string_view harmless =
            "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=./:,@%";
        const bool plain = !word.empty() && word.find_first_not_of(harmless) == word.npos;
        std::string shown = printable(word);
        for (std::size_t mark = 0; (mark = shown.find('\'', mark)) != shown.npos; mark += 4)
            shown.replace(mark, 1, R"('\'')");
        text += (text.empty() ? "" : " ") + (plain ? shown : "'" + shown + "'");
    }
    return text;
}

CommandResult report(Output& output, std::string_view what, const std::string& application,
                     const Launchers::Command& command) {
    if (output.json()) {
        JsonLine line;
        line.add("application", application).add("command", command);
        output.value(std::move(line));
    } else {
        output.done(fmt::format("{} {}: {}", what, quotedName(application), shellText(command)));
    }
    return Exit::done;
}

}  // namespace

CommandResult addLauncher(CommandContext& context, const Arguments& arguments) {
    if (!systemHasLaunchers) return failure("launcher: this system starts every application by itself");
    (void)settingsFor(context, arguments);  // says where they cannot be read
    const Result<std::string, Failure> application = workspaceName("APP", arguments.application);
    if (!application) return std::unexpected(application.error());
    if (arguments.words.empty()) return failure("launcher add: COMMAND is required", Exit::usage);
    const Result<Launchers::Command, Failure> command = checkedCommand(arguments);
    if (!command) return std::unexpected(command.error());
    const std::string identifier = text::lowercase(*application);
    if (const Result<void> set = Launchers(context.defaults).set(identifier, *command); !set)
        return couldNot("add a launcher for " + quotedName(identifier), set.error());
    return report(context.output, "Starts", identifier, *command);
}

CommandResult listLaunchers(CommandContext& context, const Arguments& arguments) {
    (void)settingsFor(context, arguments);
    Table table({"APPLICATION", "COMMAND"});
    for (const auto& [application, command] : Launchers(context.defaults).all()) {
        if (context.output.json()) {
            (void)report(context.output, "", application, command);
        } else {
            table.row({{quotedName(application), Style::bold}, {shellText(command)}});
        }
    }
    if (context.output.json()) return Exit::done;
    if (table.empty()) {
        context.output.line("No launchers. quilloctl doctor names applications that need one.");
    } else {
        table.print(context.output);
    }
    return Exit::done;
}

CommandResult removeLaunchers(CommandContext& context, const Arguments& arguments) {
    (void)settingsFor(context, arguments);
    Launchers launchers(context.defaults);
    const auto all = launchers.all();
    std::vector<std::string> names;
    for (const auto& [application, command] : all) names.push_back(application);
    for (const std::string& which : arguments.words) {  // none goes where one is not there
        if (!all.contains(text::lowercase(which)))
            return failure("there is no launcher for " + quotedName(which) + suggestion(which, names));
    }
    for (const std::string& which : arguments.words) {
        const std::string application = text::lowercase(which);
        if (const Result<bool> removed = launchers.remove(application); !removed)
            return couldNot("remove the launcher for " + quotedName(application), removed.error());
        (void)report(context.output, "No longer starts", application, all.at(application));
    }
    return Exit::done;
}

}  // namespace quillo::ctl
