// Hands every call on to another log: a test overrides what it wants to see or to lose.
#pragma once
#include "WindowEngine/services/SystemLog.hpp"

namespace quillo {

class ForwardingSystemLog : public SystemLog {
  public:
    explicit ForwardingSystemLog(SystemLog& target) : target_(target) {}

    void write(std::string_view category, LogLevel level, std::string_view message) override {
        target_.write(category, level, message);
    }

  private:
    SystemLog& target_;
};

}  // namespace quillo
