// The Dock's process: no regular application, but the one that shows the overview of all desktops. While that
// is open its element tree is, as public accounts of automating it have it,
//     application > "mc" > "mc.display" (one for each display) > "mc.spaces" > "mc.spaces.list",
//     "mc.spaces.add"
// where each part lies within the frame of its display. Internal to this layer.
#pragma once
#include <expected>
#include <string_view>

#include "platform/simulated/World.hpp"

namespace quillo::simulated {

class Dock {
  public:
    static constexpr std::string_view identifier = "com.apple.dock";
    static constexpr ProcessID pid = 400;

    explicit Dock(World& world) : world_(world) {}

    /// The error is the code that the accessibility interface would answer.
    std::expected<AttributeValue, std::int32_t> read(const Element& element, std::string_view name);
    std::int32_t perform(const Element& element, std::string_view action);

  private:
    bool exists(const Element& element) const;
    std::vector<Element> children(const Element& element) const;
    /// Where a part of the overview lies; the whole display for those that hold others.
    Rect frame(const Element& element) const;

    World& world_;
};

}  // namespace quillo::simulated
