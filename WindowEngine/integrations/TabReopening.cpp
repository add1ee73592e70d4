#include "WindowEngine/integrations/TabReopening.hpp"

#include <utility>

namespace quillo {

Task<std::optional<AppleScript::Rows>> TabReopening::run(Script script) {
    auto rows = co_await AppleScript::run(desktop.platform.scripts, std::move(script), adapterScriptLimit);
    if (rows) co_return *std::move(rows);
    fail(failure);
    co_return std::nullopt;
}

Task<std::optional<std::string>> TabReopening::makeWindow(Script script) {
    const auto rows = co_await run(std::move(script));
    if (!rows) co_return std::nullopt;
    ++result.opened;
    ++result.newWindows;
    co_return rows->empty() || rows->front().empty() ? std::string() : rows->front().front();
}

Task<bool> TabReopening::openTabs(Script script, std::size_t count) {
    if (!co_await run(std::move(script))) co_return false;
    result.opened += static_cast<std::int64_t>(count);
    co_return true;
}

}  // namespace quillo
