#include "platform/posix/DocumentOnDisk.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "WindowEngine/DocumentSafety.hpp"
#include "platform/posix/Descriptor.hpp"

namespace quillo {
namespace {

/// Programs of Linux (AppImages among them), of Windows and of a Mac. Some helpers run these without asking
/// the mode; scripts are run by their mode only.
bool beginsAsProgram(int descriptor) {
    std::array<char, 4> bytes{};
    const auto count = ::pread(descriptor, bytes.data(), bytes.size(), 0);
    const std::string_view start(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    using namespace std::string_view_literals;
    for (const auto magic : {"\x7f"
                             "ELF"sv,
                             "\xcf\xfa\xed\xfe"sv, "\xce\xfa\xed\xfe"sv, "\xca\xfe\xba\xbe"sv}) {
        if (start == magic) return true;
    }
    return start.starts_with("MZ") && start.size() == 4 && start[2] < ' ';  // not a text that begins so
}

bool isHarmlessFile(const std::string& path) {
    // Opened only once it is known to be a regular file: even opening a device can have effects.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status{};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
    const bool executable = (status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0;
    return !executable && !beginsAsProgram(file.get());
}

}  // namespace

bool documentOpensSafely(const Url& document) {
    const auto path = document.filePath();
    if (!path || document.string().find_first_of("?#") != std::string::npos) return false;
    std::error_code error;
    const auto real = std::filesystem::canonical(*path, error);
    if (error) return false;
    const auto oneOf = [&](auto isProgram) { return isProgram(*path) || isProgram(real.string()); };
    const auto type = std::filesystem::status(real, error).type();
    if (type == std::filesystem::file_type::directory) return !oneOf(DocumentSafety::isProgramFolder);
    return type == std::filesystem::file_type::regular && !oneOf(DocumentSafety::isProgramFile) &&
           isHarmlessFile(real.string());
}

}  // namespace quillo
