// What the X11 tests share: one private desktop for the program, the platform layer over it, clients.
#pragma once
#include <gtest/gtest.h>

#include <list>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "platform/x11/X11Desktop.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace quillo::x11test {

/// Started by the first test that needs it; ends with the program.
PrivateDesktop& sharedDesktop();

struct SilentLog : SystemLog {
    void write(std::string_view, LogLevel, std::string_view) override {}
};

class X11Test : public testing::Test {
  protected:
    X11Test();
    ~X11Test() override;
    /// No X error went unseen, and server and window manager are still alive.
    void TearDown() override;

    /// Starts a client; the options are those of client/TestClient.cpp.
    Process& open(std::vector<std::string> options);
    /// The same, and waits for its window.
    LiveWindow openWindow(const std::string& title, std::vector<std::string> options = {});
    /// A .desktop file of the private home that starts the client with these options, until the test ends.
    void install(const std::string& id, const std::string& extraLines, const std::string& options);

    /// Of every application, furniture left out.
    std::vector<LiveWindow> windows();
    std::optional<LiveWindow> windowTitled(const std::string& title);
    LiveWindow reread(const LiveWindow& window);
    Attribute attribute(const Element& element, std::string_view name);
    std::set<SpaceID> desktopsOf(const LiveWindow& window);
    void switchTo(std::uint32_t desktop);

    /// Turns of the executor until the condition holds.
    bool eventually(const std::function<bool()>& condition, Duration limit = std::chrono::seconds(10));
    template <class T>
    T run(Task<T> task) {
        Job<T> job(executor, std::move(task));
        EXPECT_TRUE(executor.runUntil([&] { return job.done(); }, std::chrono::seconds(20)));
        return job.result();
    }
    /// One turn passes: what was read in it is forgotten.
    void nextTurn() { run(sleepOnce()); }

    bool windowManagerIs(std::string_view name) const {
        return PrivateDesktop::chosenWindowManager() == name;
    }
    AccessibilityService& ax() { return desktop->accessibility; }

    std::map<std::string, std::vector<std::string>, std::less<>> commands;  // of what no menu entry starts
    SilentLog log;
    LoopExecutor executor;
    std::unique_ptr<X11Desktop> layer;
    std::optional<Platform> desktop;
    std::list<Process> clients;
    std::vector<std::filesystem::path> installed;  // .desktop files, removed with the test

  private:
    static Task<void> sleepOnce() { co_await sleepFor(std::chrono::milliseconds(1)); }
};

}  // namespace quillo::x11test
