#include <fmt/format.h>
#include <simdjson.h>

#include "WindowEngine/support/RecordReader.hpp"
#include "platform/simulated/SceneFields.hpp"

namespace quillo::simulated {
namespace {

// A misspelt name must not be ignored silently; whatever is left out keeps its usual value, but a fault has
// to say what goes wrong.
class SceneReader : public RecordReader<SceneReader> {
  public:
    static constexpr ObjectRules rules{.unknownKeys = false, .repeatedKeys = true, .nullIsMissing = false};
    template <class R, class T>
    static constexpr bool isRequired = std::same_as<T, FaultKind>;

    using RecordReader::check;
    using RecordReader::read;

    bool read(Element element, const JsonPlace& place, std::int64_t& value) {
        return !element.get_int64().get(value) || refuse(place, "expected a whole number");
    }

    bool read(Element element, const JsonPlace& place, Rect& rect) {
        return readNumbers(element, {&rect.x, &rect.y, &rect.width, &rect.height}) ||
               refuse(place, "expected [x, y, width, height]");
    }

    bool read(Element element, const JsonPlace& place, Size& size) {
        return readNumbers(element, {&size.width, &size.height}) || refuse(place, "expected [width, height]");
    }

    /// An empty text and a size of nothing are as good as none.
    template <class T>
    bool read(Element element, const JsonPlace& place, std::optional<T>& value) {
        T given{};
        if (!read(element, place, given)) return false;
        if (given != T{}) value = std::move(given);
        return true;
    }

    /// An empty name leaves the usual value.
    template <Named T>
    bool read(Element element, const JsonPlace& place, T& value) {
        std::string_view text;
        const bool isEmpty = !element.get_string().get(text) && text.empty();
        return isEmpty || RecordReader::read(element, place, value);
    }

    bool check(const JsonPlace& place, const SceneDisplay& display) {
        if (display.id.empty()) return refuse({&place, "id"}, "missing");
        if (!(display.frame.width > 0 && display.frame.height > 0))
            return refuse({&place, "frame"}, "missing or without area");
        if (display.desktops < 1) return refuse({&place, "desktops"}, "expected 1 or more");
        return (display.shownDesktop >= 0 && display.shownDesktop < display.desktops) ||
               refuse({&place, "shownDesktop"}, "there is no such desktop");
    }

    bool check(const JsonPlace& place, const SceneWindow& window) {
        if (!(window.cell.width >= 1 && window.cell.height >= 1))
            return refuse({&place, "cell"}, "expected sizes of 1 or more");
        return window.addressFieldDepth >= 1 || refuse({&place, "addressFieldDepth"}, "expected 1 or more");
    }

    bool check(const JsonPlace& place, const SceneApplication& application) {
        return !application.identifier.empty() || refuse({&place, "identifier"}, "missing");
    }

    bool check(const JsonPlace& place, const Scene& scene) {
        const JsonPlace displays{&place, "displays"}, applications{&place, "applications"},
            primary{&displays, {}, 0};
        if (!checkNames(displays, "id", scene.displays, &SceneDisplay::id) ||
            !checkNames(applications, "identifier", scene.applications, &SceneApplication::identifier))
            return false;
        // On X11 the primary display may stand anywhere.
        return scene.likeX11 || scene.displays.empty() || scene.displays.front().frame.origin() == Point{} ||
               refuse({&primary, "frame"}, "the first display is the primary one and starts at 0, 0");
    }

  private:
    /// Names that others refer to must say which one they mean.
    template <class T>
    bool checkNames(const JsonPlace& list, std::string_view key, const std::vector<T>& values,
                    std::string T::* name) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto first = std::ranges::find(values, values[i].*name, name);
            const JsonPlace place{&list, {}, static_cast<std::int64_t>(i)};
            if (first != values.begin() + place.index) return refuse({&place, key}, "used twice");
        }
        return true;
    }
};

}  // namespace

Result<Scene> readScene(std::string_view json, std::string_view name) {
    simdjson::dom::parser parser;
    JsonReader::Element root;
    if (const auto damage = parser.parse(simdjson::padded_string(json)).get(root))
        return fail(ErrorKind::invalidData, fmt::format("{}: {}", name, simdjson::error_message(damage)));
    Scene scene;
    SceneReader reader;
    if (!reader.read(root, {.key = "the scene"}, scene))
        return fail(ErrorKind::invalidData, fmt::format("{}: {}", name, reader.failure->text));
    return scene;
}

}  // namespace quillo::simulated
