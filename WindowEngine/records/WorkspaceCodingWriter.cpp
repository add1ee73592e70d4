// Records to documents.
#include <algorithm>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/records/WorkspaceFields.hpp"
#include "WindowEngine/support/RecordWriter.hpp"

namespace quillo::WorkspaceCoding {
namespace {

class WorkspaceWriter : public RecordWriter<WorkspaceWriter> {
  public:
    using RecordWriter::write;

    void write(const Url& value) { json_.text(value.string()); }
    void write(const Uuid& value) { json_.text(value.upper()); }
    void write(Instant value) { json_.text(formatInstant(value)); }
    void write(CleanSlateMode value) { json_.text(storedValue(value)); }
    void write(const Rect& r) { json_.pairs(r.x, r.y, r.width, r.height); }

    template <Record R>
    void write(const R& record) {
        static_assert(std::ranges::is_sorted(keysOf<R>), "documents have their keys in ascending order");
        RecordWriter::write(record);
    }
};

}  // namespace

Result<std::string> encode(const Workspace& workspace) {
    auto bytes = WorkspaceWriter().document(workspace);
    if (bytes && bytes->size() > mostBytes) return tooLarge("the document: larger than 32 MB");
    return bytes;
}
Result<std::string> encode(const WorkspaceSnapshot& snapshot) {
    return WorkspaceWriter().document(snapshot);
}
Result<std::string> encode(const WindowSnapshot& window) {
    return WorkspaceWriter().document(window);
}

}  // namespace quillo::WorkspaceCoding
