#include "platform/posix/ChildProcessSpawn.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <memory>
#include <mutex>
#include <string_view>

extern char** environ;

namespace quillo::ChildProcess {
namespace {

/// Held from opening pipes to the end of a spawn: where no call opens a pipe closed on exec, a child that
/// another thread starts in between would inherit it and keep it open.
std::mutex& spawning() {
    static std::mutex mutex;
    return mutex;
}

Error startError(int code) {
    if (code == ENOENT) return {ErrorKind::notFound, "the program does not exist", code};
    if (code == EACCES) return {ErrorKind::permission, "the program may not be run", code};
    return {ErrorKind::unavailable, "the program could not be started", code};
}

/// Of systems that leave a child nothing but what the file actions name. Better than a list, of which another
/// thread may have closed one by the time of the spawn: there, that fails it.
#ifdef POSIX_SPAWN_CLOEXEC_DEFAULT
constexpr short closesByItself = POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
constexpr short closesByItself = 0;
#endif

/// The same open file, out of the way of the standard descriptors.
Descriptor moved(Descriptor descriptor) {
    return Descriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, 3));
}

class SpawnActions {
  public:
    SpawnActions() { ::posix_spawn_file_actions_init(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions_); }

    const posix_spawn_file_actions_t* get() const noexcept { return &actions_; }
    void connect(const Descriptor& output, const Descriptor& error) {
        ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_adddup2(&actions_, output.get(), STDOUT_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions_, error.get(), STDERR_FILENO);
    }
    /// What libraries opened without closing it on exec is none of the child's business.
    void closeEverythingElse() {
        if (closesByItself != 0) return;
        const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir("/dev/fd"), ::closedir);
        if (!directory) return;
        while (const dirent* entry = ::readdir(directory.get())) {
            const std::string_view name = entry->d_name;
            int number = -1;
            std::from_chars(name.data(), name.data() + name.size(), number);
            if (number <= STDERR_FILENO) continue;
            const int flags = ::fcntl(number, F_GETFD);
            if (flags >= 0 && !(flags & FD_CLOEXEC)) ::posix_spawn_file_actions_addclose(&actions_, number);
        }
    }

  private:
    posix_spawn_file_actions_t actions_;
};

/// A process group of its own and no inherited signal setting.
class SpawnAttributes {
  public:
    SpawnAttributes() {
        ::posix_spawnattr_init(&attributes_);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK |
                                                     POSIX_SPAWN_SETSIGDEF | closesByItself);
        ::posix_spawnattr_setpgroup(&attributes_, 0);
        sigset_t none, restored;
        sigemptyset(&none);
        sigemptyset(&restored);
        for (const int signal : {SIGPIPE, SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGCHLD})
            sigaddset(&restored, signal);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        ::posix_spawnattr_setsigdefault(&attributes_, &restored);
    }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes_); }

    const posix_spawnattr_t* get() const noexcept { return &attributes_; }

  private:
    posix_spawnattr_t attributes_;
};

std::vector<char*> argumentPointers(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

Result<Pipe> Pipe::open() {
    int ends[2];
    if (::pipe(ends) != 0) return std::unexpected(startError(errno));
    Descriptor reading(ends[0]), writing(ends[1]);
    Pipe pipe{moved(std::move(reading)), moved(std::move(writing))};
    if (!pipe.reading || !pipe.writing) return std::unexpected(startError(errno));
    ::fcntl(pipe.reading.get(), F_SETFL, O_NONBLOCK);
    return pipe;
}

Result<Child> spawn(const Arguments& arguments) {
    const std::lock_guard lock(spawning());
    Result<Pipe> output = Pipe::open();
    if (!output) return std::unexpected(output.error());
    Result<Pipe> error = Pipe::open();
    if (!error) return std::unexpected(error.error());

    SpawnActions actions;
    actions.connect(output->writing, error->writing);
    actions.closeEverythingElse();
    const SpawnAttributes attributes;
    std::vector<std::string> words{arguments.program};
    words.insert(words.end(), arguments.arguments.begin(), arguments.arguments.end());

    Child child;
    const int code = ::posix_spawnp(&child.pid, arguments.program.c_str(), actions.get(), attributes.get(),
                                    argumentPointers(words).data(), environ);
    if (code != 0) return std::unexpected(startError(code));
    child.standardOutput = std::move(output->reading);
    child.standardError = std::move(error->reading);
    return child;
}

}  // namespace quillo::ChildProcess
