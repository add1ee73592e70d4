#include "ctl/CommandLine.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <span>

#include "WindowEngine/support/Text.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/NearestName.hpp"
#include "ctl/SystemLayer.hpp"
#include "settings/Version.hpp"

namespace quillo::ctl {
namespace {

constexpr const char* about =
    "Saves what is open on this desktop as a named workspace and brings it back.\n"
    "A workspace W is given by its name, ignoring case, or by its identifier. plan, diff, restore, show\n"
    "and export take a session of the history too.";

constexpr const char* closing =
    "Exit status: 0 done, 1 failed, 2 usage, 3 done in part (something was skipped or failed),\n"
    "4 the windows of other applications may not be read, 5 plan --exit-code found something to do,\n"
    "130 cancelled. See quilloctl(1).";

constexpr const char* forceHelp = "renew it also from a desktop that may not be the one you want back";

constexpr const char* desktopVariable = "QUILLO_DESKTOP";
constexpr const char* dataDirectoryVariable = "QUILLO_DATA_DIR";

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
    /// A command about several workspaces.
    CLI::App* addForWorkspaces(const std::string& name, const std::string& help, Command command) {
        CLI::App* sub = add(name, help, command);
        sub->add_option("W", arguments().workspaces, "the workspaces, by name or identifier")->required();
        return sub;
    }
    /// A command about one.
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
    app.add_option(
           "--desktop", arguments.desktop,
           fmt::format("the desktop to use: {}, or simulated:FILE for a scene; as {} says unless given",
                       systemDesktopName, desktopVariable))
        ->type_name("DESKTOP");
    // A script's variable that is not set must not mean the person's own workspaces.
    const auto named = [](const std::string& folder) {
        return std::string(folder.empty() ? "no folder is named" : "");
    };
    app.add_option("--data-dir", arguments.dataDirectory,
                   fmt::format("where workspaces are kept; as {} says unless given", dataDirectoryVariable))
        ->type_name("DIR")
        ->check(named, "");
    app.add_flag("--json", arguments.json, "print one JSON value a line");
    app.add_flag("-q,--quiet", arguments.quiet,
                 "say nothing of what went well; results that were asked for stay");
    app.add_flag("--keep-scene", arguments.keepScene,
                 "write what a command changed on a simulated desktop back to its scene FILE");
    app.set_help_flag("-h,--help", "print this help");
    app.set_version_flag("--version", fmt::format("quilloctl {}", versionWithCommit()), "print the version");
}

/// What the command line leaves open. Not by the library, which would not tell where a value is from.
void takeVariable(const char* variable, std::string& value, std::string& isFrom) {
    const char* set = std::getenv(variable);
    if (!value.empty() || set == nullptr || *set == '\0') return;
    value = set;
    isFrom = variable;
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

void addChoice(CLI::App* command, Arguments& arguments) {
    command
        ->add_option(
            "--only", arguments.only,
            "only this application, by name or identifier, or one window of it by title (APP/TITLE) or "
            "number (APP/#2); may be repeated")
        ->type_name("APP")
        ->allow_extra_args(false);
    command
        ->add_option("--except", arguments.except,
                     "all but this application or window, which is left alone; may be repeated")
        ->type_name("APP")
        ->allow_extra_args(false);
}

void addDisplays(CLI::App* command, Arguments& arguments) {
    command->add_flag("--arrange", arguments.arrange,
                      "only move windows that are open: launch, open and hide nothing");
    command
        ->add_option("--display", arguments.displays,
                     "which attached display a saved one is, where identical ones cannot be told apart; may "
                     "be repeated, and is remembered")
        ->type_name("SAVED=PRESENT")
        ->check([](const std::string& pair) {
            const std::size_t sign = pair.find('=');
            const bool whole = sign != pair.npos && sign > 0 && sign + 1 < pair.size();
            return std::string(whole ? "" : "give the saved display, =, and the one that is attached");
        })
        ->allow_extra_args(false);
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
    CLI::Option* update =
        save->add_option("--update", arguments.update, "renew the workspace W, which keeps its name and look")
            ->type_name("W")
            ->excludes(name);
    save->add_flag("--force", arguments.force, forceHelp)->needs(update);
    addAdapters(save, arguments);
    CLI::App* plan = commands.add(
        "plan", "what a restore would do, window by window, and why; changes nothing", planRestore);
    plan->add_option("W", arguments.workspace,
                     "the workspace, by name or identifier; that of the report where --desktop names one");
    plan->add_flag("--exit-code", arguments.exitCode,
                   "end with status 5 where a restore would have something to do");
    addChoice(plan, arguments);
    addAdapters(plan, arguments);
    addCleanSlate(plan, arguments);
    addDisplays(plan, arguments);
    CLI::App* diff = commands.addForWorkspace(
        "diff", "how the desktop differs now; ends with status 0 where it does not, 1 where it does",
        diffWorkspace);
    addChoice(diff, arguments);
    addAdapters(diff, arguments);
    CLI::App* restore = commands.addForWorkspace(
        "restore", "bring a workspace back; one line for each thing done", restoreWorkspace);
    addChoice(restore, arguments);
    addAdapters(restore, arguments);
    addCleanSlate(restore, arguments);
    addDisplays(restore, arguments);
    CLI::Option* wait = restore->add_flag(
        "--wait", arguments.wait, "first wait for the window manager, displays and the accessibility bus");
    restore->add_option("--wait-limit", arguments.waitLimit, "how long at most; 30 unless given")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.0, 3600.0))
        ->needs(wait);
    restore->add_flag("-y,--yes", arguments.yes,
                      "restore also what was not saved on this computer, without asking");
    restore
        ->add_option("--late", arguments.late,
                     "stay on this long, and place windows that open only then; 0 unless given")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.0, 3600.0));
    CLI::App* undo = commands.add(
        "undo", "put everything back as it was before the last restore; what stays is named", undoRestore);
    undo->add_flag("--plan", arguments.planOnly,
                   "say what would be put back and what would stay; changes nothing");
    undo->add_flag("--quit-launched", arguments.quitLaunched,
                   "also ask the applications to quit that the restore launched");
}

void addReport(CommandSet& commands) {
    Arguments& arguments = commands.arguments();
    CLI::App* report = commands.add(
        "report", "write a file that shows a problem, without anybody's titles, paths or addresses",
        reportProblem);
    report->add_option("W", arguments.workspace,
                       "the workspace whose restore it is about; the desktop as it is unless given");
    report->add_option("FILE", arguments.file,
                       "the file to write, or - for standard output; quillo-report.json unless given");
    report->add_flag("--force", arguments.force, "replace an existing file");
    addAdapters(report, arguments);
    addCleanSlate(report, arguments);
}

void addLong(CLI::App* command, Arguments& arguments) {
    command->add_flag("--long", arguments.longList, "with displays, desktops, creation and identifier");
}

void addLibraryCommands(CommandSet& commands) {
    Arguments& arguments = commands.arguments();
    commands.group = "The saved workspaces";
    addLong(commands.add("list", "all workspaces, last saved first", listWorkspaces), arguments);
    commands.addForWorkspace("show", "one workspace; with --json its whole document", showWorkspace);
    commands.addForWorkspace("rename", "give a workspace another name", renameWorkspace)
        ->add_option("NAME", arguments.name, "the new name; numbered when taken")
        ->required();
    commands.addForWorkspace("duplicate", "copy a workspace under a name of its own", duplicateWorkspace);
    commands.addForWorkspaces("delete", "delete workspaces and their backups", deleteWorkspaces);

    CommandSet layout =
        commands.addFamily("layout", "how a workspace stands on each set of displays: list, save, remove");
    layout.group = "Commands";
    layout.addForWorkspace("list", "the sets of displays that the workspace was arranged on", listLayouts);
    layout
        .addForWorkspace("save", "keep how its windows stand now, for the displays that are attached",
                         saveLayout)
        ->add_flag("--force", arguments.force, forceHelp);
    layout.addForWorkspace("remove", "forget the layout of this number", removeLayout)
        ->add_option("NUMBER", arguments.number, "as list prints it")
        ->required();
    commands
        .add("watch", "what becomes of the workspaces, one line for each event, until it is stopped",
             watchEvents)
        ->add_option("--count", arguments.count, "end after so many events")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);

    commands.group = "The last sessions";
    CommandSet history =
        commands.addFamily("history", "the last sessions, kept apart from the workspaces: list, save, clear");
    history.group = "Commands";
    addLong(history.add("list", "all sessions, the last one first", listHistory), arguments);
    addAdapters(history.add("save", "save what is open as the last session, unless nothing has changed",
                            saveToHistory),
                commands.arguments());
    history.add("clear", "delete all sessions", clearHistory);

    commands.group = "Applications without a menu entry";
    CommandSet launcher = commands.addFamily(
        "launcher", "how applications are started that no menu entry starts: add, list, remove");
    launcher.group = "Commands";
    // What follows APP is the command's, also what looks like an option of ours.
    CLI::App* adding = launcher.add(
        "add", "say which COMMAND... starts APP; it is run without a shell, and kept in the settings",
        addLauncher);
    adding->add_option("APP", arguments.application, "the application's identifier, as doctor names it")
        ->required();
    adding->fallthrough(false)->prefix_command()->parse_complete_callback(
        [adding, &arguments] { arguments.words = adding->remaining(); });
    launcher.add("list", "all launchers", listLaunchers);
    launcher.add("remove", "remove the launchers of these applications", removeLaunchers)
        ->add_option("APP", arguments.words, "the applications' identifiers")
        ->required();

    commands.group = "Workspace files";
    const auto addFile = [&arguments](CLI::App* command, const std::string& help) {
        command->add_option("FILE", arguments.file, help)->required();
        return command;
    };
    CLI::App* exporting =
        commands.addForWorkspaces("export", "write each workspace to a file of its own", exportWorkspaces);
    exporting->add_option(
        "FILE", arguments.file,
        "the file to write, a folder for files named after the workspaces, or - for standard output");
    exporting->parse_complete_callback([&arguments] {  // the library gives all of them to W
        if (arguments.workspaces.size() < 2) throw CLI::RequiredError("FILE");
        arguments.file = std::move(arguments.workspaces.back());
        arguments.workspaces.pop_back();
    });
    exporting->add_flag("--force", arguments.force, "replace an existing file");
    addFile(commands.add("import", "add the workspace of a file to the library", importWorkspace),
            "the file to read, or - for standard input");
    addFile(commands.add("validate", "check a workspace file; changes nothing", validateFile),
            "the file to read, or - for standard input");
}

/// Of commands, or of options as they are typed.
std::vector<std::string> namesIn(const CLI::App& app, bool options) {
    std::vector<std::string> names;
    if (options) {
        for (const CLI::Option* option : app.get_options())
            for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    } else {
        for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
            names.push_back(command->get_name());
    }
    return names;
}

/// "; did you mean --json?" after an option, or a command, that neither `last` nor the whole program has.
std::string suggestionFor(const std::string& typed, const CLI::App& app, const CLI::App& last) {
    const bool isOption = typed.starts_with('-');
    std::vector<std::string> names = namesIn(last, isOption);
    const std::vector<std::string> everywhere = namesIn(app, true);
    if (isOption) names.insert(names.end(), everywhere.begin(), everywhere.end());
    return suggestion(typed, names);
}

/// Of the commands that were understood.
const CLI::App& lastCommand(const CLI::App& app) {
    const CLI::App* last = &app;
    while (!last->get_subcommands().empty()) last = last->get_subcommands().front();
    return *last;
}

/// " launcher add", as it is typed behind the program's name.
std::string pathOf(const CLI::App& command) {
    const CLI::App* parent = command.get_parent();
    return parent == nullptr ? "" : pathOf(*parent) + " " + command.get_name();
}

/// "W and NAME are required", of all that the command needs and did not get.
std::string missingArguments(const CLI::App& command) {
    std::vector<std::string> missing;
    for (const CLI::Option* option : command.get_options()) {
        const bool isNeeded = option->get_required() || option->get_name() == "FILE";  // also of export
        if (option->get_positional() && isNeeded && option->count() == 0)
            missing.push_back(option->get_name());
    }
    return fmt::format("{} {} required", fmt::join(missing, " and "), missing.size() == 1 ? "is" : "are");
}

/// What is wrong with the line, in our words where the library's would not name the culprit.
std::string complaint(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& last = lastCommand(app);
    const bool commandIsMissing = !last.get_subcommands([](const CLI::App*) { return true; }).empty();
    const std::vector<std::string> unknown = app.remaining(true);
    const std::string nearest = unknown.empty() ? "" : suggestionFor(unknown.front(), app, last);
    const std::string place = &last == &app ? "" : pathOf(last).substr(1) + ": ";
    const auto kind = static_cast<CLI::ExitCodes>(error.get_exit_code());  // its name may be a command's
    // "--only: 1 required APP missing", of an option at the end of the line.
    const std::string_view told = error.what(), missing = ": 1 required ";
    if (const std::size_t at = told.find(missing);
        kind == CLI::ExitCodes::ArgumentMismatch && at != told.npos) {
        const std::string_view value = told.substr(at + missing.size());
        return fmt::format("{}: no {} is given", told.substr(0, at),
                           value.substr(0, value.find_first_of(": ")));
    }
    if (commandIsMissing && unknown.empty()) return place + "a command is required";
    if (commandIsMissing)
        return place + "there is no command or option " + quotedName(unknown.front()) + nearest;
    const bool isOption = !unknown.empty() && unknown.front().starts_with('-');
    const bool isIncomplete = kind == CLI::ExitCodes::RequiredError;
    if (isIncomplete && !isOption) return place + missingArguments(last);
    if (!isIncomplete && kind != CLI::ExitCodes::ExtrasError) return printable(error.what());
    return place + (isOption ? "there is no option " : "too many arguments, beginning with ") +
           quotedName(unknown.front()) + nearest;
}

/// Help in one form, whichever version of the library prints it: newer ones leave out "Usage:" where they
/// name the command, and break the lines of what comes first and last anew.
class HelpPage : public CLI::Formatter {
  public:
    std::string make_usage(const CLI::App* app, std::string name) const override {
        std::string usage = text::trim(CLI::Formatter::make_usage(app, ""));
        const std::string label = get_label("Usage") + ":";
        if (!name.empty()) usage.insert(std::min(label.size(), usage.size()), " " + name);
        return usage + "\n";
    }
};

std::shared_ptr<HelpPage> helpPage() {
    auto page = std::make_shared<HelpPage>();
    const auto keepLines = [](auto& formatter) {
        if constexpr (requires { formatter.enable_footer_formatting(false); }) {
            formatter.enable_footer_formatting(false);
            formatter.enable_description_formatting(false);
        }
    };
    keepLines(*page);
    return page;
}

/// help COMMAND...: what the command's own --help prints.
Exit printHelp(const CLI::App& app, const std::vector<std::string>& command) {
    const CLI::App* subject = &app;
    std::string before;  // it, as a person types it
    for (const std::string& word : command) {
        const auto inside =
            subject->get_subcommands([&word](const CLI::App* one) { return one->get_name() == word; });
        if (inside.empty()) {
            std::cerr << "quilloctl: help: there is no command " << quotedName(word)
                      << suggestionFor(word, app, *subject) << "\nSee quilloctl --help.\n";
            return Exit::usage;
        }
        before += (before.empty() ? "" : " ") + subject->get_name();
        subject = inside.front();
    }
    std::cout << subject->help(before);
    return Exit::done;
}

/// The library takes "--" behind the last argument that it knows for the end of the command; behind APP of
/// launcher add it means no more than that the command follows, which all that stands there is anyway.
std::vector<std::string> understandable(std::span<const char* const> arguments) {
    std::vector<std::string> words(arguments.begin(), arguments.end());
    for (std::size_t i = 0; i + 3 < words.size(); ++i) {
        if (words[i] != "launcher" || words[i + 1] != "add" || words[i + 3] != "--") continue;
        words.erase(words.begin() + static_cast<std::ptrdiff_t>(i + 3));
        break;
    }
    return words;
}

}  // namespace

std::expected<Invocation, Exit> parseCommandLine(int argumentCount, const char* const* arguments) {
    Invocation invocation;
    CLI::App app(about, "quilloctl");
    app.require_subcommand(1, 1);
    app.fallthrough();
    app.footer(closing);
    app.formatter(helpPage());
    addGlobalOptions(app, invocation.arguments);
    CommandSet commands(app, invocation);
    addDesktopCommands(commands);
    addLibraryCommands(commands);
    commands.group = "Problems";
    addReport(commands);
    commands.group = "";  // unseen
    commands.add("complete", "names for a shell's completion", completeNames)
        ->add_option("KIND", commands.arguments().words, "workspaces, sessions, launchers or applications W");
    std::vector<std::string> topic;
    commands.group = "Help";
    CLI::App* help = commands.add("help", "print help, for all or for one command", nullptr);
    help->add_option("COMMAND", topic, "the command, in one word or two");
    try {
        std::vector<std::string> words =
            understandable({arguments + 1, static_cast<std::size_t>(std::max(argumentCount - 1, 0))});
        std::ranges::reverse(words);  // as the library wants them
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            app.exit(error, std::cout, std::cerr);
            return std::unexpected(Exit::done);
        }
        std::cerr << "quilloctl: " << complaint(app, error) << "\nSee quilloctl" << pathOf(lastCommand(app))
                  << " --help.\n";
        return std::unexpected(Exit::usage);
    }
    if (help->parsed()) {
        app.clear();  // else the help for all is that of the command that was given: of "help"
        return std::unexpected(printHelp(app, topic));
    }
    Arguments& parsed = invocation.arguments;
    takeVariable(desktopVariable, parsed.desktop, parsed.desktopIsFrom);
    takeVariable(dataDirectoryVariable, parsed.dataDirectory, parsed.dataDirectoryIsFrom);
    return invocation;
}

}  // namespace quillo::ctl
