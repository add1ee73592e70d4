#include "ctl/RestorePrinter.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <utility>

#include "WindowEngine/restore/RestoreWords.hpp"
#include "ctl/ChangeText.hpp"
#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

constexpr std::size_t widestApplication = 24;
constexpr std::size_t widestTitle = 40;

Style styleOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::remark:
            return Style::dim;
        case Verdict::done:
            return Style::plain;
        case Verdict::back:
            return Style::good;
        case Verdict::differs:
        case Verdict::leftOut:
            return Style::warning;
        case Verdict::failed:
            return Style::bad;
    }
    return Style::plain;
}

std::string title(const RestoreReport::Item& item) {
    if (item.title) return printable(*item.title);
    return item.savedIndex ? "Untitled" : "";
}

bool stoodRight(const RestoreReport::Item& item) {
    return item.change && item.change->none();
}

/// Its line says "in place", and not "restored".
bool saysInPlace(const RestoreReport::Item& item) {
    return stoodRight(item) && outcomeOf(item.status).verdict == Verdict::back;
}

/// "in place", "restored", "skipped: not installed", "hidden".
std::string words(const RestoreReport::Item& item) {
    if (saysInPlace(item)) return "in place";
    std::string words = restoreWords(item);
    // What a clean slate says begins with a capital, and stands inside a line here.
    const std::string_view text = detailOf(item.status).text;
    const bool isCapital = text == "Hidden" || text == "Quit" || text.starts_with("App ");
    if (char& first = words[words.size() - text.size()]; isCapital)
        first = static_cast<char>(std::tolower(static_cast<unsigned char>(first)));
    return words;
}

/// The report's totals, with what stood right already apart from what was restored.
std::string summary(const RestoreReport& report) {
    RestoreReport others = report;
    const auto inPlace = std::erase_if(others.items, saysInPlace);
    std::string totals = restoreSummary(others, true);
    if (inPlace == 0) return totals;
    const std::string_view none = "0 restored";  // which the totals begin with even so
    const bool allInPlace = others.totals().restored == 0;
    return fmt::format("{} in place{}{}", inPlace, allInPlace ? "" : " · ",
                       allInPlace ? std::string_view(totals).substr(none.size()) : std::string_view(totals));
}

/// " (from → to)", or nothing.
std::string changeWords(const RestoreReport::Item& item) {
    return item.change && !stoodRight(item) ? fmt::format(" ({})", changeText(*item.change)) : "";
}

std::int64_t countInPlace(const RestoreReport& report) {
    return std::ranges::count_if(report.items, stoodRight);
}

JsonLine totalJson(const RestoreReport& report) {
    const RestoreTotals totals = report.totals();
    JsonLine line;
    line.add("status", "finished");
    for (const RestoreOutcome& outcome : restoreOutcomes)
        if (outcome.total) line.add(outcome.name, totals.*outcome.total);
    line.add("inPlace", countInPlace(report));
    line.add("duration", report.duration).add("cancelled", report.cancelled);
    return line;
}

}  // namespace

RunWords RunWords::ofRestore(const Workspace& workspace) {
    const std::string name = printable(workspace.name);
    return {"Resuming " + name + "…", name + " is back", name + " is mostly back", name + " stopped"};
}

RestorePrinter::RestorePrinter(Output& output, const Workspace& workspace, RunWords words)
    : output_(output),
      words_(std::move(words)),
      applicationWidth_(columns(ownName)),
      windowCount_(workspace.snapshot.windowCount()) {
    for (const ApplicationSnapshot& application : workspace.snapshot.applications) {
        applicationWidth_ = std::max(applicationWidth_, columns(printable(application.name)));
        for (const WindowSnapshot& window : application.windows) {
            titleWidth_ = std::max(titleWidth_, columns(printable(window.title.value_or("Untitled"))));
        }
    }
    applicationWidth_ = std::min(applicationWidth_, widestApplication);
    titleWidth_ = std::min(titleWidth_, widestTitle);
}

void RestorePrinter::begin() {
    showProgress();
}

void RestorePrinter::item(const RestoreReport::Item& item) {
    if (output_.json()) {
        printJson(item);
    } else if (!output_.quiet() || outcomeOf(item.status).trouble()) {
        printText(item);
    }
    if (item.savedIndex && !item.late) ++windowsDone_;
    showProgress();
}

void RestorePrinter::printText(const RestoreReport::Item& item) {
    const Style style = styleOf(outcomeOf(item.status).verdict);
    output_.line(padded(fitted(printable(item.app), applicationWidth_), applicationWidth_) + "  " +
                 padded(fitted(title(item), titleWidth_), titleWidth_) + "  " +
                 output_.painted(style, printable(words(item))) + printable(changeWords(item)));
}

void RestorePrinter::printJson(const RestoreReport::Item& item) {
    const RestoreDetail detail = detailOf(item.status);
    JsonLine line;
    line.add("application", item.app)
        .add("bundleIdentifier", item.bundleIdentifier)
        .add("title", item.title)
        .add("savedIndex", item.savedIndex)
        .add("status", outcomeOf(item.status).name)
        .add("count", detail.count);
    if (!detail.textName.empty()) line.add(detail.textName, detail.text);
    line.add("late", item.late);
    if (item.change) addChange(line, *item.change);
    output_.value(std::move(line));
}

void RestorePrinter::waiting(std::int64_t windows, double seconds) {
    remark(fmt::format("Waiting up to {:g} s for {} to open; Ctrl-C ends that", seconds,
                       counted(windows, "more window")));
}

void RestorePrinter::waitingEnded() {
    remark("No longer waiting: another restore has begun since, or everything was put back");
}

void RestorePrinter::remark(const std::string& text) {
    if (!output_.json() && !output_.quiet()) output_.line(output_.painted(Style::dim, text));
}

void RestorePrinter::showProgress() {
    output_.progress(fmt::format("{} {} of {}", words_.going, windowsDone_, counted(windowCount_, "window")));
}

void RestorePrinter::end(const RestoreReport& report) {
    if (output_.json()) {
        output_.value(totalJson(report));
    } else {
        const std::string& ending = report.cancelled ? words_.stopped
                                    : report.clean() ? words_.back
                                                     : words_.partly;
        output_.done(output_.painted(Style::bold, ending) + ": " + summary(report) +
                     fmt::format(" · {:.1f} s", report.duration));
    }
}

}  // namespace quillo::ctl
