#include "platform/linux/ApplicationRegistry.hpp"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <unordered_map>

#include "WindowEngine/records/OwnIdentity.hpp"
#include "WindowEngine/support/Text.hpp"
#include "platform/linux/ContentTypes.hpp"
#include "platform/posix/DocumentOnDisk.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;

/// Some toolkits write a path, some a name with its ending.
std::string entryId(std::string_view desktopFile) {
    auto id = std::string(desktopFile.substr(desktopFile.rfind('/') + 1));
    if (id.ends_with(".desktop")) id.resize(id.size() - 8);
    return id;
}

/// What integrates AppImages names their entries appimagekit_<32 digits>-NAME.desktop.
std::string_view withoutPackersPrefix(std::string_view id) {
    constexpr std::string_view prefix = "appimagekit_";
    const auto dash = id.find('-');
    return id.starts_with(prefix) && dash != std::string_view::npos ? id.substr(dash + 1) : id;
}

/// For an application without a .desktop file: what its windows call it.
std::string identifierFromClass(const WindowEvidence& window) {
    return text::lowercase(window.className.empty() ? window.instanceName : window.className);
}

struct Member {
    ProcessID pid = 0;
    std::optional<ProcessInfo> process;
};

bool older(const Member& a, const Member& b) {
    const auto start = [](const Member& member) { return member.process ? member.process->startTicks : 0; };
    return std::pair(start(a), a.pid) < std::pair(start(b), b.pid);
}

/// Quillo's own windows are its own also where it is not installed, and for quilloctl too.
bool isOwn(const WindowEvidence& window) {
    if (window.pid == getpid()) return true;
    if (!text::equalIgnoringCase(window.className, ownName)) return false;
    const std::optional<std::string> program = programOf(window.pid);
    return program && fs::path(*program).filename() == "quillo";
}

}  // namespace

ApplicationRegistry::Verdict ApplicationRegistry::judge(const WindowEvidence& window) const {
    if (isOwn(window)) return {-1, std::string(ownBundleIdentifier)};
    const auto verdict = [](int rank, const DesktopEntry* entry) { return Verdict{rank, entry->id}; };
    if (!window.desktopFile.empty()) {
        if (const auto* entry = entries_.withId(entryId(window.desktopFile))) return verdict(0, entry);
    }
    if (!window.gtkApplicationID.empty()) {
        if (const auto* entry = entries_.withId(window.gtkApplicationID)) return verdict(1, entry);
    }
    if (const auto* identifier = launchedAs(window.pid)) return {2, *identifier};
    for (const auto* name : {&window.className, &window.instanceName}) {
        if (name->empty()) continue;
        if (const auto* entry = entries_.withWindowClass(*name)) {
            // An importer that no menu shows may claim the class of the program that it belongs to.
            const auto* named = entry->shown ? nullptr : shownEntryOf(window.pid, *name);
            return verdict(3, named ? named : entry);
        }
        if (const auto* entry = entries_.withIdIgnoringCase(*name)) return verdict(4, entry);
    }
    if (const auto program = programOf(window.pid)) {
        if (const auto* entry = entries_.withProgram(*program)) return verdict(5, entry);
        if (identifierFromClass(window).empty())
            return {7, text::lowercase(fs::path(*program).filename().string())};
    }
    return {6, identifierFromClass(window)};
}

const DesktopEntry* ApplicationRegistry::shownEntryOf(ProcessID pid, std::string_view name) const {
    const auto program = programOf(pid);
    if (!program || !text::equalIgnoringCase(fs::path(*program).filename().string(), name)) return nullptr;
    return entries_.withProgram(*program);
}

bool ApplicationRegistry::mayBe(const WindowEvidence& window, const std::string& program,
                                const std::set<std::string>& identifiers) {
    const std::string names[] = {entryId(window.desktopFile), window.gtkApplicationID, window.className,
                                 window.instanceName, fs::path(program).filename().string()};
    return std::ranges::any_of(names, [&](const std::string& name) {
        return identifiers.contains(text::lowercase(name)) ||
               identifiers.contains(text::lowercase(withoutPackersPrefix(name)));
    });
}

const std::string* ApplicationRegistry::launchedAs(ProcessID pid) const {
    const auto launch = launches_.find(pid);
    if (launch == launches_.end()) return nullptr;
    const auto process = processInfo(pid);
    const bool same = process && process->startTicks == launch->second.startTicks;
    return same ? &launch->second.identifier : nullptr;
}

void ApplicationRegistry::recordLaunch(ProcessID pid, std::string identifier) {
    if (const auto process = processInfo(pid)) launches_[pid] = {process->startTicks, std::move(identifier)};
}

void ApplicationRegistry::dropEndedLaunches() {
    std::erase_if(launches_, [this](const auto& launch) { return !launchedAs(launch.first); });
}

std::vector<KnownApplication> ApplicationRegistry::applications(const std::vector<WindowEvidence>& windows) {
    entries_.refresh();
    dropEndedLaunches();
    std::unordered_map<ProcessID, Verdict> verdicts;
    std::vector<ProcessID> order;
    for (const auto& window : windows) {
        if (window.pid == 0) continue;
        auto verdict = judge(window);
        const auto [known, isNew] = verdicts.try_emplace(window.pid, verdict);
        if (isNew) order.push_back(window.pid);
        if (verdict.rank < known->second.rank) known->second = std::move(verdict);
    }
    for (const auto& [pid, launch] : launches_) {
        if (verdicts.try_emplace(pid, Verdict{2, launch.identifier}).second) order.push_back(pid);
    }

    std::vector<KnownApplication> applications;
    std::unordered_map<std::string, std::size_t> byIdentifier;
    std::unordered_map<ProcessID, std::size_t> byProcess;
    for (const auto pid : order) {
        const auto& identifier = verdicts[pid].identifier;
        const auto key = identifier.empty() ? "#" + std::to_string(pid) : identifier;
        const auto [place, isNew] = byIdentifier.try_emplace(key, applications.size());
        if (isNew) {
            applications.emplace_back();
            if (!identifier.empty()) applications.back().running.bundleIdentifier = identifier;
        }
        applications[place->second].processes.push_back(pid);
        byProcess[pid] = place->second;
    }
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (windows[i].pid != 0) applications[byProcess[windows[i].pid]].windows.push_back(i);
    }
    for (auto& application : applications) describe(application, windows);
    return applications;
}

void ApplicationRegistry::describe(KnownApplication& application,
                                   std::span<const WindowEvidence> windows) const {
    std::vector<Member> members;
    for (const auto pid : application.processes) members.push_back({pid, processInfo(pid)});
    std::ranges::sort(members, older);
    std::ranges::transform(members, application.processes.begin(), &Member::pid);

    auto& running = application.running;
    running.pid = members.front().pid;
    if (members.front().process) running.launchDate = startInstant(*members.front().process);
    const auto* entry = running.bundleIdentifier ? entries_.withId(*running.bundleIdentifier) : nullptr;
    if (entry) {
        running.localizedName = entry->name;
        running.bundleURL = Url::file(entry->file);
        application.opens = entry->opens;
    } else {
        if (!application.windows.empty()) {
            const auto& window = windows[application.windows.front()];
            running.localizedName = window.className.empty() ? window.instanceName : window.className;
        }
    }
    if (running.localizedName && running.localizedName->empty())
        running.localizedName = running.bundleIdentifier;
    // A panel or a desktop background is no application that a person opens and closes.
    const bool onlyFurniture =
        !application.windows.empty() &&
        std::ranges::none_of(application.windows, [&](std::size_t i) { return !windows[i].isFurniture; });
    running.activationPolicy = onlyFurniture ? ActivationPolicy::accessory : ActivationPolicy::regular;
}

OpenedKinds ApplicationRegistry::opens(const WindowEvidence& window) {
    entries_.refresh();
    const auto* entry = entries_.withId(judge(window).identifier);
    return entry ? entry->opens : OpenedKinds();
}

std::optional<Url> ApplicationRegistry::location(std::string_view identifier) {
    entries_.refresh();
    const auto* entry = entries_.withId(identifier);
    return entry ? std::optional(Url::file(entry->file)) : std::nullopt;
}

std::optional<std::string> ApplicationRegistry::name(std::string_view identifier) {
    entries_.refresh();
    const auto* entry = entries_.withId(identifier);
    return entry ? std::optional(entry->name) : std::nullopt;
}

Result<std::string> ApplicationRegistry::newWindowAction(std::string_view identifier) {
    entries_.refresh();
    const auto* entry = entries_.withId(identifier);
    if (!entry) return fail(ErrorKind::notFound, "The application is not installed.");
    if (entry->singleWindow) return fail(ErrorKind::unavailable, "The application opens one window only.");
    return entry->newWindowAction;
}

DocumentHanding ApplicationRegistry::handing(std::string_view identifier, std::span<const Url> documents) {
    using enum DocumentHanding;
    entries_.refresh();
    const auto* entry = entries_.withId(identifier);
    if (!entry || entry->folderOption || documents.empty()) return together;
    // An editor has an action for a new window where another document alone brings none.
    if (!entry->newWindowAction.empty() && !entry->singleWindow &&
        ContentTypes::declares(entry->types, "text/plain"))
        return intoNewWindows;
    const auto path = documents.front().filePath();
    const auto type = path ? ContentTypes::of(*path) : std::nullopt;
    const auto* opener = type ? entries_.opener(*entry, *type) : nullptr;
    // What takes one document is started anew for each.
    if (!opener || opener->field == 'f' || opener->field == 'u') return together;
    // Several pictures are paged through, and a list of files is what programs take that work through it in
    // one window; those of a window for each document take addresses.
    return opener->field == 'F' || type->starts_with("image/") ? oneByOne : together;
}

std::vector<std::string> ApplicationRegistry::command(std::string_view identifier) {
    entries_.refresh();
    const auto* entry = entries_.withId(identifier);
    return entry ? commandWords(entry->command) : std::vector<std::string>();
}

std::vector<InstalledApplication> ApplicationRegistry::installed() {
    entries_.refresh();
    std::vector<InstalledApplication> applications;
    for (const DesktopEntry& entry : entries_.all()) {
        // Of several files with one id only the first counts.
        if (entry.shown && entries_.withId(entry.id) == &entry)
            applications.push_back({entry.id, entry.name, Url::file(entry.file)});
    }
    return applications;
}

std::optional<std::string> ApplicationRegistry::identifierAt(const Url& location) {
    entries_.refresh();
    // Nothing else carries an identifier, not even an entry's own program: given other arguments it would be
    // another application, and an interpreter any at all. Nor does a .desktop file that lies about somewhere.
    const auto path = location.filePath();
    const auto* entry = path ? entries_.withFile(*path) : nullptr;
    return entry ? std::optional(entry->id) : std::nullopt;
}

Result<ApplicationRegistry::Opening> ApplicationRegistry::opening(std::string_view identifier,
                                                                  const Url& document) {
    entries_.refresh();
    const auto* entry = entries_.withId(identifier);
    if (!entry) return fail(ErrorKind::notFound, "the application is not installed");
    auto openable = openableDocument(document);
    if (!openable) return std::unexpected(std::move(openable.error()));
    const auto type = ContentTypes::of(openable->filePath().value());
    // The one exception from declared types: a terminal takes a folder in a way of its own.
    if (entry->folderOption && type == "inode/directory")
        return Opening{*std::move(openable), entry->file, entry->folderOption};
    const auto* opener = type ? entries_.opener(*entry, *type) : nullptr;
    if (!opener) return fail(ErrorKind::refused, "the application does not say that it opens such documents");
    return Opening{*std::move(openable), opener->file};
}

}  // namespace quillo
