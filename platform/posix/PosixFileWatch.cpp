// Watching a directory: inotify on Linux. Elsewhere the call says that it cannot.
#include "platform/posix/Descriptor.hpp"
#include "platform/posix/PosixFileSystem.hpp"

#ifdef __linux__
#include <poll.h>
#include <sys/inotify.h>

#include <array>
#include <thread>
#endif

namespace quillo {
#ifdef __linux__
namespace {

constexpr std::uint32_t entryChanges = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE |
                                       IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

class InotifyWatch final : public FileWatch {
  public:
    InotifyWatch(Descriptor events, Descriptor stopReader, Descriptor stopWriter,
                 std::function<void()> changed)
        : events_(std::move(events)),
          stopReader_(std::move(stopReader)),
          stopWriter_(std::move(stopWriter)),
          changed_(std::move(changed)),
          thread_([this] { run(); }) {}

    ~InotifyWatch() override {
        stopWriter_ = Descriptor();  // hang-up wakes the thread
        thread_.join();
    }

  private:
    void run() {
        std::array<pollfd, 2> polled{pollfd{events_.get(), POLLIN, 0}, pollfd{stopReader_.get(), POLLIN, 0}};
        while (true) {
            if (retried([&] { return ::poll(polled.data(), polled.size(), -1); }) < 0) return;
            if (polled[1].revents != 0) return;
            if (drain()) changed_();
        }
    }

    // One call for all changes that have come together.
    bool drain() {
        alignas(inotify_event) std::array<char, 4096> buffer;
        bool any = false;
        while (retried([&] { return ::read(events_.get(), buffer.data(), buffer.size()); }) > 0) any = true;
        return any;
    }

    Descriptor events_;
    Descriptor stopReader_;
    Descriptor stopWriter_;
    std::function<void()> changed_;
    std::thread thread_;
};

}  // namespace

Result<std::unique_ptr<FileWatch>> PosixFileSystem::watch(const Path& directory,
                                                          std::function<void()> changed) {
    Descriptor events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!events || ::inotify_add_watch(events.get(), directory.c_str(), entryChanges) < 0) {
        return fileError("watch", directory);
    }
    std::array<int, 2> stop{};
    if (::pipe2(stop.data(), O_CLOEXEC) < 0) return fileError("watch", directory);
    return std::make_unique<InotifyWatch>(std::move(events), Descriptor(stop[0]), Descriptor(stop[1]),
                                          std::move(changed));
}
#else
Result<std::unique_ptr<FileWatch>> PosixFileSystem::watch(const Path&, std::function<void()>) {
    return fail(ErrorKind::unavailable, "Directories are not watched on this system.");
}
#endif

}  // namespace quillo
