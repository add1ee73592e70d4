#include "WindowEngine/Log.hpp"

#include <fmt/format.h>

namespace quillo::Log {
namespace {

constexpr std::string_view captureCategory = "capture";
constexpr std::string_view hotKeyCategory = "hotkeys";
constexpr std::string_view restoreCategory = "restore";

}  // namespace

void captured(SystemLog& log, std::size_t applications, std::size_t windows) {
    log.write(captureCategory, LogLevel::info,
              fmt::format("captured {} apps, {} windows", applications, windows));
}

void adapterCaptured(SystemLog& log, std::string_view adapter, std::int64_t urls) {
    log.write(captureCategory, LogLevel::info, fmt::format("adapter {} captured {} urls", adapter, urls));
}

void adapterFailed(SystemLog& log, std::string_view adapter, std::string_view failure) {
    log.write(captureCategory, LogLevel::error, fmt::format("adapter {} failed: {}", adapter, failure));
}

void ready(SystemLog& log, std::string_view bundleIdentifier, double seconds) {
    log.write(restoreCategory, LogLevel::info, fmt::format("{} ready at {:.6f}s", bundleIdentifier, seconds));
}

void requestedWindow(SystemLog& log, std::string_view bundleIdentifier) {
    log.write(restoreCategory, LogLevel::info,
              fmt::format("requested a new window for windowless {}", bundleIdentifier));
}

void desktopCreation(SystemLog& log, std::string_view failure) {
    log.write(restoreCategory, LogLevel::error, fmt::format("Desktop creation: {}", failure));
}

void hotKeyUnavailable(SystemLog& log, std::string_view label, int status) {
    log.write(hotKeyCategory, LogLevel::error, fmt::format("hotkey {} unavailable: {}", label, status));
}

void restoreFinished(SystemLog& log, std::size_t items, double seconds) {
    log.write(restoreCategory, LogLevel::info,
              fmt::format("restore finished: {} items in {:.6f}s", items, seconds));
}

}  // namespace quillo::Log
