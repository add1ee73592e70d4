#include "platform/posix/PosixFileSystem.hpp"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <system_error>

#include "WindowEngine/support/Text.hpp"
#include "platform/posix/Descriptor.hpp"
#include "platform/posix/PrivateFiles.hpp"

namespace quillo {
namespace {

using Path = FileSystem::Path;

/// No file of ours comes near it, and a stranger's must not fill the memory.
constexpr std::int64_t largestFile = std::int64_t{32} << 20;

ErrorKind kindOf(int code) {
    switch (code) {
        case ENOENT:
            return ErrorKind::notFound;
        case EACCES:
        case EPERM:
        case EROFS:
            return ErrorKind::permission;
        case ENOSPC:
        case EDQUOT:
            return ErrorKind::noSpace;
        case EWOULDBLOCK:
            return ErrorKind::locked;
        default:
            return ErrorKind::io;
    }
}

std::string reasonOf(int code) {
    if (code == ELOOP || code == EMLINK) return "it is a symbolic link, which is not followed";
    return std::generic_category().message(code);
}

struct Trouble {
    std::string reason;
    std::string_view remedy;
};
Trouble troubleOf(int code) {
    switch (code) {
        case EACCES:
        case EPERM:
            return {"permission denied", "Give yourself permission to it and try again."};
        case EROFS:
            return {"the disk is read-only", "Make it writable and try again."};
        case ENOSPC:
            return {"the disk is full", "Free some space and try again."};
        case EDQUOT:
            return {"your share of the disk is used up", "Free some of it and try again."};
        case EWOULDBLOCK:
            return {"another program is writing there", "Try again in a moment."};
        default:
            return {text::lowercase(reasonOf(code)), "Look after the folder and its disk and try again."};
    }
}

// O_NONBLOCK keeps a named pipe from holding us up; regular files ignore it.
Descriptor openForReading(const Path& file, int flags = 0) {
    return Descriptor(retried(
        [&] { return ::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | flags); }));
}

Result<void> writeAll(int descriptor, std::string_view bytes, const Path& file) {
    while (!bytes.empty()) {
        const auto written = retried([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (written < 0) return folderError("write to", file.parent_path());
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

// Down to the medium: on macOS fsync alone stops at the drive's cache.
int sync(int descriptor) {
#ifdef F_FULLFSYNC
    if (retried([&] { return ::fcntl(descriptor, F_FULLFSYNC); }) == 0) return 0;
#endif
    return retried([&] { return ::fsync(descriptor); });
}

std::int64_t changedAt(const struct stat& status) {
#ifdef __APPLE__
    const timespec& time = status.st_ctimespec;
#else
    const timespec& time = status.st_ctim;
#endif
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

std::unexpected<Error> tooLarge(const Path& file) {
    return fail(ErrorKind::invalidData, "Could not read " + file.string() + ": it is larger than 32 MB",
                EFBIG);
}

Result<std::string> readAll(int descriptor, std::size_t expected, const Path& file) {
    std::string bytes;
    int code = 0;
    std::size_t length = 0;
    // More room than expected shows the end of the file without growing, and lets parsers read ahead.
    for (std::size_t room = expected + 128;; room *= 2) {
        bytes.resize_and_overwrite(room, [&](char* buffer, std::size_t size) {
            while (length < size) {
                const auto count =
                    retried([&] { return ::read(descriptor, buffer + length, size - length); });
                if (count < 0) code = errno;
                if (count <= 0) break;
                length += static_cast<std::size_t>(count);
            }
            return length;
        });
        if (code != 0) return fileError("read", file, code);
        if (length < room) return bytes;
        if (length > static_cast<std::size_t>(largestFile)) return tooLarge(file);
    }
}

// Makes the names in a directory durable. Some file systems cannot do this and say EINVAL; nothing is lost
// by going on, for they order names by themselves.
Result<void> syncNames(const Path& directory) {
    const Descriptor opened(
        retried([&] { return ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!opened) return folderError("write to", directory);
    if (sync(opened.get()) < 0 && errno != EINVAL && errno != ENOTSUP)
        return folderError("write to", directory);
    return {};
}

}  // namespace

std::unexpected<Error> fileError(std::string_view verb, const Path& file, int code) {
    return fail(kindOf(code), "Could not " + std::string(verb) + " " + file.string() + ": " + reasonOf(code),
                code);
}

std::unexpected<Error> folderError(std::string_view verb, const Path& folder, int code) {
    const Trouble trouble = troubleOf(code);
    return fail(kindOf(code),
                "Quillo can't " + std::string(verb) + " " + folder.string() + ": " + trouble.reason + ". " +
                    std::string(trouble.remedy),
                code);
}

Result<std::string> PosixFileSystem::read(const Path& file) {
    const Descriptor opened = openForReading(file);
    if (!opened) return fileError("read", file);
    struct stat status{};
    if (::fstat(opened.get(), &status) < 0) return fileError("read", file);
    if (!S_ISREG(status.st_mode)) {
        return fail(ErrorKind::io, "Could not read " + file.string() + ": it is not a regular file");
    }
    if (status.st_size > largestFile) return tooLarge(file);
    return readAll(opened.get(), static_cast<std::size_t>(status.st_size), file);
}

Result<void> PosixFileSystem::createDirectories(const Path& directory) {
    return PrivateFiles::createDirectories(directory, [](const Path& within) { (void)syncNames(within); });
}

Result<void> PosixFileSystem::createFile(const Path& file, std::string_view bytes) {
    const Descriptor opened = PrivateFiles::open(file, O_WRONLY | O_EXCL);
    if (!opened) return folderError("write to", file.parent_path());
    auto result = writeAll(opened.get(), bytes, file);
    if (result && sync(opened.get()) < 0) result = folderError("write to", file.parent_path());
    if (!result) ::unlink(file.c_str());
    return result;
}

Result<void> PosixFileSystem::copy(const Path& from, const Path& to) {
    const auto bytes = read(from);
    if (!bytes) return std::unexpected(bytes.error());
    return createFile(to, *bytes);
}

Result<void> PosixFileSystem::rename(const Path& from, const Path& to) {
    if (::rename(from.c_str(), to.c_str()) < 0) return folderError("write to", to.parent_path());
    return {};
}

Result<void> PosixFileSystem::remove(const Path& file) {
    if (::unlink(file.c_str()) < 0) return folderError("write to", file.parent_path());
    return {};
}

Result<void> PosixFileSystem::removeTree(const Path& directory) {
    std::error_code error;
    std::filesystem::remove_all(directory, error);
    if (error) return folderError("write to", directory, error.value());
    return {};
}

Result<std::vector<std::string>> PosixFileSystem::list(const Path& directory) {
    const std::unique_ptr<DIR, int (*)(DIR*)> opened(::opendir(directory.c_str()), &::closedir);
    if (!opened) return folderError("read", directory);
    std::vector<std::string> names;
    for (errno = 0; const dirent* entry = ::readdir(opened.get()); errno = 0) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") names.emplace_back(name);
    }
    if (errno != 0) return folderError("read", directory);
    return names;
}

Result<std::vector<EntryStamp>> PosixFileSystem::stamps(const Path& directory) {
    const auto names = list(directory);
    if (!names) return std::unexpected(names.error());
    std::vector<EntryStamp> stamps;
    for (const std::string& name : *names) {
        struct stat status{};
        if (::lstat((directory / name).c_str(), &status) < 0) continue;  // gone since
        stamps.push_back({name, status.st_ino, status.st_size, changedAt(status)});
    }
    std::ranges::sort(stamps);
    return stamps;
}

bool PosixFileSystem::exists(const Path& file) {
    struct stat status{};
    return ::lstat(file.c_str(), &status) == 0;
}

Result<void> PosixFileSystem::syncDirectory(const Path& directory) {
    return syncNames(directory);
}

}  // namespace quillo
