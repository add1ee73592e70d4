#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <utility>

#include "WindowEngine/desktop/AccessibilityReading.hpp"

namespace quillo::Accessibility {
namespace {

using namespace std::chrono_literals;

constexpr std::array windowListNames{ax::windows};
constexpr std::array windowNames{ax::subrole,   ax::position,   ax::size,    ax::title,
                                 ax::minimized, ax::fullScreen, ax::document};
constexpr std::span<const std::string_view> placeNames{windowNames.data(), windowNames.size() - 1};

template <class T>
const T* valueOf(const Attribute& attribute) {
    return attribute ? std::get_if<T>(&*attribute) : nullptr;
}

bool isTrue(const Attribute& attribute) {
    const bool* value = valueOf<bool>(attribute);
    return value && *value;
}

/// What the attributes of windowNames, or of placeNames, say; absent unless they are those of a window that
/// people see.
std::optional<LiveWindowInfo> windowInfo(const std::vector<Attribute>& attributes) {
    const auto* subrole = valueOf<std::string>(attributes[0]);
    const auto* position = valueOf<Point>(attributes[1]);
    const auto* size = valueOf<Size>(attributes[2]);
    if (!subrole || (*subrole != ax::standardWindow && *subrole != ax::dialog)) return std::nullopt;
    if (!position || !size || !(size->width > minimumExtent && size->height > minimumExtent))
        return std::nullopt;

    LiveWindowInfo info;
    info.subrole = *subrole;
    info.frame = {position->x, position->y, size->width, size->height};
    if (const auto* title = valueOf<std::string>(attributes[3]); title && !title->empty())
        info.title = *title;
    info.isMinimized = isTrue(attributes[4]);
    info.isFullscreen = isTrue(attributes[5]);
    const auto* document =
        attributes.size() > placeNames.size() ? valueOf<std::string>(attributes[6]) : nullptr;
    if (document) info.documentURL = Url::parse(*document);
    return info;
}

std::optional<LiveWindow> liveWindow(DesktopAccess& desktop, const Element& element, ProcessID pid,
                                     std::int64_t index, const std::vector<Attribute>& attributes) {
    std::optional<LiveWindowInfo> info = windowInfo(attributes);
    if (!info) return std::nullopt;
    info->index = index;
    return LiveWindow{element, pid, desktop.platform.accessibility.windowNumber(element), std::move(*info)};
}

/// One application of an enumeration under way.
struct ApplicationReading {
    ProcessID pid;
    std::optional<Instant> launchedAt;
    std::vector<Element> candidates;
    Enumeration result;
};

std::optional<Instant> launchDateOf(DesktopAccess& desktop, ProcessID pid) {
    const auto application = desktop.platform.applications.running(pid);
    return application ? application->launchDate : std::nullopt;
}

std::vector<Element> cachedElements(const DesktopAccess& desktop, ProcessID pid,
                                    const std::optional<Instant>& launchedAt) {
    const auto entry = desktop.handles.entries.find(pid);
    if (entry == desktop.handles.entries.end() || entry->second.launchedAt != launchedAt) return {};
    return entry->second.elements;
}

/// The listed elements, then those that were listed before: windows that accessibility no longer lists (on
/// another desktop) stay reachable through them.
void collectCandidates(DesktopAccess& desktop, ApplicationReading& reading, const Attribute& windowList) {
    if (isTimeout(windowList)) {
        reading.result.timedOut = true;
        return;
    }
    if (const auto* listed = valueOf<std::vector<Element>>(windowList)) reading.candidates = *listed;
    const std::size_t listedCount = reading.candidates.size();
    for (Element& element : cachedElements(desktop, reading.pid, reading.launchedAt)) {
        const auto listedEnd = reading.candidates.begin() + static_cast<std::ptrdiff_t>(listedCount);
        if (std::find(reading.candidates.begin(), listedEnd, element) == listedEnd)
            reading.candidates.push_back(std::move(element));
    }
}

/// Once an application let its messaging timeout pass, nobody is asked any more in this enumeration.
std::vector<ApplicationReading> readWindowLists(DesktopAccess& desktop, std::span<const ProcessID> pids,
                                                double timeout) {
    AccessibilityService& service = desktop.platform.accessibility;
    std::vector<ApplicationReading> readings;
    std::vector<OwnedRequest> requests;
    for (const ProcessID pid : pids) {
        readings.push_back({pid, launchDateOf(desktop, pid), {}, {}});
        Element element = service.application(pid);
        service.setMessagingTimeout(element, timeout);
        requests.push_back({pid, {std::move(element), windowListNames}});
    }
    const auto answers = read(desktop, requests);
    const bool waited = std::ranges::any_of(answers, [](const std::vector<Attribute>& answer) {
        return isTimeout(answer[0]) && !isUnasked(answer[0]);
    });
    for (std::size_t i = 0; i < readings.size(); ++i) {
        collectCandidates(desktop, readings[i], answers[i][0]);
        readings[i].result.timedOut |= waited;
    }
    return readings;
}

bool alreadyAccepted(const Enumeration& enumeration, const LiveWindow& window) {
    return std::ranges::any_of(enumeration.windows, [&](const LiveWindow& accepted) {
        return (window.windowID && accepted.windowID == window.windowID) ||
               accepted.element == window.element;
    });
}

void acceptWindows(DesktopAccess& desktop, ApplicationReading& reading,
                   std::span<const std::vector<Attribute>> answers) {
    for (std::size_t i = 0; i < reading.candidates.size(); ++i) {
        if (std::ranges::any_of(answers[i], isTimeout)) reading.result.timedOut = true;
        const auto index = static_cast<std::int64_t>(reading.result.windows.size());
        auto window = liveWindow(desktop, reading.candidates[i], reading.pid, index, answers[i]);
        if (window && !alreadyAccepted(reading.result, *window))
            reading.result.windows.push_back(std::move(*window));
    }
}

void readAllWindows(DesktopAccess& desktop, std::vector<ApplicationReading>& readings, double timeout) {
    AccessibilityService& service = desktop.platform.accessibility;
    std::vector<OwnedRequest> requests;
    for (ApplicationReading& reading : readings) {
        if (reading.result.timedOut) reading.candidates.clear();
        for (const Element& element : reading.candidates) {
            service.setMessagingTimeout(element, timeout);
            requests.push_back({reading.pid, {element, windowNames}});
        }
    }
    const auto answers = read(desktop, requests);
    std::span<const std::vector<Attribute>> rest(answers);
    for (ApplicationReading& reading : readings) {
        acceptWindows(desktop, reading, rest.first(reading.candidates.size()));
        rest = rest.subspan(reading.candidates.size());
    }
}

using Token = std::array<std::byte, 20>;

/// The accessibility framework's remote token: pid, zero, the tag "coco" and a counter, little-endian.
Token remoteToken(ProcessID pid, std::uint64_t counter) {
    Token token{};
    const auto put = [&](std::size_t at, std::uint64_t value, std::size_t bytes) {
        for (std::size_t i = 0; i < bytes; ++i)
            token[at + i] = static_cast<std::byte>(value >> (8 * i) & 0xff);
    };
    put(0, static_cast<std::uint32_t>(pid), 4);
    put(8, 0x636F636F, 4);
    put(12, counter, 8);
    return token;
}

/// Elements of windows that accessibility does not list, found by walking the tokens an application may
/// have handed out. The whole walk is bounded in time and count.
std::vector<Element> recoverWindowElements(DesktopAccess& desktop, ProcessID pid,
                                           std::set<WindowNumber> wanted) {
    constexpr std::uint64_t endOfWalk = 32767;
    constexpr double probeTimeout = 0.05;  // seconds
    AccessibilityService& service = desktop.platform.accessibility;
    std::vector<Element> found;
    if (wanted.empty() || !service.remoteTokens() || !service.trusted()) return found;
    const TimePoint deadline = desktop.platform.executor.now() + 250ms;
    for (std::uint64_t counter = 0; counter < endOfWalk && !wanted.empty(); ++counter) {
        if (desktop.platform.executor.now() >= deadline) break;
        std::optional<Element> element = service.elementFromToken(remoteToken(pid, counter));
        if (!element) continue;
        service.setMessagingTimeout(*element, probeTimeout);
        const std::optional<WindowNumber> number = service.windowNumber(*element);
        if (!number || wanted.erase(*number) == 0) continue;
        service.setMessagingTimeout(*element, messagingTimeout);
        found.push_back(std::move(*element));
    }
    return found;
}

void appendHiddenWindows(DesktopAccess& desktop, ApplicationReading& reading,
                         const WindowServerReading& server) {
    std::set<WindowNumber> wanted;
    for (const auto& candidate : hiddenWindows(server, reading.pid, windowNumbers(reading.result.windows)))
        wanted.insert(candidate.windowID);
    for (const Element& element : recoverWindowElements(desktop, reading.pid, std::move(wanted))) {
        const auto index = static_cast<std::int64_t>(reading.result.windows.size());
        auto window = liveWindow(desktop, element, reading.pid, index,
                                 read(desktop, reading.pid, {element, windowNames}));
        if (window) reading.result.windows.push_back(std::move(*window));
    }
}

void remember(DesktopAccess& desktop, const std::vector<ApplicationReading>& readings) {
    std::erase_if(desktop.handles.entries,
                  [&](const auto& entry) { return !desktop.platform.applications.running(entry.first); });
    for (const ApplicationReading& reading : readings) {
        if (reading.result.timedOut) continue;  // its windows are still there, it only hangs
        auto& entry = desktop.handles.entries[reading.pid];
        entry = {reading.launchedAt, {}};
        for (const LiveWindow& window : reading.result.windows) entry.elements.push_back(window.element);
    }
}

/// `server`: null where hidden windows are not looked for.
std::vector<Enumeration> enumerateWith(DesktopAccess& desktop, std::span<const ProcessID> pids,
                                       const WindowServerReading* server, double timeout) {
    std::vector<ApplicationReading> readings = readWindowLists(desktop, pids, timeout);
    readAllWindows(desktop, readings, timeout);
    for (ApplicationReading& reading : readings) {
        if (server && !reading.result.timedOut) appendHiddenWindows(desktop, reading, *server);
    }
    remember(desktop, readings);
    std::vector<Enumeration> result;
    for (ApplicationReading& reading : readings) result.push_back(std::move(reading.result));
    return result;
}

}  // namespace

std::vector<Enumeration> enumerate(DesktopAccess& desktop, std::span<const ProcessID> pids,
                                   bool recoverHidden, double timeout) {
    if (!recoverHidden) return enumerateWith(desktop, pids, nullptr, timeout);
    const WindowServerReading server = readWindowServer(desktop);
    return enumerateWith(desktop, pids, &server, timeout);
}

std::vector<Enumeration> enumerateRecovering(DesktopAccess& desktop, std::span<const ProcessID> pids,
                                             const WindowServerReading& server) {
    return enumerateWith(desktop, pids, &server, messagingTimeout);
}

std::vector<LiveWindow> windows(DesktopAccess& desktop, ProcessID pid, bool recoverHidden) {
    return std::move(enumerate(desktop, {&pid, 1}, recoverHidden).front().windows);
}

std::vector<WindowNumber> listedNumbers(DesktopAccess& desktop, ProcessID pid) {
    AccessibilityService& service = desktop.platform.accessibility;
    Element application = service.application(pid);
    service.setMessagingTimeout(application, messagingTimeout);
    const auto answer = read(desktop, pid, {application, windowListNames});
    std::vector<WindowNumber> numbers;
    if (const auto* listed = valueOf<std::vector<Element>>(answer.front())) {
        for (const Element& window : *listed) {
            if (const auto number = service.windowNumber(window)) numbers.push_back(*number);
        }
    }
    return numbers;
}

std::vector<Element> knownElements(DesktopAccess& desktop, ProcessID pid) {
    return cachedElements(desktop, pid, launchDateOf(desktop, pid));
}

std::optional<LiveWindow> readWindow(DesktopAccess& desktop, const Element& element, ProcessID pid,
                                     std::int64_t index) {
    return liveWindow(desktop, element, pid, index, read(desktop, pid, {element, placeNames}));
}

WindowServerReading readWindowServer(DesktopAccess& desktop) {
    WindowServerReading reading{desktop.platform.windowServer.windowList(), {}};
    std::vector<WindowNumber> numbers;
    for (const WindowListEntry& entry : reading.windows) {
        if (entry.layer == 0) numbers.push_back(entry.number);
    }
    std::vector<WindowFacts> facts = desktop.platform.windowServer.facts(numbers);
    for (std::size_t i = 0; i < numbers.size(); ++i) reading.facts.emplace(numbers[i], std::move(facts[i]));
    return reading;
}

std::vector<HiddenWindowCandidate> hiddenWindows(const WindowServerReading& reading, ProcessID pid,
                                                 const std::set<WindowNumber>& excluding) {
    std::vector<HiddenWindowCandidate> candidates;
    for (const WindowListEntry& entry : reading.windows) {
        if (entry.ownerPid != pid || entry.layer != 0 || excluding.contains(entry.number)) continue;
        if (!(entry.bounds.width > minimumExtent && entry.bounds.height > minimumExtent)) continue;
        const WindowFacts& facts = reading.facts.at(entry.number);
        if (facts.isStandard) candidates.push_back({entry.number, entry.bounds, facts.isFullscreen});
    }
    return candidates;
}

std::vector<HiddenWindowCandidate> hiddenWindows(DesktopAccess& desktop, ProcessID pid,
                                                 const std::set<WindowNumber>& excluding) {
    return hiddenWindows(readWindowServer(desktop), pid, excluding);
}

std::set<WindowNumber> windowNumbers(std::span<const LiveWindow> windows) {
    std::set<WindowNumber> numbers;
    for (const LiveWindow& window : windows) {
        if (window.windowID) numbers.insert(*window.windowID);
    }
    return numbers;
}

}  // namespace quillo::Accessibility
