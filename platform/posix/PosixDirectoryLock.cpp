// flock: released by the kernel when its holder ends in whatever way, and exclusive between two holders of
// one process as well.
#include <sys/file.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "platform/posix/Descriptor.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/posix/PrivateFiles.hpp"

namespace quillo {
namespace {

using Path = FileSystem::Path;
using namespace std::chrono_literals;

class HeldLock final : public DirectoryLock {
  public:
    explicit HeldLock(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

  private:
    Descriptor descriptor_;  // closing it releases the lock
};

enum class Attempt { held, unsupported, failed };

// Holders keep the lock for some milliseconds, so asking again is cheaper than a thread that could be
// woken; flock itself has no time limit.
Attempt acquire(int descriptor, std::chrono::milliseconds patience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (auto pause = 1ms;; pause = std::min(pause * 2, 20ms)) {
        if (retried([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0) return Attempt::held;
        if (errno != EWOULDBLOCK) {
            // Network file systems want a descriptor open for writing, which a directory never is.
            return errno == EBADF || errno == EINVAL || errno == ENOTSUP ? Attempt::unsupported
                                                                         : Attempt::failed;
        }
        if (std::chrono::steady_clock::now() >= deadline) return Attempt::failed;
        std::this_thread::sleep_for(pause);
    }
}

}  // namespace

Result<std::unique_ptr<DirectoryLock>> PosixFileSystem::lock(const Path& directory) {
    Descriptor opened(retried([&] { return ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!opened) return folderError("write to", directory);
    Attempt attempt = acquire(opened.get(), lockPatience_);
    if (attempt == Attempt::unsupported) {
        opened = PrivateFiles::open(directory / ".lock", O_RDWR);
        if (!opened) return folderError("write to", directory);
        attempt = acquire(opened.get(), lockPatience_);
    }
    if (attempt == Attempt::held) return std::make_unique<HeldLock>(std::move(opened));
    return folderError("write to", directory);
}

}  // namespace quillo
