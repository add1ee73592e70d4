// A report holds nobody's names, and replays what was decided.
#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

constexpr const char* before = R"({
  "displays": [{"id": "EIZO of Ada", "model": "Lid 4711", "frame": [0, 0, 1600, 1000], "desktops": 2}],
  "applications": [
    {"identifier": "com.acme.secret-editor", "name": "Acme Editor", "windows": [
      {"title": "Offer to Bob - Acme", "document": "file:///home/ada/offer.odt", "frame": [100, 100, 600, 400]},
      {"title": "Offer to Bob - Acme 2", "frame": [800, 100, 500, 400], "minimized": true, "desktop": 1},
      {"title": "Wages", "frame": [300, 200, 500, 400], "document": "file:///home/ada/wages.odt"}]},
    {"identifier": "com.google.Chrome", "name": "Chrome", "windows": [
      {"title": "My bank", "tabs": ["https://bank.example/ada"], "frame": [0, 0, 600, 400]}]}]})";
constexpr const char* after = R"({
  "displays": [{"id": "EIZO of Ada", "model": "Lid 4712", "connector": "HDMI-9", "frame": [0, 0, 1600, 1000]}],
  "applications": [
    {"identifier": "com.acme.secret-editor", "name": "Acme Editor", "windows": [
      {"title": "Offer to Bob - Acme 2", "frame": [0, 0, 500, 400]},
      {"title": "Offer to Bob", "frame": [50, 50, 600, 400]}]},
    {"identifier": "org.diary", "name": "Diary", "windows": [{"title": "Monday", "frame": [0, 0, 300, 200]}]},
    {"identifier": "com.google.Chrome", "name": "Chrome", "running": false}]})";

class ReportTest : public QuilloctlTest {
  protected:
    ReportTest() {
        done({"--desktop", "simulated:" + file("before", before), "save", "Salary round", "--adapter",
              "chromium"});
        file("after", after);
        std::string aside = before;  // a layout for the displays of `after`
        aside.replace(aside.find("4711"), 4, "4712");
        aside.replace(aside.find("[100, 100"), 9, "[190, 140");
        done({"--desktop", "simulated:" + file("aside", aside), "layout", "save", "Salary round"});
    }
    Texts with(const std::string& desktop, Texts arguments) {
        const Texts options{"--desktop", "simulated:" + (home_ / desktop).string()};
        arguments.insert(arguments.begin(), options.begin(), options.end());
        return arguments;
    }
};

TEST_F(ReportTest, ReplaysWithoutANameOfTheOriginal) {
    const Texts chosen{"--adapter", "chromium", "--clean-slate", "quit"};
    Texts reporting{"report", "salary round", home_ / "out.json"}, planning{"plan", "salary round", "--json"};
    for (Texts* arguments : {&reporting, &planning})
        arguments->insert(arguments->end(), chosen.begin(), chosen.end());
    EXPECT_NE(done(with("after", reporting)).find("Wrote "), std::string::npos);
    const std::string report = home_.read("out.json");
    EXPECT_EQ(home_.mode("out.json"), 0600U);
    for (const char* original : {"Salary", "EIZO", "Ada", "Acme", "acme", "secret", "Offer", "offer", "Bob",
                                 "Wages", "wages", "bank", "iary", "Monday", "/home", "Lid ", "HDMI"})
        EXPECT_EQ(report.find(original), std::string::npos) << original;

    const std::string planned = done(with("after", planning)),
                      replayed = done(with("out.json", {"plan", "--json"}));
    for (const char* same : {"presence", "confidence", "cleanSlate"})
        EXPECT_EQ(members(planned, same), members(replayed, same));
    const auto numbers = [](const std::string& jsonLines) {  // all that is neither text nor list
        Texts found;
        simdjson::dom::parser parser;
        for (const std::string& line : lines(jsonLines)) {
            std::string all;
            for (const auto member : parser.parse(line).get_object().value())
                if (!member.value.is_string() && member.key != "urls" && member.key != "agreed")
                    all += std::string(member.key) + "=" + simdjson::minify(member.value) + " ";
            found.push_back(all);
        }
        return found;
    };
    EXPECT_EQ(numbers(planned), numbers(replayed));
    // Its own desktop is told without a workspace, and a report is no scene to be kept.
    expectSteps({{with("after", {"report", home_ / "out.json"}), 1, "--force replaces it"},
                 {with("after", {"report", home_ / "own.json"}), 0, "Wrote "},
                 {with("own.json", {"plan", "--exit-code"}), 0, "3 in place"},
                 {with("out.json", {"plan"}), 0, "Workspace: "},
                 {with("out.json", {"plan", "salary round", "--keep-scene"}), 1, "is a report"},
                 {with("after", {"plan"}), 2, "W is required"}});
    std::string other = report;
    other.replace(other.find("\"quilloReport\": 1"), 17, "\"quilloReport\": 9");
    file("other.json", other);
    std::string cut = report;
    cut.replace(cut.find("\"scene\""), 7, "\"scena\"");
    file("cut.json", cut);
    expectSteps({{with("other.json", {"plan"}), 1, "does not know"},
                 {with("cut.json", {"plan"}), 1, "scene: missing"}});
}

}  // namespace
}  // namespace quillo::ctl
