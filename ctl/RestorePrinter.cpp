#include "ctl/RestorePrinter.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "WindowEngine/restore/RestoreWords.hpp"
#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

constexpr std::size_t widestApplication = 24;
constexpr std::size_t widestTitle = 40;

struct StatusLook {
    std::string_view key;  // as --json names it
    Style style = Style::plain;
};

struct LookOf {
    StatusLook operator()(const RestoreReport::createdDesktops&) const { return {"createdDesktops"}; }
    StatusLook operator()(const RestoreReport::opened&) const { return {"opened"}; }
    StatusLook operator()(const RestoreReport::note&) const { return {"note", Style::dim}; }
    StatusLook operator()(const RestoreReport::skipped&) const { return {"skipped", Style::warning}; }
    StatusLook operator()(const RestoreReport::failed&) const { return {"failed", Style::bad}; }
    StatusLook operator()(const RestoreReport::restored&) const { return {"restored", Style::good}; }
    StatusLook operator()(const RestoreReport::adjusted&) const { return {"adjusted", Style::warning}; }
    StatusLook operator()(const RestoreReport::launched&) const { return {"launched"}; }
};

struct AddDetail {
    JsonLine& line;
    void operator()(const RestoreReport::createdDesktops& status) const { line.add("count", status.count); }
    void operator()(const RestoreReport::opened& status) const { line.add("count", status.count); }
    void operator()(const RestoreReport::note& status) const { line.add("text", status.text); }
    void operator()(const RestoreReport::skipped& status) const { line.add("reason", status.reason); }
    void operator()(const RestoreReport::failed& status) const { line.add("reason", status.reason); }
    void operator()(const auto&) const {}
};

std::string title(const RestoreReport::Item& item) {
    if (item.title) return printable(*item.title);
    return item.savedIndex ? "Untitled" : "";
}

std::string totalText(const RestoreReport& report) {
    const RestoreReport::Totals totals = report.totals();
    std::string text = fmt::format("{} restored", totals.restored);
    if (totals.adjusted > 0) text += fmt::format(" ({} adjusted)", totals.adjusted);
    if (totals.createdDesktops > 0) text += " · " + counted(totals.createdDesktops, "desktop") + " created";
    const auto add = [&text](std::int64_t count, std::string_view what) {
        if (count > 0) text += fmt::format(" · {} {}", count, what);
    };
    add(totals.launched, "launched");
    add(totals.opened, "reopened");
    add(totals.skipped, "skipped");
    add(totals.failed, "failed");
    return text + fmt::format(" · {:.1f} s", report.duration);
}

JsonLine totalJson(const RestoreReport& report) {
    const RestoreReport::Totals totals = report.totals();
    JsonLine line;
    line.add("status", "finished")
        .add("restored", totals.restored)
        .add("adjusted", totals.adjusted)
        .add("launched", totals.launched)
        .add("createdDesktops", totals.createdDesktops)
        .add("opened", totals.opened)
        .add("skipped", totals.skipped)
        .add("failed", totals.failed)
        .add("duration", report.duration)
        .add("cancelled", report.cancelled);
    return line;
}

std::string outcome(const RestoreReport& report) {
    const RestoreReport::Totals totals = report.totals();
    if (report.cancelled) return " stopped";
    return totals.failed == 0 && totals.skipped == 0 ? " is back" : " is mostly back";
}

}  // namespace

RestorePrinter::RestorePrinter(Output& output, const Workspace& workspace)
    : output_(output),
      name_(printable(workspace.name)),
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
    } else {
        printText(item);
    }
    if (item.savedIndex) ++windowsDone_;
    showProgress();
}

void RestorePrinter::printText(const RestoreReport::Item& item) {
    output_.line(
        padded(fitted(printable(item.app), applicationWidth_), applicationWidth_) + "  " +
        padded(fitted(title(item), titleWidth_), titleWidth_) + "  " +
        output_.painted(std::visit(LookOf{}, item.status).style, printable(restoreWords(item.status))));
}

void RestorePrinter::printJson(const RestoreReport::Item& item) {
    JsonLine line;
    line.add("application", item.app)
        .add("bundleIdentifier", item.bundleIdentifier)
        .add("title", item.title)
        .add("savedIndex", item.savedIndex)
        .add("status", std::visit(LookOf{}, item.status).key);
    std::visit(AddDetail{line}, item.status);
    output_.value(std::move(line));
}

void RestorePrinter::showProgress() {
    output_.progress(
        fmt::format("Resuming {}… {} of {}", name_, windowsDone_, counted(windowCount_, "window")));
}

void RestorePrinter::end(const RestoreReport& report) {
    if (output_.json()) {
        output_.value(totalJson(report));
    } else {
        output_.line(output_.painted(Style::bold, name_ + outcome(report)) + ": " + totalText(report));
    }
}

}  // namespace quillo::ctl
