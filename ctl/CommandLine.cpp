#include "ctl/CommandLine.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <iostream>

#include "ctl/HumanText.hpp"
#include "ctl/SystemLayer.hpp"

namespace quillo::ctl {
namespace {

constexpr const char* version = "quilloctl " QUILLO_VERSION;

constexpr const char* about =
    "Saves what is open on this desktop as a named workspace and brings it back.\n"
    "A workspace W is given by its name, ignoring case, or by its identifier. plan, restore, show\n"
    "and export take a session of the history too.";

constexpr const char* closing =
    "Exit status: 0 done, 1 failed, 2 usage, 3 done in part (something was skipped or failed),\n"
    "4 the windows of other applications may not be read, 130 cancelled. See quilloctl(1).";

/// Adds commands that share one Invocation.
class CommandSet {
  public:
    CommandSet(CLI::App& app, Invocation& invocation) : app_(app), invocation_(invocation) {}

    CLI::App* add(const std::string& name, const std::string& help, Command command) {
        CLI::App* sub = app_.add_subcommand(name, help)->group(group);
        Invocation* invocation = &invocation_;
        sub->callback([invocation, command] { invocation->command = command; });
        return sub;
    }
    /// A command that is only the first word of the commands added to what it gives.
    CommandSet addFamily(const std::string& name, const std::string& help) {
        CLI::App* family = app_.add_subcommand(name, help)->group(group)->require_subcommand(1, 1);
        return CommandSet(*family, invocation_);
    }
    /// A command about one workspace.
    CLI::App* addForWorkspace(const std::string& name, const std::string& help, Command command) {
        CLI::App* sub = add(name, help, command);
        sub->add_option("W", arguments().workspace, "the workspace, by name or identifier")->required();
        return sub;
    }
    Arguments& arguments() { return invocation_.arguments; }

    std::string group;

  private:
    CLI::App& app_;
    Invocation& invocation_;
};

void addGlobalOptions(CLI::App& app, Arguments& arguments) {
    app.add_option("--desktop", arguments.desktop,
                   fmt::format("the desktop to use: {}, or simulated:FILE for a scene", systemDesktopName))
        ->envname("QUILLO_DESKTOP");
    app.add_option("--data-dir", arguments.dataDirectory, "where workspaces are kept")
        ->envname("QUILLO_DATA_DIR");
    app.add_flag("--json", arguments.json, "print one JSON value a line");
    app.add_flag("--keep-scene", arguments.keepScene,
                 "write what a command changed on a simulated desktop back to its scene FILE");
    app.set_help_flag("-h,--help", "print this help");
    app.set_version_flag("--version", version, "print the version");
}

void addAdapters(CLI::App* command, Arguments& arguments) {
    command
        ->add_option(
            "--adapter", arguments.adapters,
            "an integration to use besides those that are on in the settings: finder, chromium, safari "
            "or firefox; may be repeated")
        ->type_name("ID")
        ->check(CLI::IsMember({"finder", "chromium", "safari", "firefox"}))
        ->allow_extra_args(false);
}

void addCleanSlate(CLI::App* command, Arguments& arguments) {
    command
        ->add_option("--clean-slate", arguments.cleanSlate,
                     "what becomes of other applications first: keep, hide or quit; as the workspace says "
                     "unless given")
        ->type_name("MODE")
        ->check(CLI::IsMember({"keep", "hide", "quit"}));
}

void addDesktopCommands(CommandSet& commands) {
    Arguments& arguments = commands.arguments();
    commands.group = "The desktop as it is";
    commands.add("doctor", "what works on this machine and, where something does not, why", doctor);
    commands.add("windows", "the windows that a save would record", showWindows);
    commands.add("displays", "the attached displays", showDisplays);

    commands.group = "Saving and restoring";
    CLI::App* save =
        commands.add("save", "save what is open as a new workspace, or renew one", saveWorkspace);
    CLI::Option* name =
        save->add_option("NAME", arguments.name, "the new workspace's name; numbered when taken");
    save->add_option("--update", arguments.update, "renew the workspace W, which keeps its name and look")
        ->type_name("W")
        ->excludes(name);
    addAdapters(save, arguments);
    CLI::App* plan = commands.addForWorkspace(
        "plan", "what a restore would do, window by window, and why; changes nothing", planRestore);
    addAdapters(plan, arguments);
    addCleanSlate(plan, arguments);
    CLI::App* restore = commands.addForWorkspace(
        "restore", "bring a workspace back; one line for each thing done", restoreWorkspace);
    restore
        ->add_option("--only", arguments.only,
                     "only this application, by name or identifier; may be repeated")
        ->type_name("APP")
        ->allow_extra_args(false);
    addAdapters(restore, arguments);
    addCleanSlate(restore, arguments);
    restore->add_flag("-y,--yes", arguments.yes,
                      "restore also what was not saved on this computer, without asking");
}

void addLibraryCommands(CommandSet& commands) {
    Arguments& arguments = commands.arguments();
    commands.group = "The saved workspaces";
    commands.add("list", "all workspaces, last saved first", listWorkspaces);
    commands.addForWorkspace("show", "one workspace; with --json its whole document", showWorkspace);
    commands.addForWorkspace("rename", "give a workspace another name", renameWorkspace)
        ->add_option("NAME", arguments.name, "the new name; numbered when taken")
        ->required();
    commands.addForWorkspace("duplicate", "copy a workspace under a name of its own", duplicateWorkspace);
    commands.addForWorkspace("delete", "delete a workspace and its backup", deleteWorkspace);

    commands.group = "The last sessions";
    CommandSet history =
        commands.addFamily("history", "the last sessions, kept apart from the workspaces: list, save, clear");
    history.group = "Commands";
    history.add("list", "all sessions, the last one first", listHistory);
    addAdapters(history.add("save", "save what is open as the last session, unless nothing has changed",
                            saveToHistory),
                commands.arguments());
    history.add("clear", "delete all sessions", clearHistory);

    commands.group = "Workspace files";
    const auto addFile = [&arguments](CLI::App* command, const std::string& help) {
        command->add_option("FILE", arguments.file, help)->required();
        return command;
    };
    addFile(commands.addForWorkspace("export", "write a workspace to a file of its own", exportWorkspace),
            "the file to write")
        ->add_flag("--force", arguments.force, "replace an existing file");
    addFile(commands.add("import", "add the workspace of a file to the library", importWorkspace),
            "the file to read");
    addFile(commands.add("validate", "check a workspace file; changes nothing", validateFile),
            "the file to read");
}

/// What is wrong with the line, in our words where the library's would not name the culprit.
std::string complaint(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App* last = &app;  // of the commands that were understood
    while (!last->get_subcommands().empty()) last = last->get_subcommands().front();
    const bool commandIsMissing = !last->get_subcommands([](const CLI::App*) { return true; }).empty();
    if (!commandIsMissing) return error.what();
    const std::string family = last == &app ? "" : last->get_name() + ": ";
    const std::vector<std::string> unknown = app.remaining(true);
    if (unknown.empty()) return family + "a command is required";
    return family + "there is no command or option " + printable(unknown.front());
}

}  // namespace

std::expected<Invocation, Exit> parseCommandLine(int argumentCount, const char* const* arguments) {
    Invocation invocation;
    CLI::App app(about, "quilloctl");
    app.require_subcommand(1, 1);
    app.fallthrough();
    app.footer(closing);
    addGlobalOptions(app, invocation.arguments);
    CommandSet commands(app, invocation);
    addDesktopCommands(commands);
    addLibraryCommands(commands);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            app.exit(error, std::cout, std::cerr);
            return std::unexpected(Exit::done);
        }
        std::cerr << "quilloctl: " << complaint(app, error) << "\nSee quilloctl --help.\n";
        return std::unexpected(Exit::usage);
    }
    return invocation;
}

}  // namespace quillo::ctl
