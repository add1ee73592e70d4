// Settings to JSON and back.
#include <algorithm>

#include "WindowEngine/library/AutoSnapshotPolicy.hpp"
#include "WindowEngine/support/RecordReader.hpp"
#include "WindowEngine/support/RecordWriter.hpp"
#include "settings/AppSettings.hpp"

namespace quillo {

template <>
inline constexpr auto fieldsOf<AppSettings> =
    std::tuple{Field{"autoSnapshotMinutes", &AppSettings::autoSnapshotMinutes},
               Field{"onboarded", &AppSettings::onboarded},
               Field{"enabledAdapters", &AppSettings::enabledAdapters},
               Field{"excludedBundleIdentifiers", &AppSettings::excludedBundleIdentifiers},
               Field{"excludedDomains", &AppSettings::excludedDomains},
               Field{"shortcutsEnabled", &AppSettings::shortcutsEnabled},
               Field{"shortcuts", &AppSettings::shortcuts},
               Field{"appearance", &AppSettings::appearance},
               Field{"withoutTray", &AppSettings::withoutTray},
               Field{"lateMinutes", &AppSettings::lateMinutes},
               Field{"offersLayouts", &AppSettings::offersLayouts},
               Field{"arrangedWorkspaces", &AppSettings::arrangedWorkspaces},
               Field{"automation", &AppSettings::automation}};

template <>
inline constexpr auto fieldsOf<Shortcut> =
    std::tuple{Field{"keyCode", &Shortcut::keyCode}, Field{"modifiers", &Shortcut::modifiers},
               Field{"key", &Shortcut::key}};

template <>
inline constexpr auto fieldsOf<WorkspaceAutomation> =
    std::tuple{Field{"shortcut", &WorkspaceAutomation::shortcut},
               Field{"withoutAsking", &WorkspaceAutomation::withoutAsking},
               Field{"atLogin", &WorkspaceAutomation::atLogin},
               Field{"atDisplays", &WorkspaceAutomation::atDisplays},
               Field{"days", &WorkspaceAutomation::days},
               Field{"minute", &WorkspaceAutomation::minute}};

template <>
inline constexpr auto namesOf<Days> = std::array<std::pair<std::string_view, Days>, 3>{
    {{"never", Days::never}, {"daily", Days::daily}, {"weekdays", Days::weekdays}}};

template <>
inline constexpr auto namesOf<Appearance> = std::array<std::pair<std::string_view, Appearance>, 3>{
    {{"system", Appearance::system}, {"light", Appearance::light}, {"dark", Appearance::dark}}};

template <>
inline constexpr auto namesOf<WithoutTray> = std::array<std::pair<std::string_view, WithoutTray>, 3>{
    {{"ask", WithoutTray::ask}, {"keepRunning", WithoutTray::keepRunning}, {"quit", WithoutTray::quit}}};

namespace {

// A missing key, or null, leaves the default; a shortcut has all of its own.
class SettingsReader : public RecordReader<SettingsReader> {
  public:
    static constexpr ObjectRules rules{};
    template <class R, class T>
    static constexpr bool isRequired = std::same_as<R, Shortcut>;

    using RecordReader::read;

    bool read(Element element, const JsonPlace& place, std::set<std::string>& values) {
        std::vector<std::string> list;
        if (!read(element, place, list)) return false;
        values.insert(list.begin(), list.end());
        return true;
    }

    template <class T>
    bool read(Element element, const JsonPlace& place, std::map<std::string, T>& entries) {
        simdjson::dom::object object;
        if (element.get_object().get(object)) return refuse(place, "expected an object");
        for (const auto [key, value] : object) {
            if (!read(value, {&place, key}, entries[std::string(key)])) return false;
        }
        return true;
    }
};

class SettingsWriter : public RecordWriter<SettingsWriter> {
  public:
    using RecordWriter::write;

    void write(const std::set<std::string>& values) { writeList(values); }

    template <class T>
    void write(const std::map<std::string, T>& entries) {
        json_.beginObject();
        for (const auto& [key, entry] : entries) {
            json_.key(key);
            write(entry);
        }
        json_.endObject();
    }
};

}  // namespace

std::optional<AppSettings> AppSettings::decode(std::string_view json) {
    simdjson::dom::parser parser;
    JsonReader::Element root;
    AppSettings settings;
    if (parser.parse(simdjson::padded_string(json)).get(root) ||
        !SettingsReader().read(root, {.key = "the settings"}, settings))
        return std::nullopt;
    settings.autoSnapshotMinutes = AutoSnapshotPolicy::interval(settings.autoSnapshotMinutes);
    settings.lateMinutes = std::clamp<std::int64_t>(settings.lateMinutes, 0, AppSettings::mostLateMinutes);
    return settings;
}

std::string AppSettings::encode() const {
    return SettingsWriter().document(*this).value();  // it holds no number that could not be written
}

}  // namespace quillo
