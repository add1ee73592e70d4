// The icons of applications as the workspace object has them.
#pragma once
#include "platform/services/IconPixels.hpp"

namespace quillo {

/// A FindIcon. The system reads an icon that it does not remember from the disk: some milliseconds.
std::optional<IconPixels> macIcon(const std::string& identifier, int size);

}  // namespace quillo
