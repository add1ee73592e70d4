// The log as a file, for systems whose own log the person could not find ours in.
#pragma once
#include <cstddef>
#include <filesystem>
#include <mutex>

#include "WindowEngine/services/SystemLog.hpp"

namespace quillo {

/// Appends one line a message: instant, subsystem and category, level, text. The directory is made (0700) and
/// the file (0600) with the first message. Past `limit` bytes the file becomes FILE.1, in place of the one
/// before, so that the two never hold more than twice the limit. Several programs may write to one file.
/// What cannot be written is lost: a log never gets in the way.
class FileLog final : public SystemLog {
  public:
    static constexpr std::size_t usualLimit = 1 << 20;

    explicit FileLog(std::filesystem::path file, std::size_t limit = usualLimit)
        : file_(std::move(file)), limit_(limit) {}

    void write(std::string_view category, LogLevel level, std::string_view message) override;

  private:
    void rotate(std::size_t coming) const;

    std::filesystem::path file_;
    std::size_t limit_;
    std::mutex mutex_;
};

}  // namespace quillo
