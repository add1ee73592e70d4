#include "tests/platform/x11/X11Test.hpp"

#include <fstream>

namespace quillo::x11test {

using namespace std::chrono_literals;

PrivateDesktop& sharedDesktop() {
    static PrivateDesktop desktop;
    return desktop;
}

X11Test::X11Test() {
    auto& shared = sharedDesktop();
    setenv("DISPLAY", shared.display().c_str(), 1);
    Result<std::unique_ptr<X11Desktop>> created = fail(ErrorKind::unavailable, "not tried");
    waitFor([&] {
        created = X11Desktop::create(
            executor, {.display = shared.display(), .commandOf = [this](std::string_view identifier) {
                           const auto found = commands.find(identifier);
                           return found == commands.end() ? std::nullopt : std::optional(found->second);
                       }});
        return created.has_value();
    });
    if (!created) throw std::runtime_error(created.error().text);
    layer = std::move(*created);
    desktop.emplace(layer->platform(log));
    switchTo(0);
}

X11Test::~X11Test() {
    executor.shutDown(5s);
}

void X11Test::TearDown() {
    for (const auto& file : installed) std::filesystem::remove(file);
    clients.clear();
    EXPECT_TRUE(eventually([&] { return windows().empty(); })) << "windows of this test are left over";
    EXPECT_EQ(layer->strayErrors(), 0u);
    EXPECT_TRUE(sharedDesktop().server().lives());
    EXPECT_TRUE(sharedDesktop().windowManager().lives());
    EXPECT_TRUE(ax().trusted());
}

Process& X11Test::open(std::vector<std::string> options) {
    options.insert(options.begin(), QUILLO_TEST_CLIENT);
    return clients.emplace_back(options);
}

LiveWindow X11Test::openWindow(const std::string& title, std::vector<std::string> options) {
    options.insert(options.begin(), {"--title", title});
    open(std::move(options));
    if (!eventually([&] { return windowTitled(title).has_value(); })) {
        throw std::runtime_error("no window " + title);
    }
    // Some window managers decorate it a moment after they list it.
    EXPECT_TRUE(run(ax().makeMovable(windowTitled(title)->element)));
    return *windowTitled(title);
}

void X11Test::install(const std::string& id, const std::string& extraLines, const std::string& options) {
    const auto folder = PrivateDesktop::home() / "data/applications";
    const auto draft = PrivateDesktop::home() / "draft";
    std::ofstream(draft) << "[Desktop Entry]\nType=Application\nName=" << id
                         << " name\nExec=" << QUILLO_TEST_CLIENT << " " << options << "\n"
                         << extraLines;
    installed.push_back(folder / (id + ".desktop"));
    std::filesystem::rename(draft, installed.back());
}

std::vector<LiveWindow> X11Test::windows() {
    nextTurn();
    WindowHandleCache cache;
    DesktopAccess access{*desktop, cache};
    std::vector<LiveWindow> all;
    for (const auto& application : desktop->applications.running()) {
        if (application.activationPolicy != ActivationPolicy::regular) continue;
        const auto some = Accessibility::windows(access, application.pid, false);
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

std::optional<LiveWindow> X11Test::windowTitled(const std::string& title) {
    for (const auto& window : windows()) {
        if (window.info.title == title) return window;
    }
    return std::nullopt;
}

LiveWindow X11Test::reread(const LiveWindow& window) {
    nextTurn();
    WindowHandleCache cache;
    DesktopAccess access{*desktop, cache};
    const auto now = Accessibility::readWindow(access, window.element, window.pid, window.info.index);
    if (!now) throw std::runtime_error("the window is gone");
    return *now;
}

Attribute X11Test::attribute(const Element& element, std::string_view name) {
    const AttributeRequest request{element, {&name, 1}};
    return ax().read({&request, 1}).front().front();
}

std::set<SpaceID> X11Test::desktopsOf(const LiveWindow& window) {
    nextTurn();
    const WindowNumber number = *window.windowID;
    const auto spaces = desktop->windowServer.facts({&number, 1}).front().spaces;
    return {spaces.begin(), spaces.end()};
}

void X11Test::switchTo(std::uint32_t number) {
    sharedDesktop().run({"wmctrl", "-s", std::to_string(number)});
}

bool X11Test::eventually(const std::function<bool()>& condition, Duration limit) {
    const auto deadline = executor.timeAfter(limit);
    while (!condition()) {
        if (executor.now() >= deadline) return false;
        nextTurn();
    }
    return true;
}

}  // namespace quillo::x11test
