#include "tests/platform/x11/PrivateDesktop.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb_ewmh.h>

#include <cstdlib>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace quillo::x11test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

[[noreturn]] void execute(const std::vector<std::string>& command, int keepOpen) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int standard : {0, 1, 2}) dup2(nowhere, standard);
    if (keepOpen >= 0) fcntl(keepOpen, F_SETFD, 0);
    std::vector<char*> arguments;
    for (const auto& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

fs::path makeHome() {
    std::string path = (fs::temp_directory_path() / "quillo-x11-test-XXXXXX").string();
    if (!mkdtemp(path.data())) throw std::runtime_error("no temporary directory");
    for (const auto& [variable, folder] : {std::pair{"HOME", ""},
                                           {"XDG_DATA_HOME", "data"},
                                           {"XDG_CONFIG_HOME", "config"},
                                           {"XDG_CACHE_HOME", "cache"},
                                           {"XDG_RUNTIME_DIR", "run"}}) {
        fs::create_directories(fs::path(path) / folder);
        setenv(variable, (fs::path(path) / folder).c_str(), 1);
    }
    fs::create_directory(path + "/data/applications");
    fs::permissions(path + "/run", fs::perms::owner_all);
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    setenv("GSETTINGS_BACKEND", "memory", 1);
    setenv("NO_AT_BRIDGE", "1", 1);
    unsetenv("WINDOWID");
    return path;
}

struct HomeDirectory {
    fs::path path = makeHome();
    ~HomeDirectory() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
};

std::vector<std::string> serverCommand(const std::string& displayDescriptor) {
    std::string command = "Xvfb -screen 0 2560x1024x24";
    if (PrivateDesktop::isDummy())
        command = "Xorg -config " QUILLO_SOURCE_DIR
                  "/tests/platform/x11/dummy-xorg.conf -sharevts -novtswitch "
                  "-logfile " +
                  (PrivateDesktop::home() / "Xorg.log").string();
    std::istringstream words(command + " -noreset -nolisten tcp -displayfd " + displayDescriptor);
    return {std::istream_iterator<std::string>(words), {}};
}

std::vector<std::string> windowManagerCommand(const std::string& name) {
    // Its settings live on a session bus, so it gets one of its own.
    if (name == "xfwm4") return {"dbus-run-session", "--", "xfwm4", "--compositor=off"};
    return {name};
}

}  // namespace

Process::Process(const std::vector<std::string>& command, int keepOpen) {
    pid_ = fork();
    if (pid_ == 0) execute(command, keepOpen);
    if (pid_ < 0) throw std::runtime_error("cannot start " + command.front());
    setpgid(pid_, pid_);
}

bool Process::lives() {
    if (pid_ > 0 && waitpid(pid_, nullptr, WNOHANG) != 0) pid_ = 0;
    return pid_ > 0;
}

void Process::kill() {
    if (!lives()) return;
    ::kill(-pid_, SIGKILL);
    waitpid(std::exchange(pid_, 0), nullptr, 0);
}

void Process::end() {
    if (!lives()) return;
    ::kill(-pid_, SIGTERM);
    if (!waitFor([this] { return !lives(); }, 3s)) kill();
}

const fs::path& PrivateDesktop::home() {
    static const HomeDirectory directory;
    return directory.path;
}

std::string PrivateDesktop::chosenWindowManager() {
    const char* name = std::getenv("QUILLO_TEST_WM");
    return name && *name ? name : "openbox";
}

bool PrivateDesktop::isDummy() {
    const char* server = std::getenv("QUILLO_TEST_SERVER");
    return server && std::string(server) == "dummy";
}

Process PrivateDesktop::startServer() {
    home();
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    Process server(serverCommand(std::to_string(ends[1])), ends[1]);
    close(ends[1]);
    std::string number;  // written when the server is ready; the pipe closes if it dies
    for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';) number += c;
    close(ends[0]);
    if (number.empty()) throw std::runtime_error("the X server did not start");
    display_ = ":" + number;
    setenv("DISPLAY", display_.c_str(), 1);
    return server;
}

PrivateDesktop::PrivateDesktop(const std::string& windowManager)
    : server_(startServer()), windowManager_(windowManagerCommand(windowManager)) {
    waitForWindowManager();
}

void PrivateDesktop::waitForWindowManager() {
    auto* xcb = xcb_connect(display_.c_str(), nullptr);
    xcb_ewmh_connection_t ewmh{};
    if (!xcb_ewmh_init_atoms_replies(&ewmh, xcb_ewmh_init_atoms(xcb, &ewmh), nullptr)) {
        throw std::runtime_error("the X server does not answer");
    }
    const auto has = [&](std::uint32_t desktops) {
        std::uint32_t now = 0;
        run({"wmctrl", "-n", std::to_string(desktops)});
        xcb_ewmh_get_number_of_desktops_reply(&ewmh, xcb_ewmh_get_number_of_desktops(&ewmh, 0), &now,
                                              nullptr);
        return now == desktops;
    };
    const bool ready = waitFor([&] { return has(5); }, 20s) && waitFor([&] { return has(4); }, 20s);
    xcb_ewmh_connection_wipe(&ewmh);
    xcb_disconnect(xcb);
    if (!ready) throw std::runtime_error("the window manager does not answer");
}

PrivateDesktop::~PrivateDesktop() {
    windowManager_.end();
    server_.end();
}

int PrivateDesktop::run(const std::vector<std::string>& command) {
    const pid_t child = fork();
    if (child == 0) execute(command, -1);
    int status = -1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

SessionBus::SessionBus()
    : daemon_({"dbus-daemon", "--session", "--nofork", "--nosyslog",
               "--address=unix:path=" + (PrivateDesktop::home() / "run/bus").string()}) {
    const auto socket = PrivateDesktop::home() / "run/bus";
    if (!waitFor([&] { return fs::is_socket(socket); })) throw std::runtime_error("no session bus");
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + socket.string()).c_str(), 1);
    unsetenv("NO_AT_BRIDGE");
}

SessionBus::~SessionBus() {
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    setenv("NO_AT_BRIDGE", "1", 1);
    daemon_.end();
    std::error_code ignored;
    fs::remove(PrivateDesktop::home() / "run/bus", ignored);
}

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(10ms);
    }
    return true;
}

}  // namespace quillo::x11test
