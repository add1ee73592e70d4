// The parts of a Safari window as accessibility shows them, as far as privacy is read from them:
//     window > "toolbar" > "toolbar/1" > ... > the address field
//            > "content"
// What the address field is called tells normal browsing from private; a private or a locked window never has
// the words of a normal one. Internal to this layer.
#pragma once
#include <expected>
#include <string_view>

#include "platform/simulated/Handle.hpp"
#include "platform/simulated/World.hpp"

namespace quillo::simulated::Toolbar {

/// `handle` names the window itself or a part of it. The error is the code that the accessibility interface
/// would answer.
std::expected<AttributeValue, std::int32_t> read(const Application& application, const Window& window,
                                                 const Handle& handle, std::string_view name);

}  // namespace quillo::simulated::Toolbar
