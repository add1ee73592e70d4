// The system's log. Texts carry application and integration names only: never a title, a path or an address.
#pragma once
#include <string_view>

namespace quillo {

enum class LogLevel { info, error };

class SystemLog {
  public:
    virtual ~SystemLog() = default;
    /// `category` is "capture", "restore" or "hotkeys" (subsystem app.quillo). What is not printable in
    /// `message` is spelt out (text::printable), on one line. Never fails, any thread.
    virtual void write(std::string_view category, LogLevel level, std::string_view message) = 0;
};

}  // namespace quillo
