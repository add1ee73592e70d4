#include "platform/posix/PrivateFiles.hpp"

#include <sys/stat.h>

namespace quillo::PrivateFiles {
namespace {

constexpr mode_t forOthers = S_IRWXG | S_IRWXO;
constexpr mode_t ownersFile = S_IRUSR | S_IWUSR;

bool isOwnDirectory(const struct stat& status) {
    return S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
}

/// Null: made. Otherwise errno.
int make(const Path& directory) {
    if (::mkdir(directory.c_str(), S_IRWXU) != 0) return errno;
    return ::chmod(directory.c_str(), S_IRWXU) == 0 ? 0 : errno;  // the umask took some of it, perhaps
}

}  // namespace

Result<void> createDirectories(const Path& directory, void (*made)(const Path& within)) {
    int code = make(directory);
    const Path parent = directory.parent_path();
    if (code == ENOENT && !parent.empty() && parent != directory) {
        if (Result<void> created = createDirectories(parent, made); !created) return created;
        code = make(directory);
    }
    struct stat status{};
    if (code == EEXIST && ::stat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
        narrow(directory);
        return {};
    }
    if (code != 0) return folderError("write to", directory, code);
    if (made) made(parent.empty() ? "." : parent);
    return {};
}

void narrow(const Path& directory) {
    struct stat status{};
    if (::stat(directory.c_str(), &status) != 0 || !isOwnDirectory(status)) return;
    if ((status.st_mode & forOthers) == 0 || (status.st_mode & S_ISVTX) != 0) return;
    [[maybe_unused]] const int changed = ::chmod(directory.c_str(), status.st_mode & 07777 & ~forOthers);
}

bool isPrivate(const Path& directory) {
    struct stat status{};
    return ::stat(directory.c_str(), &status) == 0 && isOwnDirectory(status) &&
           (status.st_mode & forOthers) == 0;
}

Descriptor open(const Path& file, int flags) {
    Descriptor opened(
        retried([&] { return ::open(file.c_str(), flags | O_CREAT | O_NOFOLLOW | O_CLOEXEC, ownersFile); }));
    struct stat status{};
    if (opened && ::fstat(opened.get(), &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_uid == ::geteuid() && (status.st_mode & 07777) != ownersFile) {
        [[maybe_unused]] const int changed = ::fchmod(opened.get(), ownersFile);
    }
    return opened;
}

}  // namespace quillo::PrivateFiles
