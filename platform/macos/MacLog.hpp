// The system's unified log.
#pragma once
#include <os/log.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>

#include "WindowEngine/services/SystemLog.hpp"

namespace quillo {

/// Under the subsystem "app.quillo"; see it with `log stream --level info --predicate 'subsystem ==
/// "app.quillo"'`.
class MacLog final : public SystemLog {
  public:
    void write(std::string_view category, LogLevel level, std::string_view message) override;

  private:
    struct Release {
        void operator()(os_log_t log) const { os_release(log); }
    };
    using Log = std::unique_ptr<std::remove_pointer_t<os_log_t>, Release>;
    os_log_t logOf(std::string_view category);

    std::mutex mutex_;
    std::map<std::string, Log, std::less<>> logs_;  // by category
};

}  // namespace quillo
