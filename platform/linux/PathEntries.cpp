#include "platform/linux/PathEntries.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <set>

#include "platform/linux/DocumentEvidence.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Call = AccessibilityBus::Call;

constexpr auto restAfterTimeout = 2s;
constexpr std::size_t deepest = 14;           // thunar's entry is eight levels below its window
constexpr std::size_t mostChildren = 64;      // of one object
constexpr std::size_t mostInOneLevel = 1000;  // of all windows

constexpr std::uint32_t textRole = 61, entryRole = 79;  // of AT-SPI's list of roles
/// What holds tool bars and entries. Lists, tables and canvases hold a folder's files: they are not looked
/// at.
constexpr std::array<std::uint32_t, 12> containerRoles{
    11,  // combo box
    20,  // filler
    23,  // frame
    30,  // layered pane
    36,  // option pane
    37,  // page tab
    38,  // page tab list
    39,  // panel
    46,  // root pane
    53,  // split pane
    63,  // tool bar
    69,  // window
};

/// The folder an entry shows. What a person is typing there is no folder of the window: the title tells.
std::optional<std::string> folderShown(const std::string& text, const std::string& title,
                                       const std::string& home) {
    const bool inHome = text == "~" || text.starts_with("~/");
    const auto folder = DocumentEvidence::onDisk(inHome ? home + text.substr(1) : text);
    if (!folder || !folder->isFolder || !folder->path.starts_with('/')) return std::nullopt;
    const bool named = folder->path == "/" || folder->path == home;  // shown under names of their own
    return named || DocumentEvidence::mentions(title, folder->path) ? std::optional(folder->path)
                                                                    : std::nullopt;
}

GVariantPtr owned(GVariant* floating) {
    return GVariantPtr(g_variant_ref_sink(floating));
}

Call nameOf(const Accessible& object) {
    return {.on = object,
            .interface = "org.freedesktop.DBus.Properties",
            .method = "Get",
            .replyType = "(v)",
            .arguments = owned(g_variant_new("(ss)", "org.a11y.atspi.Accessible", "Name"))};
}

Call extentsOf(const Accessible& object) {
    return {.on = object,
            .interface = "org.a11y.atspi.Component",
            .method = "GetExtents",
            .replyType = "((iiii))",
            .arguments = owned(g_variant_new("(u)", 0u))};  // of the screen
}

Call roleOf(const Accessible& object) {
    return {.on = object, .interface = "org.a11y.atspi.Accessible", .method = "GetRole", .replyType = "(u)"};
}

Call textOf(const Accessible& object) {
    return {.on = object,
            .interface = "org.a11y.atspi.Text",
            .method = "GetText",
            .replyType = "(s)",
            .arguments = owned(g_variant_new("(ii)", 0, 4096))};
}

struct Frame {
    Accessible object;
    ProcessID pid = 0;
    std::string name{};
    Point origin{};
    bool taken = false;
};

void describe(Frame& frame, const AccessibilityBus::Reply& name, const AccessibilityBus::Reply& extents) {
    if (name.value) {
        const GVariantPtr boxed(g_variant_get_child_value(name.value.get(), 0));
        const GVariantPtr text(g_variant_get_variant(boxed.get()));
        if (g_variant_is_of_type(text.get(), G_VARIANT_TYPE_STRING))
            frame.name = g_variant_get_string(text.get(), nullptr);
    }
    gint32 x = 0, y = 0, width = 0, height = 0;
    if (extents.value) g_variant_get(extents.value.get(), "((iiii))", &x, &y, &width, &height);
    frame.origin = {double(x), double(y)};
}

/// The frame of this window; where several have its title, the one that stands nearest.
Frame* frameOf(const PathEntries::Window& window, std::vector<Frame>& frames) {
    Frame* best = nullptr;
    const auto distance = [&](const Frame& frame) {
        return std::abs(frame.origin.x - window.frame.x) + std::abs(frame.origin.y - window.frame.y);
    };
    for (auto& frame : frames) {
        if (frame.taken || frame.pid != window.pid || frame.name != window.title) continue;
        if (!best || distance(frame) < distance(*best)) best = &frame;
    }
    if (best) best->taken = true;
    return best;
}

}  // namespace

bool PathEntries::isConnected(const std::string& address, Deadline deadline) {
    if (address == address_ && bus_ && bus_->alive()) return true;
    if (address == address_ && Clock::now() < nextConnect_) return false;
    address_ = address;
    entries_.clear();
    bus_ = AccessibilityBus::connect(address, cancellable_, deadline);
    nextConnect_ = Clock::now() + restAfterTimeout;
    return bus_ != nullptr;
}

bool PathEntries::isKnown(const Accessible& frame) const {
    return std::ranges::any_of(entries_, [&](const auto& entry) { return entry.second.frame == frame; });
}

bool PathEntries::rests(ProcessID pid) const {
    const auto rest = restUntil_.find(pid);
    return rest != restUntil_.end() && Clock::now() < rest->second;
}

std::map<std::uint32_t, std::string> PathEntries::read(const std::vector<Window>& windows,
                                                       const std::string& address, const std::string& home,
                                                       Deadline deadline) {
    Found found;
    leftOpen_ = !windows.empty() && !address.empty();
    if (windows.empty() || !isConnected(address, deadline)) return found;
    leftOpen_ = false;
    std::vector<Candidate> known;
    for (const auto& window : windows) {
        const auto entry = entries_.find(window.number);
        if (entry == entries_.end() || rests(window.pid)) continue;
        if (entry->second.pid == window.pid)
            known.push_back({&window, entry->second.frame, entry->second.object});
        if (entry->second.pid != window.pid) entries_.erase(entry);
    }
    read(known, home, deadline, found);
    std::vector<const Window*> unknown;
    for (const auto& window : windows) {
        if (!entries_.contains(window.number) && !rests(window.pid)) unknown.push_back(&window);
        leftOpen_ |= rests(window.pid);
    }
    const bool searches = Clock::now() >= nextSearch_;
    if (!unknown.empty() && searches) search(unknown, home, deadline, found);
    leftOpen_ |= (!unknown.empty() && !searches) || Clock::now() >= deadline;
    return found;
}

void PathEntries::startAnew() {
    restUntil_.clear();
    nextConnect_ = nextSearch_ = {};
}

void PathEntries::read(const std::vector<Candidate>& candidates, const std::string& home, Deadline deadline,
                       Found& found) {
    std::vector<Call> calls;
    for (const auto& candidate : candidates) calls.push_back(textOf(candidate.object));
    const auto replies = bus_->callAll(std::move(calls), deadline);
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto& [window, frame, object] = candidates[i];
        if (replies[i].timedOut) {
            restUntil_[window->pid] = Clock::now() + restAfterTimeout;
        } else if (!replies[i].value) {
            entries_.erase(window->number);
        } else if (!found.contains(window->number)) {
            const char* text = nullptr;
            g_variant_get(replies[i].value.get(), "(&s)", &text);
            const auto folder = folderShown(text, window->title, home);
            if (!folder) continue;
            found[window->number] = *folder;
            entries_[window->number] = {window->pid, frame, object};
        }
    }
}

void PathEntries::search(const std::vector<const Window*>& windows, const std::string& home,
                         Deadline deadline, Found& found) {
    const auto began = Clock::now();
    auto searches = framesOf(windows, deadline);
    for (std::size_t depth = 0; depth < deepest && !searches.empty(); ++depth) {
        const auto candidates = descend(searches, deadline);
        if (!candidates.empty()) read(candidates, home, deadline, found);
        std::erase_if(searches, [&](const Search& one) {
            return one.level.empty() || found.contains(one.window->number) || rests(one.window->pid);
        });
    }
    // Windows without such an entry are searched again and again: never for more than a tenth of the time.
    nextSearch_ = Clock::now() + 10 * (Clock::now() - began);
}

std::vector<PathEntries::Search> PathEntries::framesOf(const std::vector<const Window*>& windows,
                                                       Deadline deadline) {
    std::set<ProcessID> wanted;
    for (const auto* window : windows) wanted.insert(window->pid);
    std::vector<Accessible> applications;
    std::vector<ProcessID> owners;
    for (const auto& [application, pid] : bus_->applications(deadline)) {
        if (!wanted.contains(pid)) continue;
        applications.push_back(application);
        owners.push_back(pid);
    }
    std::vector<Frame> frames;
    std::vector<Call> calls;
    const auto children = bus_->children(applications, deadline);
    for (std::size_t i = 0; i < children.size(); ++i) {
        for (const auto& child : children[i])
            frames.push_back({.object = child, .pid = owners[i], .taken = isKnown(child)});
    }
    for (const auto& frame : frames) {
        calls.push_back(nameOf(frame.object));
        calls.push_back(extentsOf(frame.object));
    }
    const auto replies = bus_->callAll(std::move(calls), deadline);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (replies[2 * i].timedOut) restUntil_[frames[i].pid] = Clock::now() + restAfterTimeout;
        describe(frames[i], replies[2 * i], replies[2 * i + 1]);
    }
    std::vector<Search> searches;
    for (const auto* window : windows) {
        if (const auto* frame = frameOf(*window, frames))
            searches.push_back({window, frame->object, {frame->object}});
    }
    return searches;
}

std::vector<PathEntries::Candidate> PathEntries::descend(std::vector<Search>& searches, Deadline deadline) {
    std::vector<Call> calls;
    for (const auto& search : searches) {
        for (const auto& object : search.level) calls.push_back(roleOf(object));
    }
    if (calls.size() > mostInOneLevel) {
        searches.clear();
        return {};
    }
    const auto replies = bus_->callAll(std::move(calls), deadline);
    auto reply = replies.begin();
    std::vector<Candidate> candidates;
    for (auto& search : searches) {
        std::vector<Accessible> containers;
        for (const auto& object : search.level) {
            guint32 role = 0;
            if (reply->timedOut) restUntil_[search.window->pid] = Clock::now() + restAfterTimeout;
            if (reply->value) g_variant_get(reply->value.get(), "(u)", &role);
            ++reply;
            if (role == textRole || role == entryRole)
                candidates.push_back({search.window, search.frame, object});
            if (std::ranges::find(containerRoles, role) != containerRoles.end()) containers.push_back(object);
        }
        search.level.clear();
        for (auto& children : bus_->children(containers, deadline)) {
            children.resize(std::min(children.size(), mostChildren));
            std::ranges::move(children, std::back_inserter(search.level));
        }
    }
    return candidates;
}

}  // namespace quillo
