#include "app/PreviewWords.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <utility>

#include "WindowEngine/support/Text.hpp"
#include "app/RestoreReasons.hpp"

namespace quillo::PreviewWords {
namespace {

constexpr std::size_t sentenceCharacters = 80;  // of a title within a sentence
constexpr const char* gone = "can't come back";

std::string counted(std::int64_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

/// A reason of the engine's as a restore's panel would say it of this application.
std::string inWords(const ApplicationSnapshot& application, std::string reason) {
    return reasonInWords({.app = application.name,
                          .bundleIdentifier = application.bundleIdentifier,
                          .title = std::nullopt,
                          .status = RestoreReport::skipped{std::move(reason)}});
}

bool isNewDesktop(const RestorePreview& preview, const WindowPlan& plan) {
    return plan.desktop && DesktopSpaces::isPlanned(*plan.desktop) && !preview.desktops.desktops.empty();
}

std::string placeWords(const FromTo<Rect>& frame) {
    const bool moves = frame.from.origin() != frame.to.origin(),
               resizes = frame.from.size() != frame.to.size();
    if (moves && resizes) return "moves and resizes";
    return resizes ? "resizes" : "moves";
}

std::string changeWords(const RestorePreview& preview, const PlannedApplication& application,
                        const WindowPlan& plan) {
    const WindowChange change = Restore::changeOf(preview, application, plan);
    std::vector<std::string> parts;
    if (change.frame) parts.push_back(placeWords(*change.frame));
    if (change.minimized) parts.emplace_back(change.minimized->to ? "minimizes" : "is shown");
    if (change.fullscreen)
        parts.emplace_back(change.fullscreen->to ? "goes full screen" : "leaves full screen");
    if (change.desktop && change.desktop->to)
        parts.push_back(isNewDesktop(preview, plan) ? "to a new desktop"
                                                    : fmt::format("to Desktop {}", *change.desktop->to + 1));
    return parts.empty() ? "stays" : fmt::format("{}", fmt::join(parts, ", "));
}

/// What an awaited window waits for.
std::string awaitedReason(const PlannedApplication& application) {
    if (application.presence == Presence::installed) return "It is placed once its app is open";
    if (application.hangs) return "Its app does not answer at the moment";
    const ReopeningPlan& reopening = application.reopening;
    if (!reopening.documents.open.empty() || !reopening.steps.empty())
        return "It is placed once what is opened has its window";
    return "Its app is asked for another window";
}

std::int64_t openedItems(const ReopeningPlan& reopening) {
    auto count = static_cast<std::int64_t>(reopening.documents.open.size());
    for (const AdapterStep& step : reopening.steps) count += static_cast<std::int64_t>(step.urls.size());
    return count;
}

std::string titled(const std::optional<std::string>& title, const ApplicationSnapshot& application) {
    return text::clipped(title && !title->empty() ? *title : application.name, sentenceCharacters);
}

void addTroubles(std::vector<std::string>& lines, const RestorePreview& preview,
                 const PlannedApplication& application, const std::string& notInstalled) {
    const ApplicationSnapshot& saved = *application.saved;
    if (application.presence == Presence::missing) {
        lines.push_back(inWords(saved, notInstalled));
        return;
    }
    const auto add = [&](const std::optional<std::string>& title, const std::string& reason) {
        lines.push_back(titled(title, saved) + ": " + reason);
    };
    for (const WindowPlan& plan : application.windows) {
        const Forecast forecast = of(preview, application, plan, notInstalled);
        if (forecast.word == gone)
            add(saved.windows[static_cast<std::size_t>(plan.savedIndex)].title, forecast.reason);
    }
    for (const SavedDocument& document : application.reopening.documents.refused)
        add(document.title, "The document is not opened: " + document.refusal);
    if (!application.reopening.contextTrouble.empty())
        add(std::nullopt, application.reopening.contextTrouble);
}

}  // namespace

Forecast of(const RestorePreview& preview, const PlannedApplication& application, const WindowPlan& plan,
            const std::string& notInstalled) {
    switch (Restore::prospectOf(application, plan)) {
        case Prospect::inPlace:
            return {"stays", ""};
        case Prospect::changed:
            return {changeWords(preview, application, plan), ""};
        case Prospect::awaited:
            return {"opens", awaitedReason(application)};
        case Prospect::skipped:
            break;
    }
    if (application.presence == Presence::missing) return {gone, inWords(*application.saved, notInstalled)};
    return {gone, inWords(*application.saved,
                          plan.skipReason.empty() ? "no display is attached" : plan.skipReason)};
}

Forecast of(const PlannedApplication& application, const std::string& notInstalled) {
    if (application.presence == Presence::missing) return {gone, inWords(*application.saved, notInstalled)};
    std::vector<std::string> parts;
    if (application.presence == Presence::installed) parts.emplace_back("is launched");
    if (application.hangs) parts.emplace_back("does not answer");
    if (const std::int64_t items = openedItems(application.reopening); items > 0)
        parts.push_back("opens " + counted(items, "item"));
    if (const std::size_t more = application.reopening.moreWindows; more > 0)
        parts.push_back("asked for " + counted(static_cast<std::int64_t>(more), "window"));
    return {fmt::format("{}", fmt::join(parts, ", ")), application.reopening.contextTrouble};
}

std::vector<std::string> totals(const PlanTotals& totals, CleanSlateMode mode, std::int64_t others) {
    const struct {
        std::int64_t count;
        const char *noun, *one, *several;
    } parts[] = {
        {mode == CleanSlateMode::quit ? others : 0, "other app", "is asked to quit", "are asked to quit"},
        {mode == CleanSlateMode::hide ? others : 0, "other app", "is hidden", "are hidden"},
        {totals.launched, "app", "is launched", "are launched"},
        {totals.createdDesktops, "desktop", "is made", "are made"},
        {totals.opened, "document or tab", "is opened", "are opened"},
        {totals.changed, "window", "changes", "change"},
        {totals.awaited, "window", "opens", "open"},
        {totals.inPlace, "window", "stays as it is", "stay as they are"},
        {totals.skipped + totals.failed, "thing", "can't come back", "can't come back"},
    };
    std::vector<std::string> lines;
    for (const auto& part : parts) {
        if (part.count == 0) continue;
        std::string what = counted(part.count, part.noun);
        if (part.count > 1 && part.noun == std::string_view("document or tab"))
            what = fmt::format("{} documents or tabs", part.count);
        lines.push_back(what + " " + (part.count == 1 ? part.one : part.several));
    }
    if (lines.empty()) lines.emplace_back("There is nothing to bring back");
    return lines;
}

std::vector<std::string> troubles(const RestorePreview& preview, const std::string& notInstalled) {
    std::vector<std::string> lines = preview.desktops.failures;
    for (const RestoreReport::Item& item : preview.scope->leftOut)
        lines.push_back(text::clipped(item.app, sentenceCharacters) + ": " +
                        std::string(detailOf(item.status).text));
    for (const PlannedApplication& application : preview.applications)
        addTroubles(lines, preview, application, notInstalled);
    return lines;
}

}  // namespace quillo::PreviewWords
