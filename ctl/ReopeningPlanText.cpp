#include "ctl/ReopeningPlanText.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "WindowEngine/restore/CleanSlate.hpp"
#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

/// A location as a person writes it.
std::string location(const Url& url) {
    return printable(url.filePath().value_or(url.string()));
}

JsonLine lineAbout(const ApplicationSnapshot& application) {
    JsonLine line;
    line.add("application", application.name).add("bundleIdentifier", application.bundleIdentifier);
    return line;
}

std::vector<std::string> strings(const std::vector<Url>& urls) {
    std::vector<std::string> result;
    for (const Url& url : urls) result.push_back(url.string());
    return result;
}

void printDocuments(Output& output, const ApplicationSnapshot& application,
                    const std::vector<SavedDocument>& documents, bool opened) {
    for (const SavedDocument& document : documents) {
        if (output.json()) {
            JsonLine line = lineAbout(application);
            line.add("document", document.target.value_or(document.url).string()).add("opened", opened);
            if (!opened) line.add("reason", document.refusal);
            output.value(std::move(line));
        } else if (opened) {
            output.line("  opens   " + location(document.target.value_or(document.url)));
        } else {
            output.line("  " + output.painted(Style::warning, "leaves  ") + location(document.url) + " (" +
                        document.refusal + ")");
        }
    }
}

void printStep(Output& output, const ApplicationSnapshot& application, const AdapterStep& step) {
    if (output.json()) {
        JsonLine line = lineAbout(application);
        line.add("newWindow", step.newWindow).add("urls", strings(step.urls));
        output.value(std::move(line));
        return;
    }
    std::vector<std::string> locations;
    for (const Url& url : step.urls) locations.push_back(location(url));
    output.line(fmt::format("  opens   {}: {}", step.newWindow ? "in a new window" : "in an open window",
                            fmt::join(locations, ", ")));
}

void printMoreWindows(Output& output, const ApplicationSnapshot& application, std::size_t windows) {
    if (windows == 0) return;
    const auto count = static_cast<std::int64_t>(windows);
    if (output.json()) {
        JsonLine line = lineAbout(application);
        line.add("moreWindows", count);
        output.value(std::move(line));
    } else {
        output.line(fmt::format("  asks    for up to {}", counted(count, "more window")));
    }
}

}  // namespace

void printReopening(Output& output, const ApplicationSnapshot& application, const ReopeningPlan& plan) {
    printDocuments(output, application, plan.documents.open, true);
    printDocuments(output, application, plan.documents.refused, false);
    for (const AdapterStep& step : plan.steps) printStep(output, application, step);
    printMoreWindows(output, application, plan.moreWindows);
    if (plan.contextTrouble.empty()) return;
    if (output.json()) {
        JsonLine line = lineAbout(application);
        line.add("reason", plan.contextTrouble);
        output.value(std::move(line));
    } else {
        output.line("  " + output.painted(Style::warning, printable(plan.contextTrouble)));
    }
}

void printLeftOut(Output& output, const RestoreReport::Item& item) {
    const std::string reason(detailOf(item.status).text);
    if (output.json()) {
        JsonLine line;
        line.add("application", item.app)
            .add("bundleIdentifier", item.bundleIdentifier)
            .add("reason", reason);
        output.value(std::move(line));
    } else {
        output.line(output.painted(Style::warning, printable(item.app) + ": " + reason));
    }
}

std::int64_t printCleanSlate(Output& output, Applications& applications, const Workspace& workspace,
                             CleanSlateMode mode) {
    if (mode == CleanSlateMode::keep) return 0;
    const std::vector<RunningApplication> targets =
        Restore::cleanSlateTargets(applications, Restore::identifiersOf(workspace));
    for (const RunningApplication& target : targets) {
        const std::string name = target.localizedName.value_or(*target.bundleIdentifier);
        if (output.json()) {
            JsonLine line;
            line.add("application", name)
                .add("bundleIdentifier", *target.bundleIdentifier)
                .add("cleanSlate", storedValue(mode));
            output.value(std::move(line));
        } else {
            output.line(output.painted(Style::bold, printable(name)) + ": " +
                        (mode == CleanSlateMode::hide ? "would be hidden" : "would be asked to quit"));
        }
    }
    return static_cast<std::int64_t>(targets.size());
}

}  // namespace quillo::ctl
