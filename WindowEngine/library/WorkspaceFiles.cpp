#include "WindowEngine/library/WorkspaceFiles.hpp"

#include <algorithm>
#include <optional>
#include <vector>

#include "WindowEngine/records/WorkspaceCoding.hpp"

namespace quillo::WorkspaceFiles {
namespace {

using Path = std::filesystem::path;

constexpr std::string_view temporaryEnding = ".next", damagedEnding = ".damaged";
constexpr std::size_t uuidLength = 36;

// The identifier whose save made a temporary file of this name.
std::optional<Uuid> ownerOfTemporary(std::string_view name) {
    if (!name.starts_with('.') || !name.ends_with(temporaryEnding) ||
        name.size() != 2 + 2 * uuidLength + temporaryEnding.size() || name[1 + uuidLength] != '.') {
        return std::nullopt;
    }
    return Uuid::parse(name.substr(1, uuidLength));
}

// We hold the lock, so no save is under way: temporary files of this identifier are left-overs, and so are
// those of a workspace whose first save never came to its end. Those of other workspaces wait for their next
// save.
void removeStaleTemporaries(FileSystem& files, const Path& directory, const Uuid& id) {
    const auto names = files.list(directory);
    if (!names) return;
    const auto stands = [&](const std::string& name) {
        return std::ranges::find(*names, name) != names->end();
    };
    for (const std::string& name : *names) {
        const auto owner = ownerOfTemporary(name);
        if (!owner) continue;
        const std::string primary = primaryName(*owner);
        if (*owner == id || (!stands(primary) && !stands(backupName(primary)))) {
            (void)files.remove(directory / name);
        }
    }
}

// Puts a complete temporary file in the place of `file`; on failure the temporary is gone.
Result<void> moveIntoPlace(FileSystem& files, const Path& temporary, const Path& file) {
    auto moved = files.rename(temporary, file);
    if (!moved) (void)files.remove(temporary);
    return moved;
}

// Copied beside and renamed, so that the backup is complete at every moment too.
Result<void> keepAsBackup(FileSystem& files, const Path& primary, const Path& backup, const Uuid& id) {
    const Path temporary = primary.parent_path() / temporaryName(id);
    if (auto copied = files.copy(primary, temporary); !copied) return copied;
    return moveIntoPlace(files, temporary, backup);
}

// A damaged primary does not push out a backup, which is the only complete copy then, and one that cannot be
// read for another reason is not overwritten.
Result<void> keepPrimary(FileSystem& files, const Path& primary, const Uuid& id) {
    const auto current = read(files, primary);
    if (!current && isDamaged(current.error())) return keepDamaged(files, primary, id);
    if (!current) return std::unexpected(current.error());
    return keepAsBackup(files, primary, primary.parent_path() / backupName(primary.filename().string()), id);
}

Result<void> putInPlace(FileSystem& files, const Path& temporary, const Path& primary, const Uuid& id) {
    if (files.exists(primary)) {
        if (auto kept = keepPrimary(files, primary, id); !kept) return kept;
    }
    return files.rename(temporary, primary);
}

}  // namespace

std::string primaryName(const Uuid& id) {
    return id.lower() + ".json";
}

std::string backupName(std::string_view primaryName) {
    return std::string(primaryName) + ".bak";
}

std::string temporaryName(const Uuid& id) {
    return "." + id.lower() + "." + Uuid::random().upper() + std::string(temporaryEnding);
}

bool hasExtension(std::string_view name, std::string_view extension) {
    const auto dot = name.rfind('.');
    return dot != std::string_view::npos && dot > 0 && name.substr(dot + 1) == extension;
}

std::vector<std::string> primariesAmong(const std::vector<std::string>& names) {
    std::vector<std::string> primaries;
    for (const std::string& name : names) {
        if (hasExtension(name, "json")) primaries.push_back(name);
        if (!hasExtension(name, "bak")) continue;
        std::string primary = name.substr(0, name.size() - std::string_view(".bak").size());
        if (hasExtension(primary, "json")) primaries.push_back(std::move(primary));
    }
    std::ranges::sort(primaries);
    const auto repeated = std::ranges::unique(primaries);
    primaries.erase(repeated.begin(), repeated.end());
    return primaries;
}

Result<Workspace> read(FileSystem& files, const Path& file) {
    const auto bytes = files.read(file);
    if (!bytes) return std::unexpected(bytes.error());
    return WorkspaceCoding::decode(*bytes, bytes->capacity() - bytes->size());
}

bool isDamaged(const Error& error) {
    return error.kind == ErrorKind::invalidData && !WorkspaceCoding::isTooLarge(error);
}

std::vector<std::string> damagedNames(const Uuid& id) {
    const std::string first = primaryName(id) + std::string(damagedEnding);
    return {first, first + "-2", first + "-3"};
}

bool isDamagedName(std::string_view name) {
    const auto ending = name.rfind(damagedEnding);
    return ending != std::string_view::npos && hasExtension(name.substr(0, ending), "json");
}

Result<void> keepDamaged(FileSystem& files, const Path& file, const Uuid& id) {
    const auto bytes = files.read(file);
    if (!bytes) return std::unexpected(bytes.error());
    const Path directory = file.parent_path();
    const std::vector<std::string> names = damagedNames(id);
    for (const std::string& name : names) {
        if (files.read(directory / name) == *bytes) return {};
    }
    const auto stands = [&](const std::string& name) { return files.exists(directory / name); };
    if (std::ranges::all_of(names, stands)) {
        for (std::size_t i = 1; i < names.size(); ++i) {
            if (auto moved = files.rename(directory / names[i], directory / names[i - 1]); !moved)
                return moved;
        }
    }
    const auto free = std::ranges::find_if_not(names, stands);
    if (auto written = files.createFile(directory / *free, *bytes); !written) return written;
    return files.syncDirectory(directory);
}

Result<void> removeDurably(FileSystem& files, const Path& directory, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        auto removed = files.remove(directory / name);
        if (!removed && removed.error().kind != ErrorKind::notFound) return removed;
    }
    return files.syncDirectory(directory);
}

Result<void> replace(FileSystem& files, const Path& file, const Uuid& id, std::string_view bytes) {
    const Path temporary = file.parent_path() / temporaryName(id);
    if (auto written = files.createFile(temporary, bytes); !written) return written;
    if (auto moved = moveIntoPlace(files, temporary, file); !moved) return moved;
    return files.syncDirectory(file.parent_path());
}

Result<void> save(FileSystem& files, const Path& directory, const Uuid& id, std::string_view bytes) {
    removeStaleTemporaries(files, directory, id);
    const Path temporary = directory / temporaryName(id);
    if (auto written = files.createFile(temporary, bytes); !written) return written;
    if (auto placed = putInPlace(files, temporary, directory / primaryName(id), id); !placed) {
        (void)files.remove(temporary);
        return placed;
    }
    return files.syncDirectory(directory);
}

}  // namespace quillo::WorkspaceFiles
