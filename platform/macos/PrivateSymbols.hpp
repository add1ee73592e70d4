// System functions that no header declares are looked up by name while the program runs, so that a system
// without one costs a feature and not the start.
#pragma once
#include <ApplicationServices/ApplicationServices.h>

namespace quillo {

/// The address of a function; null when the library or the symbol is missing.
using SymbolLookup = void* (*)(const char* library, const char* name);

/// In the system's own libraries: each is opened at its first use, once, and stays open. Any thread.
void* systemSymbol(const char* library, const char* name);

/// Function is the function's type, as in `symbol<Boolean(int)>(...)`.
template <class Function>
Function* symbol(SymbolLookup lookup, const char* library, const char* name) {
    return reinterpret_cast<Function*>(lookup(library, name));
}

/// Of the accessibility framework. The signatures are not documented: see docs/platforms.md.
namespace hiServices {
inline constexpr const char* library =
    "/System/Library/Frameworks/ApplicationServices.framework/Frameworks/HIServices.framework/HIServices";
inline constexpr const char* getWindow = "_AXUIElementGetWindow";
using GetWindow = AXError(AXUIElementRef element, CGWindowID* number);
inline constexpr const char* createWithRemoteToken = "_AXUIElementCreateWithRemoteToken";
using CreateWithRemoteToken = AXUIElementRef(CFDataRef token);  // +1; null when nothing has that token
}  // namespace hiServices

}  // namespace quillo
