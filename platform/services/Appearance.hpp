// How the application looks.
#pragma once

namespace quillo {

enum class Appearance { system, light, dark };  // system: as the desktop is, followed live

}  // namespace quillo
