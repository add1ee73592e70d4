#include "ctl/ReportFile.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <simdjson.h>

#include <utility>

#include "WindowEngine/records/WorkspaceCoding.hpp"

namespace quillo::ctl {
namespace {

constexpr std::string_view mark = "quilloReport";
constexpr std::int64_t currentVersion = 1;

using Json = simdjson::dom::element;

std::string list(const std::vector<std::string>& documents) {
    return documents.empty() ? "[]" : fmt::format("[\n{}\n]", fmt::join(documents, ",\n"));
}

std::vector<std::string> texts(const Json& report, std::string_view key) {
    std::vector<std::string> values;
    simdjson::dom::array all;
    if (report[key].get(all) != simdjson::SUCCESS) return values;
    for (const Json one : all) {
        std::string_view text;
        values.emplace_back(one.get(text) == simdjson::SUCCESS ? text : std::string_view());
    }
    return values;
}

bool flag(const Json& report, std::string_view key, bool usual) {
    bool value = usual;
    return report[key].get(value) == simdjson::SUCCESS ? value : usual;
}

Result<Report> decoded(const Json& root, std::string_view name) {
    const auto bad = [&](std::string_view key, std::string_view why) {
        return fail(ErrorKind::invalidData, fmt::format("{}: {}: {}", name, key, why));
    };
    Json scene, workspace, settings;
    simdjson::dom::array plan;
    if (root["scene"].get(scene) != simdjson::SUCCESS) return bad("scene", "missing");
    if (root["workspace"].get(workspace) != simdjson::SUCCESS) return bad("workspace", "missing");
    if (root["options"].get(settings) != simdjson::SUCCESS) return bad("options", "missing");
    if (root["plan"].get(plan) != simdjson::SUCCESS) return bad("plan", "missing");
    Result<Workspace> read = WorkspaceCoding::decode(simdjson::minify(workspace));
    if (!read) return bad("workspace", read.error().text);
    Report report{.workspace = *std::move(read),
                  .scene = simdjson::minify(scene),
                  .options = {},
                  .plan = {},
                  .differences = texts(root, "differences")};
    std::string_view cleanSlate;
    if (settings["cleanSlate"].get(cleanSlate) == simdjson::SUCCESS)
        report.options.cleanSlate = cleanSlateMode(cleanSlate);
    const std::vector<std::string> adapters = texts(settings, "integrations");
    report.options.enabledAdapters = {adapters.begin(), adapters.end()};
    report.options.limited = flag(settings, "limited", true);
    report.options.followsLinks = flag(settings, "followsLinks", true);
    for (const Json line : plan) report.plan.push_back(simdjson::minify(line));
    return report;
}

}  // namespace

Result<std::string> writeReport(const Report& report, std::string_view version, std::string_view desktop) {
    Result<std::string> workspace = WorkspaceCoding::encode(report.workspace);
    if (!workspace) return workspace;
    const Restore::Options& options = report.options;
    JsonLine made, settings;
    made.add("version", version).add("desktop", desktop);
    settings.add("cleanSlate", storedValue(options.cleanSlate.value_or(CleanSlateMode::keep)))
        .add("integrations",
             std::vector<std::string>(options.enabledAdapters.begin(), options.enabledAdapters.end()))
        .add("limited", options.limited)
        .add("followsLinks", options.followsLinks);
    JsonLine differing;
    differing.add("differences", report.differences);
    const Result<std::string> by = std::move(made).finish(), chosen = std::move(settings).finish(),
                              differences = std::move(differing).finish();
    if (!by || !chosen || !differences) return fail(ErrorKind::invalidData, "a text is not valid UTF-8");
    // What follows the brace of the last is the one member that it has.
    return fmt::format(
        "{{\n\"{}\": {},\n\"made\": {},\n\"options\": {},\n\"workspace\": {},\n\"scene\": {},\n\"plan\": "
        "{},\n{}\n",
        mark, currentVersion, *by, *chosen, *workspace, report.scene, list(report.plan),
        differences->substr(1));
}

Result<std::optional<Report>> readReport(std::string_view bytes, std::string_view name) {
    simdjson::dom::parser parser;
    Json root;
    std::int64_t version = 0;
    if (parser.parse(simdjson::padded_string(bytes)).get(root) != simdjson::SUCCESS ||
        root[mark].get(version) != simdjson::SUCCESS)
        return std::nullopt;
    if (version != currentVersion)
        return fail(
            ErrorKind::invalidData,
            fmt::format("{}: a report of version {}, which this Quillo does not know", name, version));
    Result<Report> report = decoded(root, name);
    if (!report) return std::unexpected(report.error());
    return *std::move(report);
}

}  // namespace quillo::ctl
