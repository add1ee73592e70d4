// What a platform can do, said before it is tried.
#pragma once
#include <string>
#include <utility>

namespace quillo {

class Capability {
  public:
    static Capability available() { return Capability({}); }
    /// `reason` is a sentence for the person.
    static Capability unavailable(std::string reason) { return Capability(std::move(reason)); }

    explicit operator bool() const { return reason_.empty(); }
    const std::string& reason() const { return reason_; }  // empty when available

  private:
    explicit Capability(std::string reason) : reason_(std::move(reason)) {}
    std::string reason_;
};

}  // namespace quillo
