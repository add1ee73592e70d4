#include "WindowEngine/support/RecordWriter.hpp"
#include "platform/simulated/SceneFields.hpp"

namespace quillo::simulated {
namespace {

class SceneWriter : public RecordWriter<SceneWriter> {
  public:
    using RecordWriter::write;

    void write(const Rect& rect) { writeList(std::array{rect.x, rect.y, rect.width, rect.height}); }
    void write(const Size& size) { writeList(std::array{size.width, size.height}); }

    /// What has its usual value is left out, so that a scene stays short; but frames and enumerations are
    /// what one looks for first.
    template <class R, class T>
    static bool omits(const R& record, const Field<R, T>& field) {
        static const R usual;
        const T& value = record.*field.member;
        if constexpr (std::same_as<T, Rect>) {
            return field.usual && value == record.*field.usual;
        } else if constexpr (std::same_as<T, std::optional<std::string>>) {
            return !value || value->empty();
        } else if constexpr (requires { value.empty(); }) {
            if constexpr (std::same_as<T, std::string>) return value.empty() || value == usual.*field.member;
            return value.empty();
        } else {
            return !std::is_enum_v<T> && value == usual.*field.member;
        }
    }
};

}  // namespace

std::string writeScene(const Scene& scene) {
    return *SceneWriter().document(scene);  // every number of a scene came from a document and is finite
}

}  // namespace quillo::simulated
