#include "WindowEngine/library/ImportedWorkspace.hpp"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "WindowEngine/library/SessionHistory.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

// The context's addresses that may not stay, counted; windows emptied by it vanish.
std::int64_t cleanContext(AppContext& context) {
    const bool folders = context.adapter == "finder";
    const auto refused = [&](const Url& url) { return folders ? !url.isFile() : !url.isWeb(); };
    std::int64_t dropped = 0;
    std::erase_if(context.windows, [&](ContextWindow& window) {
        const auto count = static_cast<std::int64_t>(std::erase_if(window.urls, refused));
        dropped += count;
        return count > 0 && window.urls.empty();
    });
    return dropped;
}

std::int64_t cleanContext(ApplicationSnapshot& application) {
    if (!application.context) return 0;
    const std::int64_t count = cleanContext(*application.context);
    if (count > 0 && application.context->windows.empty()) application.context.reset();
    return count;
}

bool isTaken(std::string_view name, std::span<const std::string> taken) {
    if (SessionHistory::isSessionName(name)) return true;
    return std::ranges::any_of(taken,
                               [&](const std::string& one) { return text::equalIgnoringCase(one, name); });
}

}  // namespace

std::int64_t cleanContext(WorkspaceSnapshot& snapshot) {
    std::int64_t dropped = 0;
    for (ApplicationSnapshot& application : snapshot.applications) dropped += cleanContext(application);
    if (!snapshot.leftOut) return dropped;
    std::erase_if(*snapshot.leftOut, [&](LeftOutPart& part) {
        dropped += cleanContext(part.application);
        return part.kind == LeftOutPart::Kind::address && !part.application.context;
    });
    if (snapshot.leftOut->empty()) snapshot.leftOut.reset();
    return dropped;
}

std::string uniqueName(std::string_view base, std::span<const Workspace> library) {
    std::vector<std::string> taken;
    std::ranges::transform(library, std::back_inserter(taken), &Workspace::name);
    return uniqueName(base, taken);
}

std::string uniqueName(std::string_view base, std::span<const std::string> taken) {
    std::string name(base);
    for (std::int64_t counter = 2; isTaken(name, taken); ++counter) {
        name = std::string(base) + " " + std::to_string(counter);
    }
    return name;
}

Result<ImportedWorkspace> ImportedWorkspace::read(std::string_view bytes, std::span<const Workspace> library,
                                                  Instant now) {
    auto decoded = WorkspaceCoding::decode(bytes);
    if (!decoded) return std::unexpected(std::move(decoded.error()));
    const std::int64_t dropped = cleanContext(decoded->snapshot);
    const bool blank = text::trim(decoded->name).empty();
    const std::string name = blank ? std::string(unnamed) : decoded->name;
    return ImportedWorkspace{decoded->importedCopy(uniqueName(name, library), now), dropped};
}

}  // namespace quillo
