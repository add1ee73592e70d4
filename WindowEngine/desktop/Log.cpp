#include "WindowEngine/desktop/Log.hpp"

#include <fmt/format.h>

#include <algorithm>

namespace quillo::Log {
namespace {

constexpr std::string_view captureCategory = "capture";
constexpr std::string_view hotKeyCategory = "hotkeys";
constexpr std::string_view restoreCategory = "restore";

/// A system that has no identifiers lends some other text, a window's class perhaps, and whoever wrote that
/// may have put a title or an address there.
std::string_view identifier(std::string_view given) {
    constexpr std::size_t longest = 255;
    const auto belongs = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
               c == '_' || c == '-';
    };
    const bool isOne = !given.empty() && given.size() <= longest && std::ranges::all_of(given, belongs);
    return isOne ? given : "(not an identifier)";
}

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
    log.write(restoreCategory, LogLevel::info,
              fmt::format("{} ready at {:.6f}s", identifier(bundleIdentifier), seconds));
}

void requestedWindow(SystemLog& log, std::string_view bundleIdentifier) {
    log.write(restoreCategory, LogLevel::info,
              fmt::format("requested a new window for windowless {}", identifier(bundleIdentifier)));
}

void requestedMore(SystemLog& log, std::string_view bundleIdentifier, std::size_t windows) {
    log.write(restoreCategory, LogLevel::info,
              fmt::format("{} is asked for {} more windows", identifier(bundleIdentifier), windows));
}

void desktopCreation(SystemLog& log, std::string_view failure) {
    log.write(restoreCategory, LogLevel::error, fmt::format("Desktop creation: {}", failure));
}

void hotKeyUnavailable(SystemLog& log, std::string_view label, int status) {
    log.write(hotKeyCategory, LogLevel::error, fmt::format("hotkey {} unavailable: {}", label, status));
}

void notBack(SystemLog& log, std::string_view bundleIdentifier, std::string_view outcome,
             std::string_view reason, std::size_t count) {
    log.write(restoreCategory, LogLevel::info,
              fmt::format("{} of {} {}: {}", count, identifier(bundleIdentifier), outcome, reason));
}

void restoreFinished(SystemLog& log, std::size_t items, double seconds) {
    log.write(restoreCategory, LogLevel::info,
              fmt::format("restore finished: {} items in {:.6f}s", items, seconds));
}

}  // namespace quillo::Log
