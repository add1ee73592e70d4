// watch: what becomes of the workspaces, as it happens. The library is watched itself, so that this works
// without the application; its restores it tells of where it runs.
#include <fmt/format.h>

#include <algorithm>

#include "WindowEngine/library/DirectoryWatch.hpp"
#include "WindowEngine/library/LibraryChanges.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/Interrupt.hpp"

namespace quillo::ctl {
namespace {

std::string_view nameOf(LibraryChange::Kind kind) {
    switch (kind) {
        case LibraryChange::Kind::saved:
            return "saved";
        case LibraryChange::Kind::renamed:
            return "renamed";
        case LibraryChange::Kind::deleted:
            return "deleted";
        case LibraryChange::Kind::restored:
            return "restored";
    }
    return "";
}

std::string_view nameOf(RestoreEvent::Kind kind) {
    switch (kind) {
        case RestoreEvent::Kind::started:
            return "restoreStarted";
        case RestoreEvent::Kind::progressed:
            return "restoreProgress";
        case RestoreEvent::Kind::ended:
            return "restoreEnded";
    }
    return "";
}

/// What it came to, for people: "2 restored, 1 failed".
std::string totalsText(const RestoreEvent& event) {
    std::string text = event.cancelled ? "stopped" : "";
    for (const auto& [name, count] : event.totals)
        if (count > 0) text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, printable(name));
    return text;
}

class Watcher {
  public:
    Watcher(CommandContext& context, std::optional<std::int64_t> most) : context_(context), most_(most) {}

    bool over() const { return context_.output.readerLeft() || (most_ && told_ >= *most_); }

    void begin(std::vector<LibraryEntry> known) {
        known_ = std::move(known);
        const auto count = static_cast<std::int64_t>(known_.size());
        JsonLine line = event("watching");
        line.add("workspaces", count);
        print(std::move(line), "watching", counted(count, "workspace"), "");
    }
    /// A library that cannot be listed now has lost nothing, as far as anybody knows.
    void look() {
        const WorkspaceScanResult found = context_.store.scan();
        if (found.failure) return;
        std::vector<LibraryEntry> now = entriesOf(found.workspaces);
        for (const LibraryChange& change : changesBetween(known_, now)) tell(change);
        known_ = std::move(now);
    }
    void tell(const RestoreEvent& told) {
        if (over()) return;
        const bool progressed = told.kind == RestoreEvent::Kind::progressed;
        JsonLine line = event(nameOf(told.kind));
        line.add("id", told.id);
        if (!progressed) line.add("name", told.name);
        if (progressed) line.add("windowsDone", told.windowsDone);
        if (told.kind != RestoreEvent::Kind::ended) line.add("windows", told.windows);
        if (told.kind == RestoreEvent::Kind::ended) {
            for (const RestoreOutcome& outcome : restoreOutcomes) addTotal(line, told, outcome);
            line.add("cancelled", told.cancelled);
        }
        ++told_;
        print(std::move(line), nameOf(told.kind), progressed ? nameKnownAs(told.id) : quotedName(told.name),
              progressed ? fmt::format("{} of {}", told.windowsDone, counted(told.windows, "window"))
                         : totalsText(told));
    }

  private:
    static JsonLine event(std::string_view name) {
        JsonLine line;
        line.add("event", name).add("at", now());
        return line;
    }
    /// Only those that are documented: the other process may be of another version.
    static void addTotal(JsonLine& line, const RestoreEvent& told, const RestoreOutcome& outcome) {
        const auto found = std::ranges::find(told.totals, outcome.name,
                                             [](const auto& one) { return std::string_view(one.first); });
        if (outcome.total && found != told.totals.end()) line.add(outcome.name, found->second);
    }
    std::string nameKnownAs(const std::string& id) const {
        const auto found =
            std::ranges::find(known_, id, [](const LibraryEntry& entry) { return entry.id.lower(); });
        return quotedName(found != known_.end() ? found->name : id);
    }
    void tell(const LibraryChange& change) {
        if (over()) return;
        JsonLine line = event(nameOf(change.kind));
        line.add("id", change.id.lower()).add("name", change.name).add("formerName", change.formerName);
        ++told_;
        print(std::move(line), nameOf(change.kind), quotedName(change.name),
              change.formerName ? "was " + quotedName(*change.formerName) : "");
    }
    void print(JsonLine line, std::string_view name, const std::string& subject, const std::string& more) {
        constexpr std::size_t nameWidth = 15;
        if (context_.output.json()) return context_.output.value(std::move(line));
        context_.output.line(context_.output.painted(Style::dim, dateText(now())) + "  " +
                             padded(name, nameWidth) + "  " + subject + (more.empty() ? "" : "  " + more));
    }

    CommandContext& context_;
    std::optional<std::int64_t> most_;
    std::int64_t told_ = 0;
    std::vector<LibraryEntry> known_;
};

}  // namespace

CommandResult watchEvents(CommandContext& context, const Arguments& arguments) {
    LoopExecutor loop;
    Watcher watcher(context, arguments.count);
    DirectoryWatch watch(loop, context.files, context.store.directory(), [&] {
        watch.look();
        watcher.look();
    });
    watch.look();  // before the library is read: what changes in between is seen
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    bool interrupted = false;
    const Interrupt interrupt(loop, [&interrupted] { interrupted = true; });
    const std::unique_ptr<RestoreEvents> restores =
        context.listenToRestores(loop, [&watcher](const RestoreEvent& event) { watcher.tell(event); });
    watcher.begin(entriesOf(*workspaces));
    loop.runUntil([&] { return interrupted || watcher.over(); }, Duration::max());
    return interrupted ? Exit::cancelled : Exit::done;
}

}  // namespace quillo::ctl
