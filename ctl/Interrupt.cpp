#include "ctl/Interrupt.hpp"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace quillo::ctl {
namespace {

constexpr std::array signals{SIGINT, SIGTERM, SIGHUP};

// A handler may do little more than write to a pipe; a thread of ours reads from it.
std::array<int, 2> channel{-1, -1};

constexpr char over = 0;  // any other message is the number of a signal
constexpr int patienceMilliseconds = 1000;

std::atomic<int> lastSignal{0};
bool isEchoed = false;  // a terminal shows ^C, and nothing behind it

void send(char message) {
    [[maybe_unused]] const ssize_t sent = write(channel[1], &message, 1);
}

void handle(int signal) {
    const int before = errno;
    lastSignal = signal;
    if (signal == SIGINT && isEchoed) {
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, "\n", 1);
    }
    send(static_cast<char>(signal));
    errno = before;
}

void setHandlers(void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    // The second one finds the system's own way: a program that hangs can still be ended.
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (const int signal : signals) sigaction(signal, &action, nullptr);
}

/// What arrives: interruptions, then one `over`.
char receive() {
    char message = over;
    while (read(channel[0], &message, 1) < 0 && errno == EINTR) {
    }
    return message;
}

bool nothingArrivesInTime() {
    pollfd reading{channel[0], POLLIN, 0};
    return poll(&reading, 1, patienceMilliseconds) == 0;
}

}  // namespace

int Interrupt::received() {
    return lastSignal;
}

Interrupt::Interrupt(Executor& executor, std::function<void()> cancel)
    : cancel_(std::make_shared<std::function<void()>>(std::move(cancel))) {
    if (pipe(channel.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    for (const int end : channel) fcntl(end, F_SETFD, FD_CLOEXEC);
    isEchoed = isatty(STDERR_FILENO) != 0;
    reader_ = std::thread([&executor, cancel = std::weak_ptr(cancel_)] {
        while (const char signal = receive()) {
            executor.post([cancel] {
                if (const auto call = cancel.lock()) (*call)();  // what it refers to may be gone by its turn
            });
            if (signal == SIGTERM && nothingArrivesInTime()) kill(getpid(), SIGTERM);  // the system's own way
        }
    });
    setHandlers(handle);
}

Interrupt::~Interrupt() {
    setHandlers(SIG_DFL);
    send(over);
    reader_.join();
    for (int& end : channel) {
        close(end);
        end = -1;
    }
}

}  // namespace quillo::ctl
