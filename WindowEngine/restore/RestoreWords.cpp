#include "WindowEngine/restore/RestoreWords.hpp"

#include <fmt/format.h>

#include <string_view>
#include <variant>

namespace quillo {
namespace {

std::string counted(std::int64_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

struct Words {
    std::string operator()(const RestoreReport::createdDesktops& status) const {
        return "created " + counted(status.count, "desktop");
    }
    std::string operator()(const RestoreReport::opened& status) const {
        return "reopened " + counted(status.count, "item");
    }
    std::string operator()(const RestoreReport::note& status) const { return status.text; }
    std::string operator()(const RestoreReport::skipped& status) const { return "skipped: " + status.reason; }
    std::string operator()(const RestoreReport::failed& status) const { return "failed: " + status.reason; }
    std::string operator()(const RestoreReport::restored&) const { return "restored"; }
    std::string operator()(const RestoreReport::adjusted&) const {
        return "adjusted: back, but its place or size had to differ";
    }
    std::string operator()(const RestoreReport::launched&) const { return "launched"; }
};

}  // namespace

std::string restoreWords(const RestoreReport::Status& status) {
    return std::visit(Words{}, status);
}

}  // namespace quillo
