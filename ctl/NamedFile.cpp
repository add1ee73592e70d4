#include "ctl/NamedFile.hpp"

#include <array>
#include <iostream>

#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

constexpr std::size_t mostBytes = std::size_t{32} << 20;  // far more than any workspace has

Result<std::string> readStandardInput() {
    std::string bytes;
    std::array<char, 65536> chunk{};
    while (std::cin.read(chunk.data(), chunk.size()), std::cin.gcount() > 0) {
        bytes.append(chunk.data(), static_cast<std::size_t>(std::cin.gcount()));
        if (bytes.size() > mostBytes) return fail(ErrorKind::invalidData, "larger than 32 MB");
    }
    if (std::cin.bad()) return fail(ErrorKind::io, "could not be read");
    return bytes;
}

}  // namespace

std::filesystem::path namedFile(const std::filesystem::path& path) {
    std::filesystem::path absolute = absolutePath(path);
    std::error_code trouble;
    std::filesystem::path followed = std::filesystem::canonical(absolute, trouble);
    if (!trouble) return followed;
    if (trouble != std::errc::no_such_file_or_directory) return absolute;
    const std::filesystem::path target = std::filesystem::read_symlink(absolute, trouble);
    return trouble ? absolute : namedFile(absolute.parent_path() / target);
}

Result<std::filesystem::path, Failure> fileArgument(const Arguments& arguments) {
    if (arguments.file.empty()) return failure("FILE: the name is empty", Exit::usage);
    return namedFile(arguments.file);
}

Result<std::string, Failure> readNamedFile(CommandContext& context, const Arguments& arguments) {
    const Result<std::filesystem::path, Failure> file = fileArgument(arguments);
    if (!file) return std::unexpected(file.error());
    Result<std::string> bytes =
        arguments.file == standardStream ? readStandardInput() : context.files.read(*file);
    if (!bytes) return badFile(arguments.file, bytes.error());
    return *std::move(bytes);
}

std::unexpected<Failure> badFile(const std::string& file, const Error& error) {
    const bool named = file != standardStream && error.text.find(file) != std::string::npos;
    return failure(named ? printable(error.text) : fileName(file) + ": " + printable(error.text));
}

std::string fileName(const std::string& file) {
    return file == standardStream ? "standard input" : printable(file);
}

}  // namespace quillo::ctl
