#include "platform/macos/PrivateSymbols.hpp"

#include <dlfcn.h>

#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace quillo {
namespace {

/// Null for one that cannot be opened: it is not tried again.
void* openedOnce(const char* library) {
    static std::mutex mutex;
    static std::map<std::string, void*, std::less<>> opened;
    const std::lock_guard lock(mutex);
    const auto known = opened.find(std::string_view(library));
    if (known != opened.end()) return known->second;
    return opened.emplace(library, dlopen(library, RTLD_LAZY | RTLD_LOCAL)).first->second;
}

}  // namespace

void* systemSymbol(const char* library, const char* name) {
    void* const handle = openedOnce(library);
    return handle ? dlsym(handle, name) : nullptr;
}

}  // namespace quillo
