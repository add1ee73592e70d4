// A desktop of the tests' own: an X server on a free display, a window manager, and directories that keep the
// machine's settings and session out of it. QUILLO_TEST_SERVER=dummy starts Xorg with its dummy driver (real
// monitors, root only) instead of Xvfb; QUILLO_TEST_WM names the window manager.
#pragma once
#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillo::x11test {

/// A child in a process group of its own, ended with all its descendants.
class Process {
  public:
    /// `keepOpen`: a descriptor the child inherits, -1 for none.
    explicit Process(const std::vector<std::string>& command, int keepOpen = -1);
    Process(Process&& other) noexcept : pid_(std::exchange(other.pid_, 0)) {}
    Process& operator=(Process&& other) noexcept {
        std::swap(pid_, other.pid_);
        return *this;
    }
    ~Process() { end(); }
    pid_t pid() const { return pid_; }
    bool lives();
    void kill();  // at once
    void end();   // asks, and waits

  private:
    pid_t pid_ = 0;
};

class PrivateDesktop {
  public:
    /// Sets DISPLAY, HOME and the XDG variables of this process. The window manager is ready when it returns.
    explicit PrivateDesktop(const std::string& windowManager = chosenWindowManager());
    ~PrivateDesktop();

    static std::string chosenWindowManager();  // openbox unless named
    static bool isDummy();                     // Xorg, whose monitors can be plugged
    /// The private home that this process got once and for all.
    static const std::filesystem::path& home();

    const std::string& display() const { return display_; }
    Process& server() { return server_; }
    Process& windowManager() { return windowManager_; }
    /// Runs a tool such as xrandr to its end; its exit status.
    int run(const std::vector<std::string>& command);

  private:
    Process startServer();
    /// Window managers announce themselves some time before they listen; a window mapped meanwhile is lost.
    void waitForWindowManager();

    std::string display_;
    Process server_;
    Process windowManager_;
};

/// A session bus for what is started while it lives; on it, toolkits bring their accessibility bus up.
class SessionBus {
  public:
    SessionBus();
    ~SessionBus();

  private:
    Process daemon_;
};

/// Waits for a condition of the outside world, at most `limit`.
bool waitFor(const std::function<bool()>& condition,
             std::chrono::milliseconds limit = std::chrono::seconds(10));

}  // namespace quillo::x11test
