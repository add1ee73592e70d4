#include "WindowEngine/records/UndoCoding.hpp"

#include <simdjson.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/support/RecordReader.hpp"
#include "WindowEngine/support/RecordWriter.hpp"

namespace quillo {

template <>
inline constexpr auto fieldsOf<UndoWindow> =
    std::tuple{Field{"application", &UndoWindow::application}, Field{"index", &UndoWindow::index},
               Field{"number", &UndoWindow::number}, Field{"process", &UndoWindow::process},
               Field{"space", &UndoWindow::space}};

template <>
inline constexpr auto fieldsOf<UndoApplication> =
    std::tuple{Field{"cleared", &UndoApplication::cleared}, Field{"hidden", &UndoApplication::hidden},
               Field{"identifier", &UndoApplication::identifier},
               Field{"launchedAt", &UndoApplication::launchedAt}, Field{"pid", &UndoApplication::pid}};

template <>
inline constexpr auto fieldsOf<UndoLaunch> =
    std::tuple{Field{"identifier", &UndoLaunch::identifier}, Field{"launchedAt", &UndoLaunch::launchedAt},
               Field{"name", &UndoLaunch::name}, Field{"pid", &UndoLaunch::pid}};

// The desktop before is a document of its own inside this one.
template <>
inline constexpr auto fieldsOf<UndoRecord> = std::tuple{Field{"applications", &UndoRecord::applications},
                                                        Field{"desktops", &UndoRecord::desktops},
                                                        Field{"launched", &UndoRecord::launched},
                                                        Field{"opened", &UndoRecord::opened},
                                                        Field{"others", &UndoRecord::others},
                                                        Field{"othersCleared", &UndoRecord::othersCleared},
                                                        Field{"restored", &UndoRecord::restored},
                                                        Field{"windows", &UndoRecord::windows}};
template <>
inline constexpr auto notCoded<UndoRecord> = std::tuple{&UndoRecord::before};

namespace UndoCoding {
namespace {

/// The full-screen windows that were taken for tabs of this one, which says so no more.
std::vector<WindowSnapshot> apart(WindowSnapshot& window, std::set<std::int64_t>& folded) {
    std::vector<WindowSnapshot> windows;
    std::optional<std::vector<TabSnapshot>> tabs = std::exchange(window.tabs, std::nullopt);
    for (std::size_t i = 1; i < tabs->size() && !folded.empty(); ++i) {  // the first is the window itself
        WindowSnapshot& own = windows.emplace_back(window);
        own.index = folded.extract(folded.begin()).value();
        own.title = std::move((*tabs)[i].title);
        own.documentURL = std::move((*tabs)[i].documentURL);
    }
    return windows;
}

}  // namespace
namespace {

constexpr std::string_view beforeKey = "before", runKey = "run";

class UndoReader : public RecordReader<UndoReader> {
  public:
    static constexpr ObjectRules rules{};
    template <class R, class T>
    static constexpr bool isRequired = !isOptional<T>;

    using RecordReader::read;

    bool read(Element element, const JsonPlace& place, Instant& value) {
        return readText(element, place, parseInstant, value, "expected a date such as 2025-03-14T09:26:53Z");
    }
    bool read(Element element, const JsonPlace& place, Uuid& value) {
        return readText(element, place, Uuid::parse, value,
                        "expected an identifier such as 6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60");
    }
};

class UndoWriter : public RecordWriter<UndoWriter> {
  public:
    using RecordWriter::write;

    void write(Instant value) { json_.text(formatInstant(value)); }
    void write(const Uuid& value) { json_.text(value.upper()); }
};

std::string member(std::string_view key, const std::string& document) {
    return "\"" + std::string(key) + "\": " + document;
}

}  // namespace

Result<std::string> encode(const UndoRecord& record) {
    const Result<std::string> before = WorkspaceCoding::encode(record.before);
    if (!before) return before;
    const Result<std::string> run = UndoWriter().document(record);
    if (!run) return run;
    return "{" + member(beforeKey, *before) + ",\n" + member(runKey, *run) + "}\n";
}

Result<UndoRecord> decode(std::string_view bytes) {
    simdjson::dom::parser parser;
    JsonReader::Element root, before, run;
    if (parser.parse(simdjson::padded_string(bytes)).get(root) || root[beforeKey].get(before) ||
        root[runKey].get(run))
        return fail(ErrorKind::invalidData, "this is no record of a desktop before a restore");
    Result<Workspace> workspace = WorkspaceCoding::decode(simdjson::minify(before));
    if (!workspace) return std::unexpected(std::move(workspace.error()));
    UndoRecord record{.before = *std::move(workspace)};
    UndoReader reader;
    const JsonPlace document{.key = "the document"};
    if (!reader.read(run, {&document, runKey}, record)) return std::unexpected(*std::move(reader.failure));
    takeFullscreenApart(record);
    return record;
}

void takeFullscreenApart(UndoRecord& record) {
    for (ApplicationSnapshot& application : record.before.snapshot.applications) {
        std::set<std::int64_t> folded;
        for (const UndoWindow& window : record.windows) {
            if (window.application == application.bundleIdentifier) folded.insert(window.index);
        }
        for (const WindowSnapshot& window : application.windows) folded.erase(window.index);
        std::vector<WindowSnapshot> all;
        for (WindowSnapshot& window : application.windows) {
            if (window.isFullscreen && window.tabs && !folded.empty())
                std::ranges::move(apart(window, folded), std::back_inserter(all));
        }
        std::ranges::move(all, std::back_inserter(application.windows));
    }
}

}  // namespace UndoCoding
}  // namespace quillo
