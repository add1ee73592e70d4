#include <fmt/format.h>
#include <simdjson.h>

#include <array>
#include <utility>

#include "WindowEngine/support/JsonPath.hpp"
#include "platform/simulated/SceneNames.hpp"

namespace quillo::simulated {
namespace {

using Json = simdjson::dom::element;

/// Reads fields of one object; the first trouble is kept and everything after it is skipped.
class Reader {
  public:
    explicit Reader(std::string_view sceneName) : sceneName_(sceneName) {}

    const std::optional<Error>& trouble() const { return trouble_; }

    void refuse(std::string_view path, std::string_view expectation) {
        if (!trouble_)
            trouble_ =
                Error{ErrorKind::invalidData, fmt::format("{}: {}: {}", sceneName_, path, expectation), 0};
    }

    /// An object whose members are all among `known`: a misspelt name must not be ignored silently.
    template <std::size_t N>
    bool object(Json json, const std::string& path, const std::array<std::string_view, N>& known) {
        simdjson::dom::object object;
        if (json.get_object().get(object)) {
            refuse(path.empty() ? "the scene" : path, "expected an object");
            return false;
        }
        for (const auto field : object) {
            if (std::ranges::find(known, field.key) == known.end()) {
                refuse(member(path, field.key), "unknown name");
                return false;
            }
        }
        return !trouble_;
    }

    static std::string member(std::string path, std::string_view key) {
        appendKey(path, key);
        return path;
    }

    void field(Json json, const std::string& path, std::string_view key, bool& value) {
        Json found;
        if (present(json, key, found) && found.get_bool().get(value))
            refuse(member(path, key), "expected true or false");
    }
    void field(Json json, const std::string& path, std::string_view key, double& value) {
        Json found;
        if (present(json, key, found) && found.get_double().get(value))
            refuse(member(path, key), "expected a number");
    }
    void field(Json json, const std::string& path, std::string_view key, std::int64_t& value) {
        Json found;
        if (present(json, key, found) && found.get_int64().get(value))
            refuse(member(path, key), "expected a whole number");
    }
    void field(Json json, const std::string& path, std::string_view key, std::string& value) {
        Json found;
        std::string_view text;
        if (!present(json, key, found)) return;
        if (found.get_string().get(text)) return refuse(member(path, key), "expected text");
        value = text;
    }
    void field(Json json, const std::string& path, std::string_view key, std::optional<std::string>& value) {
        std::string text;
        field(json, path, key, text);
        if (!text.empty()) value = text;
    }
    void field(Json json, const std::string& path, std::string_view key, Rect& value) {
        std::array<double, 4> numbers{};
        if (numbersOf(json, path, key, numbers, "expected [x, y, width, height]"))
            value = {numbers[0], numbers[1], numbers[2], numbers[3]};
    }
    void field(Json json, const std::string& path, std::string_view key, Size& value) {
        std::array<double, 2> numbers{};
        if (numbersOf(json, path, key, numbers, "expected [width, height]")) value = {numbers[0], numbers[1]};
    }
    void field(Json json, const std::string& path, std::string_view key, std::optional<Size>& value) {
        Size size;
        field(json, path, key, size);
        if (size != Size{}) value = size;
    }
    template <class T>
    void field(Json json, const std::string& path, std::string_view key, T& value, NameTable<T> names) {
        std::string text;
        field(json, path, key, text);
        if (text.empty()) return;
        const auto known = valueNamed<T>(text, names);
        if (!known)
            return refuse(member(path, key), fmt::format("unknown value, expected one of {}", listed(names)));
        value = *known;
    }
    template <class T>
    void list(Json json, const std::string& path, std::string_view key, std::vector<T>& values,
              void (*read)(Reader&, Json, const std::string&, T&)) {
        Json found;
        simdjson::dom::array array;
        if (!present(json, key, found)) return;
        if (found.get_array().get(array)) return refuse(member(path, key), "expected a list");
        for (const Json entry : array) {
            std::string place = member(path, key);
            appendIndex(place, static_cast<std::int64_t>(values.size()));
            read(*this, entry, place, values.emplace_back());
        }
    }

  private:
    bool present(Json json, std::string_view key, Json& found) const {
        return !trouble_ && !json.at_key(key).get(found);
    }

    template <std::size_t N>
    bool numbersOf(Json json, const std::string& path, std::string_view key, std::array<double, N>& numbers,
                   std::string_view expectation) {
        Json found;
        simdjson::dom::array array;
        if (!present(json, key, found)) return false;
        bool good = !found.get_array().get(array) && array.size() == N;
        for (std::size_t i = 0; good && i < N; ++i) good = !array.at(i).get_double().get(numbers[i]);
        if (!good) refuse(member(path, key), expectation);
        return good;
    }

    std::string_view sceneName_;
    std::optional<Error> trouble_;
};

void readDisplay(Reader& reader, Json json, const std::string& path, SceneDisplay& display) {
    static constexpr std::array<std::string_view, 6> known{"id",    "frame",    "visibleFrame",
                                                           "scale", "desktops", "shownDesktop"};
    if (!reader.object(json, path, known)) return;
    reader.field(json, path, "id", display.id);
    reader.field(json, path, "frame", display.frame);
    display.visibleFrame = display.frame;
    reader.field(json, path, "visibleFrame", display.visibleFrame);
    reader.field(json, path, "scale", display.scale);
    reader.field(json, path, "desktops", display.desktops);
    reader.field(json, path, "shownDesktop", display.shownDesktop);
    if (display.id.empty()) reader.refuse(Reader::member(path, "id"), "missing");
    if (!(display.frame.width > 0 && display.frame.height > 0))
        reader.refuse(Reader::member(path, "frame"), "missing or without area");
    if (display.desktops < 1) reader.refuse(Reader::member(path, "desktops"), "expected 1 or more");
    if (display.shownDesktop < 0 || display.shownDesktop >= display.desktops)
        reader.refuse(Reader::member(path, "shownDesktop"), "there is no such desktop");
}

void readText(Reader& reader, Json json, const std::string& path, std::string& value) {
    std::string_view text;
    if (json.get_string().get(text)) return reader.refuse(path, "expected text");
    value = text;
}

void readWindow(Reader& reader, Json json, const std::string& path, SceneWindow& window) {
    static constexpr std::array<std::string_view, 20> known{
        "title",    "subrole", "document",    "frame",       "minimized", "fullscreen",       "display",
        "desktop",  "listed",  "minimumSize", "maximumSize", "cell",      "opensAfter",       "closesAfter",
        "tabGroup", "unsaved", "tabs",        "private",     "toolbar",   "addressFieldDepth"};
    if (!reader.object(json, path, known)) return;
    reader.field(json, path, "title", window.title);
    reader.field(json, path, "subrole", window.subrole);
    reader.field(json, path, "document", window.document);
    reader.field(json, path, "frame", window.frame);
    reader.field(json, path, "minimized", window.minimized);
    reader.field(json, path, "fullscreen", window.fullscreen);
    reader.field(json, path, "display", window.display);
    reader.field(json, path, "desktop", window.desktop);
    reader.field(json, path, "listed", window.listed);
    reader.field(json, path, "minimumSize", window.minimumSize);
    reader.field(json, path, "maximumSize", window.maximumSize);
    reader.field(json, path, "cell", window.cell);
    reader.field(json, path, "opensAfter", window.opensAfter);
    reader.field(json, path, "closesAfter", window.closesAfter);
    reader.field(json, path, "tabGroup", window.tabGroup);
    reader.field(json, path, "unsaved", window.unsaved);
    reader.list(json, path, "tabs", window.tabs, readText);
    reader.field(json, path, "private", window.privateBrowsing);
    reader.field(json, path, "toolbar", window.toolbar);
    reader.field(json, path, "addressFieldDepth", window.addressFieldDepth);
    if (!(window.cell.width >= 1 && window.cell.height >= 1))
        reader.refuse(Reader::member(path, "cell"), "expected sizes of 1 or more");
    if (window.addressFieldDepth < 1)
        reader.refuse(Reader::member(path, "addressFieldDepth"), "expected 1 or more");
}

void readApplication(Reader& reader, Json json, const std::string& path, SceneApplication& application) {
    static constexpr std::array<std::string_view, 11> known{
        "identifier",    "name",    "policy",  "installed",       "running", "hidden",
        "launchSeconds", "windows", "reopens", "documentSeconds", "language"};
    if (!reader.object(json, path, known)) return;
    reader.field(json, path, "identifier", application.identifier);
    application.name = application.identifier;
    reader.field(json, path, "name", application.name);
    reader.field(json, path, "policy", application.policy, NameTable<ActivationPolicy>(policyNames));
    reader.field(json, path, "installed", application.installed);
    reader.field(json, path, "running", application.running);
    reader.field(json, path, "hidden", application.hidden);
    reader.field(json, path, "launchSeconds", application.launchSeconds);
    reader.list(json, path, "windows", application.windows, readWindow);
    reader.list(json, path, "reopens", application.reopens, readWindow);
    reader.field(json, path, "documentSeconds", application.documentSeconds);
    reader.field(json, path, "language", application.language);
    if (application.identifier.empty()) reader.refuse(Reader::member(path, "identifier"), "missing");
}

void readFault(Reader& reader, Json json, const std::string& path, Fault& fault) {
    static constexpr std::array<std::string_view, 8> known{"kind",  "application", "title",   "value",
                                                           "after", "seconds",     "onWrite", "onScript"};
    if (!reader.object(json, path, known)) return;
    Json kind;
    if (json.at_key("kind").get(kind)) return reader.refuse(Reader::member(path, "kind"), "missing");
    reader.field(json, path, "kind", fault.kind, NameTable<FaultKind>(faultNames));
    reader.field(json, path, "application", fault.application);
    reader.field(json, path, "title", fault.title);
    reader.field(json, path, "value", fault.value);
    reader.field(json, path, "after", fault.after);
    reader.field(json, path, "seconds", fault.seconds);
    reader.field(json, path, "onWrite", fault.onWrite);
    reader.field(json, path, "onScript", fault.onScript);
}

/// Names that others refer to must say which one they mean.
template <class T>
void refuseTwins(Reader& reader, std::string_view list, std::string_view key, const std::vector<T>& values,
                 std::string T::* name) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto first = std::ranges::find(values, values[i].*name, name);
        if (first != values.begin() + static_cast<std::ptrdiff_t>(i))
            reader.refuse(fmt::format("{}[{}].{}", list, i, key), "used twice");
    }
}

void check(Reader& reader, const Scene& scene) {
    refuseTwins(reader, "displays", "id", scene.displays, &SceneDisplay::id);
    refuseTwins(reader, "applications", "identifier", scene.applications, &SceneApplication::identifier);
    if (!scene.displays.empty() && scene.displays.front().frame.origin() != Point{})
        reader.refuse("displays[0].frame", "the first display is the primary one and starts at 0, 0");
}

}  // namespace

Result<Scene> readScene(std::string_view json, std::string_view name) {
    static constexpr std::array<std::string_view, 5> known{"trusted", "displays", "applications", "faults",
                                                           "missingFolders"};
    simdjson::dom::parser parser;
    Json root;
    if (const auto damage = parser.parse(simdjson::padded_string(json)).get(root))
        return fail(ErrorKind::invalidData, fmt::format("{}: {}", name, simdjson::error_message(damage)));
    Scene scene;
    Reader reader(name);
    if (reader.object(root, "", known)) {
        reader.field(root, "", "trusted", scene.trusted);
        reader.list(root, "", "displays", scene.displays, readDisplay);
        reader.list(root, "", "applications", scene.applications, readApplication);
        reader.list(root, "", "faults", scene.faults, readFault);
        reader.list(root, "", "missingFolders", scene.missingFolders, readText);
        check(reader, scene);
    }
    if (reader.trouble()) return std::unexpected(*reader.trouble());
    return scene;
}

}  // namespace quillo::simulated
