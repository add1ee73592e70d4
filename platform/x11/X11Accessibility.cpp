#include "platform/x11/X11Accessibility.hpp"

#include <algorithm>
#include <chrono>

#include "WindowEngine/support/Poll.hpp"
#include "platform/x11/WindowRequests.hpp"

namespace quillo::x11 {
namespace {

enum class Named { application, window };

/// An application by a process of it, or a window by its X identifier. The server gives an identifier again
/// after its window's client has gone, so a window is also known by its process.
class Handle final : public ElementHandle {
  public:
    Handle(Named named, xcb_window_t window, ProcessID pid) : named(named), window(window), pid(pid) {}
    bool same(const ElementHandle& other) const override {
        const auto& that = static_cast<const Handle&>(other);
        return named == that.named && window == that.window && pid == that.pid;
    }

    const Named named;
    const xcb_window_t window;
    const ProcessID pid;
};

const Handle& handleOf(const Element& element) {
    return static_cast<const Handle&>(element.handle());
}

bool namesSame(const Handle& handle, const WindowReading& reading) {
    return handle.window == reading.window &&
           (handle.pid == reading.pid || handle.pid == 0 || reading.pid == 0);
}

Element windowElement(const WindowReading& reading) {
    return Element(std::make_shared<Handle>(Named::window, reading.window, reading.pid));
}

std::unexpected<AttributeMiss> miss(AttributeMiss::Reason reason, std::int32_t code) {
    return std::unexpected(AttributeMiss{reason, code});
}

std::string subrole(WindowType type) {
    switch (type) {
        case WindowType::normal:
            return std::string(ax::standardWindow);
        case WindowType::dialog:
            return std::string(ax::dialog);
        case WindowType::auxiliary:
            return "AXFloatingWindow";
        default:
            return "AXUnknown";
    }
}

Attribute windowAttribute(const WindowReading& window, const Url* document, std::string_view name) {
    if (name == ax::role) return "AXWindow";
    if (name == ax::subrole) return subrole(window.type);
    if (name == ax::title) return window.title;
    if (name == ax::position) return window.frame().origin();
    if (name == ax::size) return window.frame().size();
    if (name == ax::minimized) return window.hidden;
    if (name == ax::fullScreen) return window.fullscreen;
    if (name == ax::document && document) return document->string();
    return miss(AttributeMiss::Reason::absent, codeUnsupported);
}

}  // namespace

bool X11Accessibility::trusted() {
    return static_cast<bool>(view_.access());
}

Capability X11Accessibility::folders() {
    if (!view_.accessibilityBus().empty()) return Capability::available();
    return Capability::unavailable(
        "No accessibility bus runs on this display, so a file manager's folder is known only where its title "
        "or "
        "its command line names it. Install at-spi2-core; the bus starts with the first application that "
        "uses it.");
}

Element X11Accessibility::application(ProcessID pid) {
    return Element(std::make_shared<Handle>(Named::application, XCB_WINDOW_NONE, pid));
}

Attribute X11Accessibility::applicationAttribute(ProcessID pid, std::string_view name) {
    const auto* application = view_.applicationOf(pid);
    if (!application && !processInfo(pid)) return miss(AttributeMiss::Reason::gone, codeGone);
    if (name == ax::role) return "AXApplication";
    if (name == ax::title && application && application->running.localizedName)
        return *application->running.localizedName;
    if (name != ax::windows) return miss(AttributeMiss::Reason::absent, codeUnsupported);
    std::vector<Element> elements;
    if (!application) return elements;
    for (const auto index : application->windows) {
        const auto& window = view_.reading().windows[index];
        if (window.isListed()) elements.push_back(windowElement(window));
    }
    return elements;
}

bool X11Accessibility::isFirstOfItsProcess(const WindowReading& window) {
    const auto& all = view_.reading().windows;
    const auto first = std::ranges::find_if(
        all, [&](const WindowReading& one) { return one.pid == window.pid && one.isListed(); });
    return first != all.end() && first->window == window.window;
}

std::unordered_map<xcb_window_t, Url> X11Accessibility::documents(const Readings& windows) {
    std::vector<DocumentQuestion> questions;
    for (const auto& [number, window] : windows) {
        if (window.pid == 0 || window.type != WindowType::normal) continue;
        const auto opens = view_.opensOf(window);
        // What opens no documents has none, whatever path its title names; a browser's title is the page's.
        // Of a terminal its shell tells.
        if (!opens.shells && (!opens.documents || opens.pages)) continue;
        questions.push_back({number, window.pid, window.title, window.frame(), opens.folders, opens.shells});
    }
    const bool asksManagers = std::ranges::any_of(questions, &DocumentQuestion::opensFolders);
    auto bus = asksManagers ? view_.accessibilityBus() : std::string();
    std::unordered_map<xcb_window_t, Url> found;
    for (const auto& [number, answer] : documents_.ask(questions, std::move(bus))) {
        if (answer.fromArguments && !isFirstOfItsProcess(windows.at(number))) continue;
        found.emplace(number, Url::file(answer.document.path, answer.document.isFolder));
    }
    return found;
}

std::vector<std::vector<Attribute>> X11Accessibility::read(std::span<const AttributeRequest> requests) {
    std::vector<xcb_window_t> wanted;
    bool wantsDocuments = false;
    for (const auto& request : requests) {
        const auto& handle = handleOf(request.element);
        wantsDocuments |= std::ranges::find(request.names, ax::document) != request.names.end();
        if (handle.named == Named::window)
            wanted.push_back(handle.window);
        else
            view_.reading();  // an application is known by all windows, and then they are at hand
    }
    Readings readings;
    for (auto& reading : wanted.empty() ? std::vector<WindowReading>{} : view_.windows(wanted)) {
        readings.emplace(reading.window, std::move(reading));
    }
    const bool connected = view_.connection().alive();
    const auto documentOf = wantsDocuments ? documents(readings) : std::unordered_map<xcb_window_t, Url>();
    const auto answer = [&](const Handle& handle, std::string_view name) -> Attribute {
        if (!connected) return miss(AttributeMiss::Reason::refused, codeNoConnection);
        if (handle.named == Named::application) return applicationAttribute(handle.pid, name);
        const auto found = readings.find(handle.window);
        if (found == readings.end() || !namesSame(handle, found->second)) {
            return miss(AttributeMiss::Reason::gone, codeGone);
        }
        const auto document = documentOf.find(handle.window);
        return windowAttribute(found->second, document == documentOf.end() ? nullptr : &document->second,
                               name);
    };
    std::vector<std::vector<Attribute>> answers;
    answers.reserve(requests.size());
    for (const auto& request : requests) {
        auto& attributes = answers.emplace_back();
        attributes.reserve(request.names.size());
        for (const auto name : request.names) attributes.push_back(answer(handleOf(request.element), name));
    }
    return answers;
}

Task<bool> X11Accessibility::askPatiently() {
    constexpr Duration interval = std::chrono::milliseconds(20), longest = std::chrono::milliseconds(1500);
    if (!documents_.lookAgain()) co_return false;
    co_await pollUntil([this] { return !documents_.isLooking(); }, interval, longest);
    co_return true;
}

std::optional<WindowReading> X11Accessibility::readingOf(const Element& window) {
    const auto& handle = handleOf(window);
    if (handle.named != Named::window) return std::nullopt;
    auto reading = view_.windowNow(handle.window);
    return reading && namesSame(handle, *reading) ? reading : std::nullopt;
}

bool X11Accessibility::isHere(const WindowReading& window) {
    return !window.desktop || window.desktop == everyDesktop || window.desktop == view_.currentDesktopNow();
}

AccessibilityCode X11Accessibility::write(const Element& element, std::string_view name,
                                          const AttributeValue& value) {
    const auto reading = readingOf(element);
    if (!view_.connection().alive()) return {codeNoConnection};
    if (!reading) return {handleOf(element).named == Named::window ? codeGone : codeUnsupported};
    WindowRequests requests(view_);
    if (const auto* on = std::get_if<bool>(&value)) {
        if (name == ax::minimized && *on) return {requests.minimize(reading->window)};
        if (name == ax::minimized) {
            return {requests.restore(*reading, isHere(*reading))};
        }
        if (name == ax::fullScreen) return {requests.setFullscreen(reading->window, *on)};
    }
    const auto* point = std::get_if<Point>(&value);
    if (point && name == ax::position) {
        return {requests.moveResize(*reading, {point->x, point->y, 1, 1}, FrameParts::position)};
    }
    const auto* size = std::get_if<Size>(&value);
    if (size && name == ax::size) {
        return {requests.moveResize(*reading, {0, 0, size->width, size->height}, FrameParts::size)};
    }
    return {codeUnsupported};
}

/// Panels are windows too: reading all of them for each frame that is written would make it dear.
const std::vector<Screen>& X11Accessibility::screensLately() {
    constexpr Duration lately = std::chrono::milliseconds(500);
    const TimePoint now = view_.executor().now();
    if (screensSeen_.empty() || now - screensSeenAt_ > lately) {
        screensSeen_ = screens_.screens();
        screensSeenAt_ = now;
    }
    return screensSeen_;
}

/// A window is maximized on the monitor where it stands.
std::int32_t X11Accessibility::maximizeAt(const WindowReading& window, const Rect& area) {
    WindowRequests requests(view_);
    if (!area.contains(window.frame().center())) {
        const auto code = requests.moveResize(window, area, FrameParts::position);
        if (code != codeDone) return code;
    }
    return requests.maximize(window.window);
}

FrameWrite X11Accessibility::writeFrame(const Element& window, const Rect& frame) {
    const auto reading = readingOf(window);
    if (!reading) return {};
    const auto fills = [&](const Screen& screen) { return screen.visibleFrame == frame; };
    const bool maximized = std::ranges::any_of(screensLately(), fills);
    const auto code = maximized ? maximizeAt(*reading, frame)
                                : WindowRequests(view_).moveResize(*reading, frame, FrameParts::both);
    const bool accepted = code == codeDone;
    if (accepted) mover_.frameWritten(*reading, frame, maximized);
    return {.positionSet = accepted, .sizeSet = accepted};
}

AccessibilityCode X11Accessibility::perform(const Element& element, std::string_view action) {
    const auto reading = readingOf(element);
    if (!view_.connection().alive()) return {codeNoConnection};
    if (action != ax::raise || handleOf(element).named != Named::window) return {codeUnsupported};
    if (!reading) return {codeGone};
    WindowRequests requests(view_);
    // Activating would restore a minimized window and bring one here, or the person there, from another
    // desktop.
    return {!reading->hidden && isHere(*reading) ? requests.activate(reading->window)
                                                 : requests.restack(reading->window)};
}

std::optional<WindowNumber> X11Accessibility::windowNumber(const Element& window) {
    const auto& handle = handleOf(window);
    return handle.named == Named::window ? std::optional<WindowNumber>(handle.window) : std::nullopt;
}

Capability X11Accessibility::placement(const Element& window) {
    if (!view_.isTiled(handleOf(window).window)) return Capability::available();
    return Capability::unavailable("tiled by the window manager, which alone decides its place");
}

Task<bool> X11Accessibility::makeMovable(Element window) {
    const auto reading = readingOf(window);
    if (!reading) co_return false;
    co_return co_await mover_.makeMovable(reading->window);
}

Task<void> X11Accessibility::settleInPlace(Element window) {
    if (handleOf(window).named == Named::window) co_await mover_.settleInPlace(handleOf(window).window);
}

}  // namespace quillo::x11
