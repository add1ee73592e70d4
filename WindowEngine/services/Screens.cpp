#include "WindowEngine/services/Screens.hpp"

#include <functional>

#include "WindowEngine/services/Stamp.hpp"

namespace quillo {

std::uint64_t Screens::stamp() {
    Stamp stamp;
    for (const Screen& screen : screens()) {
        stamp.add(screen.frame);
        stamp.add(std::hash<std::string>()(screen.stableID.value_or("")));
        stamp.add(std::hash<std::string>()(screen.connector.value_or("")));
        stamp.add(std::hash<double>()(screen.scale));
    }
    return stamp.value();
}

}  // namespace quillo
