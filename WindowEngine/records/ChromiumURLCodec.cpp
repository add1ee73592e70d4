#include "WindowEngine/records/ChromiumURLCodec.hpp"

#include <string_view>

namespace quillo::ChromiumURLCodec {
namespace {

constexpr std::string_view newTab = "chrome://newtab/";

void addIfRestorable(std::string_view text, std::vector<Url>& urls) {
    auto url = Url::parse(text);
    if (url && url->isWeb()) urls.push_back(*std::move(url));
}

}  // namespace

std::vector<Url> decode(std::span<const std::string> fields) {
    std::vector<Url> urls;
    for (const std::string& field : fields) {
        std::string_view rest = field;
        for (std::size_t at = 0; (at = rest.find(newTab)) != std::string_view::npos;
             rest.remove_prefix(at + newTab.size()))
            addIfRestorable(rest.substr(0, at), urls);
        addIfRestorable(rest, urls);
    }
    return urls;
}

}  // namespace quillo::ChromiumURLCodec
