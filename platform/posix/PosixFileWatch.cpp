// Watching a directory: inotify on Linux, kqueue elsewhere.
#include <poll.h>

#include <array>
#include <thread>

#include "platform/posix/Descriptor.hpp"
#include "platform/posix/PosixFileSystem.hpp"

#ifdef __linux__
#include <sys/inotify.h>
#else
#include <sys/event.h>
#endif

namespace quillo {
namespace {

// What tells of changes: poll() says that some came, anyChange() takes them all.
#ifdef __linux__
constexpr std::uint32_t entryChanges = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE |
                                       IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

class DirectoryEvents {
  public:
    explicit DirectoryEvents(const std::filesystem::path& directory)
        : queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
          watching_(queue_ && ::inotify_add_watch(queue_.get(), directory.c_str(), entryChanges) >= 0) {}

    explicit operator bool() const { return watching_; }
    int descriptor() const { return queue_.get(); }

    bool anyChange() {
        alignas(inotify_event) std::array<char, 4096> buffer;
        bool any = false;
        while (retried([&] { return ::read(queue_.get(), buffer.data(), buffer.size()); }) > 0) any = true;
        return any;
    }

  private:
    Descriptor queue_;
    bool watching_ = false;
};
#else
// Entries that come, go and take another's place, which is how files are saved here. What is written into a
// file where it stands is not told: a kqueue would need each file open.
class DirectoryEvents {
  public:
    explicit DirectoryEvents(const std::filesystem::path& directory)
        : directory_(::open(directory.c_str(), O_EVTONLY | O_DIRECTORY | O_CLOEXEC)), queue_(::kqueue()) {
        if (!directory_ || !queue_) return;
        struct kevent wanted{};
        EV_SET(&wanted, static_cast<std::uintptr_t>(directory_.get()), EVFILT_VNODE, EV_ADD | EV_CLEAR,
               NOTE_WRITE | NOTE_DELETE | NOTE_RENAME | NOTE_REVOKE, 0, nullptr);
        watching_ = ::fcntl(queue_.get(), F_SETFD, FD_CLOEXEC) == 0 &&
                    ::kevent(queue_.get(), &wanted, 1, nullptr, 0, nullptr) == 0;
    }

    explicit operator bool() const { return watching_; }
    int descriptor() const { return queue_.get(); }

    bool anyChange() {
        struct kevent change{};  // several of one directory are one, for they are cleared together
        const timespec atOnce{};
        return retried([&] { return ::kevent(queue_.get(), nullptr, 0, &change, 1, &atOnce); }) > 0;
    }

  private:
    Descriptor directory_;
    Descriptor queue_;
    bool watching_ = false;
};
#endif

class DirectoryEventsWatch final : public FileWatch {
  public:
    DirectoryEventsWatch(DirectoryEvents events, Descriptor stopReader, Descriptor stopWriter,
                         std::function<void()> changed)
        : events_(std::move(events)),
          stopReader_(std::move(stopReader)),
          stopWriter_(std::move(stopWriter)),
          changed_(std::move(changed)),
          thread_([this] { run(); }) {}

    ~DirectoryEventsWatch() override {
        stopWriter_ = Descriptor();  // hang-up wakes the thread
        thread_.join();
    }

  private:
    void run() {
        std::array<pollfd, 2> polled{pollfd{events_.descriptor(), POLLIN, 0},
                                     pollfd{stopReader_.get(), POLLIN, 0}};
        while (true) {
            if (retried([&] { return ::poll(polled.data(), polled.size(), -1); }) < 0) return;
            if (polled[1].revents != 0) return;
            if (events_.anyChange()) changed_();
        }
    }

    DirectoryEvents events_;
    Descriptor stopReader_;
    Descriptor stopWriter_;
    std::function<void()> changed_;
    std::thread thread_;
};

}  // namespace

Result<std::unique_ptr<FileWatch>> PosixFileSystem::watch(const Path& directory,
                                                          std::function<void()> changed) {
    DirectoryEvents events(directory);
    if (!events) return fileError("watch", directory);
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) < 0) return fileError("watch", directory);
    Descriptor stopReader(ends[0]);
    Descriptor stopWriter(ends[1]);
    // A child that held the writing end would keep the thread from waking. No mac has pipe2().
    for (const int end : ends) {
        if (::fcntl(end, F_SETFD, FD_CLOEXEC) < 0) return fileError("watch", directory);
    }
    return std::make_unique<DirectoryEventsWatch>(std::move(events), std::move(stopReader),
                                                  std::move(stopWriter), std::move(changed));
}

}  // namespace quillo
