#include "WindowEngine/integrations/AppleScript.hpp"

#include <chrono>
#include <utility>

#include "WindowEngine/support/Text.hpp"

namespace quillo::AppleScript {
namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (std::size_t end = 0; (end = text.find(separator)) != std::string_view::npos;
         text.remove_prefix(end + 1))
        pieces.push_back(text.substr(0, end));
    pieces.push_back(text);
    return pieces;
}

Failure failureOf(const Error& error) {
    return {error.kind == ErrorKind::timedOut ? "Automation timed out." : error.text};
}

}  // namespace

Task<std::expected<Rows, Failure>> run(ScriptInterpreter& scripts, Script script, double timeout) {
    const auto limit = std::chrono::duration_cast<Duration>(std::chrono::duration<double>(timeout));
    const auto outcome = co_await scripts.execute(std::move(script), limit);
    if (!outcome) co_return std::unexpected(failureOf(outcome.error()));
    if (outcome->exitStatus != 0)
        co_return std::unexpected(Failure{text::trim(text::repaired(outcome->standardError))});
    co_return rows(outcome->standardOutput);
}

Rows rows(std::string_view standardOutput) {
    if (!text::isValidUtf8(standardOutput)) return {};
    if (standardOutput.ends_with('\n')) standardOutput.remove_suffix(1);
    if (standardOutput.empty()) return {};
    Rows rows;
    for (const std::string_view line : split(standardOutput, '\n')) {
        auto& row = rows.emplace_back();
        for (const std::string_view field : split(line, '\t')) {
            if (!field.empty()) row.emplace_back(field);
        }
    }
    return rows;
}

}  // namespace quillo::AppleScript
