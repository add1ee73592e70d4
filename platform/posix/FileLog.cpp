#include "platform/posix/FileLog.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <string>

#include "WindowEngine/support/Instant.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

/// Each directory that is missing is made for its owner only.
void makeDirectories(const std::filesystem::path& directory) {
    if (directory.empty() || mkdir(directory.c_str(), 0700) == 0 || errno != ENOENT) return;
    makeDirectories(directory.parent_path());
    mkdir(directory.c_str(), 0700);
}

std::string formatted(std::string_view category, LogLevel level, std::string_view message) {
    const auto now = std::chrono::time_point_cast<Instant::duration>(std::chrono::system_clock::now());
    return fmt::format("{} app.quillo {} {} {}\n", formatInstant(now), category,
                       level == LogLevel::error ? "error" : "info", text::printable(message));
}

}  // namespace

void FileLog::rotate(std::size_t coming) const {
    struct stat status{};
    if (lstat(file_.c_str(), &status) != 0 || static_cast<std::size_t>(status.st_size) + coming <= limit_)
        return;
    std::filesystem::path older = file_;
    older += ".1";
    rename(file_.c_str(), older.c_str());
}

void FileLog::write(std::string_view category, LogLevel level, std::string_view message) {
    const std::string line = formatted(category, level, message);
    const std::lock_guard guard(mutex_);
    makeDirectories(file_.parent_path());
    rotate(line.size());
    // Opened for each message: few are written, and another process may have moved the file meanwhile.
    const int descriptor =
        open(file_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    if (descriptor < 0) return;
    [[maybe_unused]] const ssize_t written = ::write(descriptor, line.data(), line.size());
    close(descriptor);
}

}  // namespace quillo
