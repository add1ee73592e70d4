#include "platform/macos/MacLog.hpp"

#include "WindowEngine/support/Text.hpp"

namespace quillo {

/// Each message is public as a whole: without that mark the log would show no text to anybody but a debugger.
/// It may be, because what is logged carries names of applications and integrations only, never titles, paths
/// or addresses.
void MacLog::write(std::string_view category, LogLevel level, std::string_view message) {
    const std::string line = text::printable(message);
    const os_log_t log = logOf(category);
    const os_log_type_t type = level == LogLevel::error ? OS_LOG_TYPE_ERROR : OS_LOG_TYPE_INFO;
    os_log_with_type(log, type, "%{public}s", line.c_str());
}

os_log_t MacLog::logOf(std::string_view category) {
    const std::lock_guard guard(mutex_);
    const auto known = logs_.find(category);
    if (known != logs_.end()) return known->second.get();
    std::string name(category);
    Log log(os_log_create("app.quillo", name.c_str()));
    return logs_.emplace(std::move(name), std::move(log)).first->second.get();
}

}  // namespace quillo
