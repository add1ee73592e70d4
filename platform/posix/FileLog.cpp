#include "platform/posix/FileLog.hpp"

#include <fmt/format.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "WindowEngine/support/Instant.hpp"
#include "WindowEngine/support/Text.hpp"
#include "platform/posix/PrivateFiles.hpp"

namespace quillo {
namespace {

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
    if (!PrivateFiles::createDirectories(file_.parent_path())) return;
    rotate(line.size());
    // Opened for each message: few are written, and another process may have moved the file meanwhile.
    const Descriptor file = PrivateFiles::open(file_, O_WRONLY | O_APPEND | O_NONBLOCK);
    if (!file) return;
    [[maybe_unused]] const ssize_t written = ::write(file.get(), line.data(), line.size());
}

}  // namespace quillo
