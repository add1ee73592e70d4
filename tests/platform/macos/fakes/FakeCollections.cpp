// The fake Core Foundation's arrays and dictionaries, which keep objects.
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "platform/macos/CFRef.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {
namespace {

using Kept = CFRef<CFTypeRef>;

Kept kept(CFTypeRef object) {
    return Kept::created(CFRetain(object));
}

bool same(const Kept& one, const Kept& other) {
    return CFEqual(one.get(), other.get()) != 0;
}

class Array final : public Typed<"CFArray"> {
  public:
    Array(const void** objects, CFIndex count) {
        std::transform(objects, objects + count, std::back_inserter(values), kept);
    }
    bool equals(const Object& other) const override {
        return std::ranges::equal(values, static_cast<const Array&>(other).values, same);
    }

    std::vector<Kept> values;
};

class Dictionary final : public Typed<"CFDictionary"> {
  public:
    Dictionary(const void** keys, const void** values, CFIndex count) {
        for (CFIndex i = 0; i < count; ++i) {
            if (get(keys[i])) fail("a dictionary with two values under one key");
            entries_.emplace_back(kept(keys[i]), kept(values[i]));
        }
    }
    CFTypeRef get(CFTypeRef key) const {
        const auto known = std::ranges::find_if(
            entries_, [&](const auto& entry) { return CFEqual(entry.first.get(), key) != 0; });
        return known == entries_.end() ? nullptr : known->second.get();
    }
    bool equals(const Object& other) const override {
        const auto& that = static_cast<const Dictionary&>(other);
        return entries_.size() == that.entries_.size() &&
               std::ranges::all_of(entries_, [&](const auto& entry) {
                   const CFTypeRef value = that.get(entry.first.get());
                   return value && CFEqual(entry.second.get(), value) != 0;
               });
    }

  private:
    std::vector<std::pair<Kept, Kept>> entries_;
};

}  // namespace
}  // namespace quillo::fakes

using namespace quillo::fakes;  // the functions below are global C functions

const CFArrayCallBacks kCFTypeArrayCallBacks{};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeID CFArrayGetTypeID() {
    return Array::typeID();
}

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
    if (callBacks != &kCFTypeArrayCallBacks) fail("an array that does not keep its values");
    return (new Array(values, count))->as<CFArrayRef>();
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    return static_cast<CFIndex>(objectOf<Array>(array).values.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    const auto& values = objectOf<Array>(array).values;
    if (index < 0 || index >= static_cast<CFIndex>(values.size()))
        fail("an index beyond the end of an array");
    return values[static_cast<std::size_t>(index)].get();
}

CFTypeID CFDictionaryGetTypeID() {
    return Dictionary::typeID();
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
    if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks || valueCallBacks != &kCFTypeDictionaryValueCallBacks)
        fail("a dictionary that does not keep its keys and values");
    return (new Dictionary(keys, values, count))->as<CFDictionaryRef>();
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    return objectOf<Dictionary>(dictionary).get(key);
}
