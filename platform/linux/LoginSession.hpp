// The person's session as the login service knows it.
#pragma once
#include <chrono>
#include <memory>

namespace quillo {

/// For one thread. The bus is asked on a thread of its own, which is left behind where the bus hangs.
class LoginSession {
  public:
    /// `patience`: how long a question may wait for its answer.
    explicit LoginSession(std::chrono::milliseconds patience = std::chrono::milliseconds(250));
    LoginSession(const LoginSession&) = delete;
    LoginSession& operator=(const LoginSession&) = delete;
    ~LoginSession();

    /// Whether a screen locker has said that the session is locked; false where nobody knows of one. Without
    /// an answer in time, what was last known.
    bool locked();

  private:
    struct Shared;
    std::chrono::milliseconds patience_;
    std::shared_ptr<Shared> shared_;
};

}  // namespace quillo
