// Starting a child process with its two output pipes.
#pragma once
#include <sys/types.h>

#include <utility>

#include "WindowEngine/support/ChildProcess.hpp"

namespace quillo::ChildProcess {

/// Owns a file descriptor; -1 is none.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    bool isOpen() const noexcept { return number_ >= 0; }
    int number() const noexcept { return number_; }
    void close() noexcept;

  private:
    int number_ = -1;
};

struct Pipe {
    Descriptor reading;  // does not block
    Descriptor writing;

    /// Both ends are closed on exec and are none of the standard descriptors.
    static Result<Pipe> open();
};

struct Child {
    pid_t pid = 0;  // also of the process group it leads
    Descriptor standardOutput;
    Descriptor standardError;
};

/// Any thread. Returns once the program runs or could not be started.
Result<Child> spawn(const Arguments& arguments);

}  // namespace quillo::ChildProcess
