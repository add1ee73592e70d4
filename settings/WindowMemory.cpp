#include "settings/WindowMemory.hpp"

#include "WindowEngine/support/RecordReader.hpp"
#include "WindowEngine/support/RecordWriter.hpp"

namespace quillo {

template <>
inline constexpr auto fieldsOf<WindowMemory> = std::tuple{Field{"width", &WindowMemory::width},
                                                          Field{"height", &WindowMemory::height},
                                                          Field{"maximized", &WindowMemory::maximized},
                                                          Field{"order", &WindowMemory::order},
                                                          Field{"page", &WindowMemory::page},
                                                          Field{"workspace", &WindowMemory::workspace},
                                                          Field{"pane", &WindowMemory::pane}};

namespace {

class MemoryReader : public RecordReader<MemoryReader> {
  public:
    static constexpr ObjectRules rules{};
    template <class R, class T>
    static constexpr bool isRequired = false;

    using RecordReader::read;
};

class MemoryWriter : public RecordWriter<MemoryWriter> {};

}  // namespace

WindowMemory WindowMemory::load(const UserDefaults& defaults) {
    const std::optional<std::string> stored = defaults.data(defaultsKey);
    simdjson::dom::parser parser;
    JsonReader::Element root;
    WindowMemory memory;
    if (!stored || parser.parse(simdjson::padded_string(*stored)).get(root) ||
        !MemoryReader().read(root, {.key = "the window"}, memory))
        return {};
    return memory;
}

Result<void> WindowMemory::save(UserDefaults& defaults) const {
    return defaults.setData(defaultsKey, MemoryWriter().document(*this).value());
}

}  // namespace quillo
