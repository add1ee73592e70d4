#include "WindowEngine/library/AtomicFile.hpp"

#include "WindowEngine/support/Uuid.hpp"

namespace quillo {

Result<void> writeAtomically(FileSystem& files, const std::filesystem::path& file, std::string_view bytes) {
    // Named after nothing: a name of the greatest length leaves no room for an addition.
    const std::filesystem::path temporary = file.parent_path() / ("." + Uuid::random().upper() + ".next");
    if (const Result<void> created = files.createFile(temporary, bytes); !created) return created;
    Result<void> renamed = files.rename(temporary, file);
    if (!renamed) {
        [[maybe_unused]] const Result<void> removed = files.remove(temporary);
        return renamed;
    }
    return files.syncDirectory(file.parent_path());
}

}  // namespace quillo
