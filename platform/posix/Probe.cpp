#include "WindowEngine/Workspace.hpp"
#include "WindowEngine/services/Platform.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "WindowEngine/support/Text.hpp"
