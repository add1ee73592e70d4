#include "platform/macos/MacWindowServer.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <map>

#include "WindowEngine/desktop/Displays.hpp"
#include "platform/macos/CFValues.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr std::string_view dock = "com.apple.dock", overviewPart = "mc";
constexpr Duration overviewOpens = 1s;  // at most, from the request until accessibility shows it

std::optional<Rect> boundsFrom(CFTypeRef dictionary) {
    CGRect rect{};
    if (!dictionary || CFGetTypeID(dictionary) != CFDictionaryGetTypeID() ||
        !CGRectMakeWithDictionaryRepresentation(static_cast<CFDictionaryRef>(dictionary), &rect))
        return std::nullopt;
    return Rect{rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

std::optional<WindowListEntry> entryFrom(CFTypeRef dictionary) {
    const auto pid = cf::integerAs<ProcessID>(cf::lookup(dictionary, kCGWindowOwnerPID));
    const auto layer = cf::integerAs<std::int32_t>(cf::lookup(dictionary, kCGWindowLayer));
    const auto number = cf::integerAs<WindowNumber>(cf::lookup(dictionary, kCGWindowNumber));
    const auto bounds = boundsFrom(cf::lookup(dictionary, kCGWindowBounds));
    if (!pid || !layer || !number || !bounds) return std::nullopt;
    return WindowListEntry{
        .ownerPid = *pid, .layer = *layer, .number = *number, .bounds = *bounds, .process = *pid};
}

std::vector<WindowListEntry> listedWindows() {
    const auto list = CFRef<CFArrayRef>::created(CGWindowListCopyWindowInfo(
        kCGWindowListOptionAll | kCGWindowListExcludeDesktopElements, kCGNullWindowID));
    std::vector<WindowListEntry> entries;
    for (const CFTypeRef dictionary : cf::items(list.get())) {
        if (const auto entry = entryFrom(dictionary)) entries.push_back(*entry);
    }
    return entries;
}

/// Under which pid Applications presents the application of a process. Each question costs a look at all that
/// run: most owners stand in the list of applications, and the others are asked about once.
class Owners {
  public:
    explicit Owners(Applications& applications) : applications_(applications) {
        for (const auto& application : applications.running())
            known_.emplace(application.pid, application.pid);
    }

    ProcessID presented(ProcessID pid) {
        const auto [known, isNew] = known_.try_emplace(pid, pid);
        if (!isNew) return known->second;
        if (const auto application = applications_.running(pid)) known->second = application->pid;
        return known->second;
    }

  private:
    Applications& applications_;
    std::map<ProcessID, ProcessID> known_;
};

/// The kinds of spaces, each asked for once.
class SpaceKinds {
  public:
    explicit SpaceKinds(const SkyLight& skyLight) : skyLight_(skyLight) {}

    bool isFullScreen(SpaceID space) {
        const auto known = known_.find(space);
        if (known != known_.end()) return known->second == SpaceKind::fullScreen;
        return (known_[space] = ask(space)) == SpaceKind::fullScreen;
    }

  private:
    SpaceKind ask(SpaceID space) {
        if (const auto kind = skyLight_.kindOf(space)) return *kind;
        if (!displays_) displays_ = skyLight_.displays();
        for (const auto& display : *displays_) {
            const auto listed = std::ranges::find(display.spaces, space, &Space::id);
            if (listed != display.spaces.end()) return listed->kind;
        }
        return SpaceKind::standard;
    }

    const SkyLight& skyLight_;
    std::map<SpaceID, SpaceKind> known_;
    std::optional<std::vector<skyLight::ManagedDisplay>> displays_;
};

/// The display of the window server's that is this one of ours; null when there is none. Where displays share
/// their spaces there is one for all of them.
const skyLight::ManagedDisplay* managed(const std::vector<skyLight::ManagedDisplay>& displays,
                                        std::string_view displayID, bool isPrimary) {
    const auto named = [&](std::string_view identifier) {
        const auto found = std::ranges::find(displays, identifier, &skyLight::ManagedDisplay::identifier);
        return found == displays.end() ? nullptr : &*found;
    };
    if (const auto* own = named(displayID)) return own;
    return isPrimary || displays.size() == 1 ? named(skyLight::sharedDisplay) : nullptr;
}

Capability lacking(const char* function, std::string_view purpose) {
    return Capability::unavailable("This version of macOS offers no way to " + std::string(purpose) + " (" +
                                   function + " is missing).");
}

bool namesOverview(const Attribute& identifier) {
    const auto* name = identifier ? std::get_if<std::string>(&*identifier) : nullptr;
    return name && name->starts_with(overviewPart);
}

}  // namespace

std::vector<WindowListEntry> MacWindowServer::windowList() {
    Owners owners(neighbours_.applications);
    std::vector<WindowListEntry> entries = listedWindows();
    for (WindowListEntry& entry : entries) entry.ownerPid = owners.presented(entry.ownerPid);
    return entries;
}

std::vector<DisplaySpaces> MacWindowServer::displaySpaces() {
    const auto managedDisplays = skyLight_.displays();
    std::vector<DisplaySpaces> displays;
    if (managedDisplays.empty()) return displays;
    bool isPrimary = true;
    for (const Screen& screen : neighbours_.screens.screens()) {
        std::string id = Displays::identifier(screen);
        const auto* found = managed(managedDisplays, id, std::exchange(isPrimary, false));
        if (found) displays.push_back({std::move(id), found->spaces});
    }
    return displays;
}

std::vector<WindowFacts> MacWindowServer::facts(std::span<const WindowNumber> numbers) {
    SpaceKinds kinds(skyLight_);
    std::vector<WindowFacts> all;
    all.reserve(numbers.size());
    for (const WindowNumber number : numbers) {
        WindowFacts& facts = all.emplace_back();
        if (number == kCGNullWindowID) continue;
        facts.spaces = skyLight_.spacesOf(number);
        const auto traits = skyLight_.traitsOf(number);
        // Where accessibility numbers no window, those it lists cannot be told from those it does not: each
        // would be captured a second time.
        facts.isStandard = elementsHaveNumbers_ && traits && skyLight::isStandard(*traits);
        facts.isFullscreen =
            std::ranges::any_of(facts.spaces, [&](SpaceID space) { return kinds.isFullScreen(space); });
    }
    return all;
}

Capability MacWindowServer::spaces() {
    if (const char* function = skyLight_.missingForSpaces()) return lacking(function, "read desktops");
    if (const char* function = bridge_ ? nullptr : skyLight_.missingForMoves())
        return lacking(function, "move windows between desktops");
    return Capability::available();
}

Capability MacWindowServer::desktopCreation() {
    if (const Capability reading = spaces(); !reading) return reading;
    if (const char* function = skyLight_.missingForOverview())
        return lacking(function, "open Mission Control, which creates desktops");
    return Capability::available();
}

bool MacWindowServer::isAnimating(std::string_view displayID) {
    const auto displays = skyLight_.displays();
    const auto screens = neighbours_.screens.screens();
    const bool isPrimary = !screens.empty() && Displays::identifier(screens.front()) == displayID;
    const auto* display = managed(displays, displayID, isPrimary);
    return skyLight_.isAnimating(display ? std::string_view(display->identifier) : displayID);
}

Result<void> MacWindowServer::moveWindow(WindowNumber number, SpaceID space) {
    if (const Capability can = spaces(); !can) return fail(ErrorKind::unavailable, can.reason());
    if (!isDesktop(space))
        return fail(ErrorKind::invalidArgument, "there is no desktop " + std::to_string(space));
    if (!isKnown(number)) return fail(ErrorKind::notFound, "the window is gone");
    const std::array ways{
        +[](const MacWindowServer& server, WindowNumber window, SpaceID target) {
            return server.bridge_ && server.bridge_(window, target);
        },
        +[](const MacWindowServer& server, WindowNumber window, SpaceID target) {
            return server.skyLight_.moveManaged(window, target);
        },
        +[](const MacWindowServer& server, WindowNumber window, SpaceID target) {
            return server.skyLight_.moveThroughWorkspace(window, target);
        },
    };
    bool asked = false;
    for (const auto& way : ways) {
        asked = way(*this, number, space) || asked;
        if (asked && standsOn(number, space)) break;
    }
    if (!asked) return fail(ErrorKind::refused, "the window server did not take the request");
    return {};
}

bool MacWindowServer::standsOn(WindowNumber number, SpaceID space) const {
    const auto spaces = skyLight_.spacesOf(number);
    return std::ranges::find(spaces, space) != spaces.end();
}

/// A tab behind another is a window without a space of its own.
bool MacWindowServer::isKnown(WindowNumber number) const {
    if (!skyLight_.spacesOf(number).empty()) return true;
    const auto listed = listedWindows();
    return std::ranges::find(listed, number, &WindowListEntry::number) != listed.end();
}

bool MacWindowServer::isDesktop(SpaceID space) const {
    for (const auto& display : skyLight_.displays()) {
        const auto found = std::ranges::find(display.spaces, space, &Space::id);
        if (found != display.spaces.end()) return found->kind == SpaceKind::standard;
    }
    return false;
}

Result<void> MacWindowServer::createDesktop(std::string_view) {
    return fail(ErrorKind::unavailable, "Mission Control creates desktops, not the window server");
}

/// The Dock's process shows the overview: while it does, a part of that stands among its elements.
bool MacWindowServer::overviewShows() {
    constexpr double messagingTimeout = 1.0;  // seconds
    constexpr std::array childrenName{ax::children}, identifierName{ax::identifier};
    AccessibilityService& accessibility = neighbours_.accessibility;
    const auto pid = neighbours_.applications.serviceProcess(dock);
    if (!pid) return false;
    const Element application = accessibility.application(*pid);
    accessibility.setMessagingTimeout(application, messagingTimeout);
    const AttributeRequest request{application, childrenName};
    const Attribute children = accessibility.read({&request, 1}).front().front();
    const auto* parts = children ? std::get_if<std::vector<Element>>(&*children) : nullptr;
    if (!parts) return false;
    std::vector<AttributeRequest> requests;
    for (const Element& part : *parts) {
        accessibility.setMessagingTimeout(part, messagingTimeout);
        requests.push_back({part, identifierName});
    }
    return std::ranges::any_of(accessibility.read(requests),
                               [](const auto& answer) { return namesOverview(answer.front()); });
}

/// The notification opens the overview and closes it, whichever it finds.
bool MacWindowServer::openOverview() {
    if (isOverviewOpening() || overviewShows()) return true;
    if (!skyLight_.toggleOverview()) return false;
    overviewAskedFor_ = neighbours_.executor.now();
    return true;
}

/// Nothing where it was not opened here, or the person has closed it meanwhile: it would open again.
void MacWindowServer::closeOverview() {
    if (!overviewAskedFor_) return;
    if (isOverviewOpening() || overviewShows()) skyLight_.toggleOverview();
    overviewAskedFor_.reset();
}

bool MacWindowServer::isOverviewOpening() const {
    return overviewAskedFor_ && neighbours_.executor.now() - *overviewAskedFor_ < overviewOpens;
}

}  // namespace quillo
