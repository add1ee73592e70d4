// An owned file descriptor, and errno as our error value.
#pragma once
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <utility>

#include "WindowEngine/support/Error.hpp"

namespace quillo {

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

    explicit operator bool() const noexcept { return number_ >= 0; }
    int get() const noexcept { return number_; }
    void close() noexcept {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }

  private:
    int number_ = -1;
};

/// Repeats a system call that a signal interrupted.
auto retried(auto call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

/// "Could not read /a/b: Permission denied", its kind chosen by `code`.
std::unexpected<Error> fileError(std::string_view verb, const std::filesystem::path& file, int code = errno);
/// "Quillo can't write to /a: permission denied. Give yourself permission to it and try again.": of what is
/// written in a folder. Nobody knows the temporary file that it may be about. `verb` is "write to" or "read".
std::unexpected<Error> folderError(std::string_view verb, const std::filesystem::path& folder,
                                   int code = errno);

}  // namespace quillo
