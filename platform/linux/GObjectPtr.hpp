// Ownership of GLib's objects, strings and values.
#pragma once
#include <glib-object.h>

#include <memory>

namespace quillo {

struct GObjectUnref {
    void operator()(void* object) const noexcept { g_object_unref(object); }
};
template <class T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

struct GFree {
    void operator()(void* memory) const noexcept { g_free(memory); }
};
using GText = std::unique_ptr<char, GFree>;

struct GErrorFree {
    void operator()(GError* error) const noexcept { g_error_free(error); }
};
using GErrorPtr = std::unique_ptr<GError, GErrorFree>;

struct GVariantUnref {
    void operator()(GVariant* value) const noexcept { g_variant_unref(value); }
};
using GVariantPtr = std::unique_ptr<GVariant, GVariantUnref>;

}  // namespace quillo
