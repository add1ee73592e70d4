#include "WindowEngine/library/UndoFile.hpp"

#include "WindowEngine/library/AtomicFile.hpp"
#include "WindowEngine/records/UndoCoding.hpp"

namespace quillo {

Result<void> UndoFile::save(const UndoRecord& record) const {
    const Result<std::string> bytes = UndoCoding::encode(record);
    if (!bytes) return std::unexpected(bytes.error());
    if (const Result<void> made = files_->createDirectories(directory_); !made) return made;
    return writeAtomically(*files_, file(), *bytes);
}

Result<std::optional<UndoRecord>> UndoFile::load() const {
    if (!files_->exists(file())) return std::nullopt;
    const Result<std::string> bytes = files_->read(file());
    if (!bytes) return std::unexpected(bytes.error());
    Result<UndoRecord> record = UndoCoding::decode(*bytes);
    if (!record) {
        const std::string name = file().filename().string();
        return fail(record.error().kind, name + ": " + record.error().text);
    }
    return *std::move(record);
}

Result<void> UndoFile::remove() const {
    Result<void> removed = files_->remove(file());
    if (removed || removed.error().kind == ErrorKind::notFound) return {};
    return removed;
}

}  // namespace quillo
