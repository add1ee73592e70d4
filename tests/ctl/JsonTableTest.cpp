// What --json prints is what docs/command-line.md says: no other field, no other type, and each kind of line.
#include <functional>
#include <map>
#include <regex>

#include "WindowEngine/restore/RestoreReport.hpp"
#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

using Json = simdjson::dom::element;

struct Field {
    std::string type;
    bool optional = false;
};
struct Kind {
    std::string name;
    std::set<std::string> commands;
    std::map<std::string, Field> fields;
};

std::vector<Kind> documentedKinds(const std::string& document) {
    static const std::regex heading("### (.+)"), row(R"(\| `(\w+)` \| (\w+)(\?)? \|.*)"), word("`([a-z ]+)`");
    std::vector<Kind> kinds;
    for (const std::string& line : lines(document)) {
        std::smatch found;
        if (std::regex_match(line, found, heading)) kinds.push_back({found[1], {}, {}});
        if (kinds.empty()) continue;
        if (std::regex_match(line, found, row)) kinds.back().fields[found[1]] = {found[2], found[3].matched};
        if (!line.starts_with("Of ")) continue;
        for (std::sregex_iterator one(line.begin(), line.end(), word), end; one != end; ++one)
            kinds.back().commands.insert((*one)[1]);
    }
    return kinds;
}

bool isList(Json value, const std::function<bool(Json)>& ofThese) {
    simdjson::dom::array list;
    if (value.get_array().get(list)) return false;
    for (const Json one : list)
        if (!ofThese(one)) return false;
    return true;
}

bool isOf(Json value, const std::string& type) {
    static const std::regex instant(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ)");
    const auto number = [](Json one) { return one.is_number(); };
    const auto text = [](Json one) { return one.is_string(); };
    if (type == "text") return text(value);
    if (type == "number") return number(value);
    if (type == "flag") return value.is_bool();
    if (type == "texts") return isList(value, text);
    if (type == "frame") return isList(value, [&](Json pair) { return isList(pair, number); });
    if (type == "value") return text(value) || number(value) || isList(value, text);
    return type == "instant" && text(value) &&
           std::regex_match(std::string(value.get_string().value()), instant);
}

bool fits(Json line, const Kind& kind) {
    for (const auto& [name, field] : kind.fields) {
        Json value;
        const bool there = line[name].get(value) == simdjson::SUCCESS;
        if (there ? !isOf(value, field.type) : !field.optional) return false;
    }
    for (const auto member : line.get_object().value())
        if (!kind.fields.contains(std::string(member.key))) return false;
    return true;
}

constexpr const char* then = R"({
  "displays": [{"id": "left", "frame": [0, 0, 1600, 1000], "desktops": 2}],
  "applications": [
    {"identifier": "org.editor", "name": "Editor", "windows": [
      {"title": "a.txt", "document": "file:///d/a.txt", "frame": [100, 100, 600, 400]},
      {"title": "Notes", "frame": [800, 100, 500, 400], "minimized": true, "desktop": 1},
      {"title": "More", "frame": [300, 200, 500, 400]}]},
    {"identifier": "org.slow", "name": "Slow", "windows": [{"title": "Slow", "frame": [0, 0, 300, 200]}]},
    {"identifier": "com.google.Chrome", "name": "Chrome", "windows": [
      {"title": "News", "tabs": ["https://news.example/"], "frame": [0, 0, 600, 400]}]}]})";
constexpr const char* now = R"({
  "displays": [{"id": "left", "frame": [0, 0, 1600, 1000]}], "opensWindows": true,
  "applications": [
    {"identifier": "org.editor", "name": "Editor", "windows": [{"title": "Notes", "frame": [0, 0, 300, 200]}]},
    {"identifier": "org.game", "name": "Game", "windows": [{"title": "Level", "frame": [0, 0, 300, 200]}]},
    {"identifier": "com.google.Chrome", "name": "Chrome"}]})";

using JsonTableTest = QuilloctlTest;

TEST_F(JsonTableTest, EveryLineIsOfADocumentedKindAndEveryKindIsPrinted) {
    const std::string document = home_.read(QUILLO_SOURCE_DIR "/docs/command-line.md");
    const std::vector<Kind> kinds = documentedKinds(document);
    const std::string before = "simulated:" + file("then", then), after = "simulated:" + file("now", now);
    std::string slow = now;  // a window comes when the restore does not wait any longer
    slow.insert(slow.rfind('}'),
                R"(, "faults": [{"kind": "lateWindows", "application": "org.slow", "seconds": 30}])");
    slow.insert(slow.find(R"({"identifier": "org.game")"),
                R"({"identifier": "org.slow", "name": "Slow", "running": false,
      "windows": [{"title": "Slow", "frame": [0, 0, 300, 200]}]}, )");
    const std::string lateOne = "simulated:" + file("slow", slow);
    const std::string aside = "simulated:" + file("aside", std::string(then).replace(25, 4, "dock"));
    const std::string copy = home_ / "copy.json";
    const struct {
        std::string command, desktop;
        Texts more;
    } runs[] = {
        {"save", before, {"Work", "--adapter", "chromium"}},
        {"windows", before, {}},
        {"displays", before, {}},
        {"doctor", before, {}},
        {"export", before, {"Work", copy}},
        {"validate", before, {copy}},
        {"import", before, {copy}},
        {"plan", after, {"Work", "--clean-slate", "hide", "--adapter", "chromium"}},
        {"plan", after, {"Work 2"}},
        {"diff", after, {"Work"}},
        {"report", after, {"Work", home_ / "report.json"}},
        {"restore", after, {"Work", "--clean-slate", "hide", "--adapter", "chromium"}},
        {"restore", lateOne, {"Work", "--late", "60"}},
        {"undo", after, {"--plan"}},
        {"undo", after, {}},
        {"layout list", before, {"Work"}},
        {"layout save", aside, {"Work"}},
        {"layout remove", before, {"Work", "1"}},
        {"duplicate", before, {"Work"}},
        {"rename", before, {"Work", "Play"}},
        {"list", before, {}},
        {"delete", before, {"Play"}},
        {"watch", before, {"--count", "0"}},
        {"history save", before, {}},
        {"history list", before, {}},
        {"history clear", before, {}},
        {"launcher add", before, {"xclock", "env"}},
        {"launcher list", before, {}},
        {"launcher remove", before, {"xclock"}},
    };
    std::set<std::string> seen;
    simdjson::dom::parser parser;
    for (const auto& one : runs) {
        Texts arguments{"--json", "--desktop", one.desktop};
        std::istringstream words(one.command);
        for (std::string word; words >> word;) arguments.push_back(word);
        arguments.insert(arguments.end(), one.more.begin(), one.more.end());
        const Ran ran = run(arguments);
        EXPECT_NE(ran.out, "") << one.command << ran.err;
        for (const std::string& line : lines(ran.out)) {
            Json json;
            ASSERT_EQ(parser.parse(line).get(json), simdjson::SUCCESS) << line;
            const auto kind = std::ranges::find_if(kinds, [&](const Kind& kind) {
                return kind.commands.contains(one.command) && fits(json, kind);
            });
            if (kind != kinds.end()) seen.insert(kind->name);
            EXPECT_NE(kind, kinds.end()) << one.command << " prints what is not documented: " << line;
        }
    }
    for (const Kind& kind : kinds) EXPECT_TRUE(seen.contains(kind.name)) << "never printed: " << kind.name;
    for (const RestoreOutcome& outcome : restoreOutcomes)
        EXPECT_NE(document.find(outcome.name), std::string::npos) << outcome.name;
}

}  // namespace
}  // namespace quillo::ctl
