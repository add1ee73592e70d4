#include "app/gui/QmlTypes.hpp"

namespace quillo {

void registerItems() {}

}  // namespace quillo
