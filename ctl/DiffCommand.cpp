// diff: the desktop as it is now against a workspace. Changes nothing.
#include <fmt/format.h>

#include <algorithm>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/restore/CleanSlate.hpp"
#include "WindowEngine/restore/RestorePreview.hpp"
#include "ctl/ChangeText.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/RestoreChoice.hpp"

namespace quillo::ctl {
namespace {

/// As diff(1) has it, so that 1 is no failure.
constexpr Exit same = Exit::done, differs = Exit::failed, undecided = Exit::usage;

class Differences {
  public:
    explicit Differences(Output& output) : output_(output) {}

    bool any() const { return any_; }

    /// A saved window that stands otherwise; `reason` where a restore would leave it so.
    void differing(const ApplicationSnapshot& application, const WindowPlan& plan, const WindowChange& change,
                   const std::string& reason) {
        JsonLine line = about("differs", application.name, application.bundleIdentifier);
        line.add("title", windowOf(application, plan).title).add("savedIndex", plan.savedIndex);
        addChange(line, change);
        if (!reason.empty()) line.add("reason", reason);
        tell(std::move(line), Style::warning, "differs", application.name,
             windowLabel(windowOf(application, plan)), reason.empty() ? changeText(change) : reason);
    }
    void missing(const ApplicationSnapshot& application, const WindowPlan& plan) {
        JsonLine line = about("missing", application.name, application.bundleIdentifier);
        line.add("title", windowOf(application, plan).title).add("savedIndex", plan.savedIndex);
        tell(std::move(line), Style::bad, "missing", application.name,
             windowLabel(windowOf(application, plan)), "");
    }
    /// Something else than a window: an application, documents, folders, tabs, desktops.
    void missing(const ApplicationSnapshot& application, std::string_view what) {
        JsonLine line = about("missing", application.name, application.bundleIdentifier);
        line.add("what", what);
        tell(std::move(line), Style::bad, "missing", application.name, what, "");
    }
    void extra(const std::string& application, const std::string& identifier,
               const std::optional<std::string>& title) {
        JsonLine line = about("extra", application, identifier);
        line.add("title", title);
        tell(std::move(line), Style::good, "extra", application, printable(title.value_or("Untitled")), "");
    }

  private:
    static const WindowSnapshot& windowOf(const ApplicationSnapshot& application, const WindowPlan& plan) {
        return application.windows[static_cast<std::size_t>(plan.savedIndex)];
    }
    static JsonLine about(std::string_view difference, std::string_view application,
                          std::string_view identifier) {
        JsonLine line;
        line.add("difference", difference).add("application", application);
        line.add("bundleIdentifier", identifier);
        return line;
    }
    void tell(JsonLine json, Style style, std::string_view difference, std::string_view application,
              std::string_view what, std::string_view detail) {
        any_ = true;
        if (output_.json()) {
            output_.value(std::move(json));
        } else {
            output_.line(fmt::format("{} {}: {}{}{}", output_.painted(style, padded(difference, 7)),
                                     printable(application), what, detail.empty() ? "" : ": ", detail));
        }
    }

    Output& output_;
    bool any_ = false;
};

void compareWindows(Differences& differences, const RestorePreview& preview,
                    const PlannedApplication& application) {
    std::vector<bool> known(application.live.size());
    for (const WindowPlan& plan : application.windows) {
        if (plan.liveIndex) known[static_cast<std::size_t>(*plan.liveIndex)] = true;
        if (!plan.liveIndex) {
            differences.missing(*application.saved, plan);
        } else if (!plan.standsRight()) {
            differences.differing(*application.saved, plan, Restore::changeOf(preview, application, plan),
                                  plan.skipReason);
        }
    }
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (!known[i])
            differences.extra(application.saved->name, application.saved->bundleIdentifier,
                              application.live[i].info.title);
    }
}

void compareApplication(Differences& differences, const RestorePreview& preview,
                        const PlannedApplication& application) {
    const bool runs = application.presence == Presence::running;
    if (!runs && application.windows.empty()) differences.missing(*application.saved, "not running");
    compareWindows(differences, preview, application);
    std::int64_t addresses = 0;
    for (const AdapterStep& step : application.reopening.steps)
        addresses += static_cast<std::int64_t>(step.urls.size());
    if (runs && addresses > 0)
        differences.missing(*application.saved, counted(addresses, "folder or tab", "folders or tabs"));
}

/// Windows of applications that the workspace does not hold, but for those that are never saved.
void compareOthers(Differences& differences, DesktopAccess& desktop, const std::set<std::string>& held,
                   const Capture::Options& options) {
    Applications& applications = desktop.platform.applications;
    const auto neverSaved = Capture::neverSaved(applications, options);
    for (const RunningApplication& other : Restore::cleanSlateTargets(applications, held)) {
        if (neverSaved(*other.bundleIdentifier)) continue;
        for (const LiveWindow& window : Accessibility::windows(desktop, other.pid, true))
            differences.extra(other.localizedName.value_or(*other.bundleIdentifier), *other.bundleIdentifier,
                              window.info.title);
    }
}

CommandResult compare(CommandContext& context, const Arguments& arguments) {
    Result<Found, Failure> found = findWithHistory(context, arguments.workspace);
    if (!found) return std::unexpected(found.error());
    const Workspace whole = found->workspace;
    Workspace& workspace = found->workspace;
    Result<RestoreChoice, Failure> choice = choose(workspace, arguments);
    if (!choice) return std::unexpected(choice.error());
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    DesktopAccess& access = (*desktop)->access();
    Result<Restore::Options, Failure> options =
        chosenPart(context, access.platform.applications, workspace, *std::move(choice), arguments);
    if (!options) return std::unexpected(options.error());
    options->limited = false;  // nothing is opened
    if (const auto chosen = chooseDisplays(context, access, workspace, arguments, *options); !chosen)
        return std::unexpected(chosen.error());
    const std::optional<RestorePreview> preview =
        run(**desktop, Restore::preview(access, workspace.snapshot, *options));
    if (!preview) return failure("cancelled", Exit::cancelled);
    Differences differences(context.output);
    for (const PlannedApplication& application : preview->applications)
        compareApplication(differences, *preview, application);
    if (arguments.only.empty())
        compareOthers(differences, access, options->kept, settingsFor(context, arguments).captureOptions());
    return differences.any() ? differs : same;
}

}  // namespace

CommandResult diffWorkspace(CommandContext& context, const Arguments& arguments) {
    CommandResult result = compare(context, arguments);
    if (!result && result.error().exit == Exit::failed) result.error().exit = undecided;
    return result;
}

}  // namespace quillo::ctl
