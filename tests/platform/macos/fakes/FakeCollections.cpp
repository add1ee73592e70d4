// The fake Core Foundation's arrays and dictionaries. They keep their values as their callbacks say.
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {
namespace {

template <class CallBacks>
const void* kept(const CallBacks& callBacks, const void* value) {
    return callBacks.retain ? callBacks.retain(nullptr, value) : value;
}

template <class CallBacks>
void letGo(const CallBacks& callBacks, const void* value) {
    if (callBacks.release) callBacks.release(nullptr, value);
}

template <class CallBacks>
bool same(const CallBacks& callBacks, const void* one, const void* other) {
    return one == other || (callBacks.equal && callBacks.equal(one, other));
}

class Array final : public Object {
  public:
    static CFTypeID typeID() {
        static const CFTypeID id = typeNamed("CFArray");
        return id;
    }
    Array(const void** values, CFIndex count, const CFArrayCallBacks& callBacks)
        : Object(typeID()), values(values, values + count), callBacks_(callBacks) {
        for (const void*& value : this->values) value = kept(callBacks_, value);
    }
    ~Array() override {
        for (const void* value : values) letGo(callBacks_, value);
    }
    bool equals(const Object& other) const override {
        return std::ranges::equal(values, static_cast<const Array&>(other).values,
                                  [&](auto one, auto two) { return same(callBacks_, one, two); });
    }

    std::vector<const void*> values;

  private:
    const CFArrayCallBacks callBacks_;
};

class Dictionary final : public Object {
  public:
    static CFTypeID typeID() {
        static const CFTypeID id = typeNamed("CFDictionary");
        return id;
    }
    Dictionary(const CFDictionaryKeyCallBacks& keys, const CFDictionaryValueCallBacks& values)
        : Object(typeID()), keyCallBacks_(keys), valueCallBacks_(values) {}
    ~Dictionary() override {
        for (const auto& [key, value] : entries) {
            letGo(keyCallBacks_, key);
            letGo(valueCallBacks_, value);
        }
    }
    /// The later of two values under one key holds.
    void put(const void* key, const void* value) {
        const void* mine = kept(valueCallBacks_, value);
        if (const auto known = find(key); known != entries.end()) {
            letGo(valueCallBacks_,
                  std::exchange(entries[static_cast<std::size_t>(known - entries.begin())].second, mine));
        } else {
            entries.emplace_back(kept(keyCallBacks_, key), mine);
        }
    }
    const void* get(const void* key) const {
        const auto known = find(key);
        return known == entries.end() ? nullptr : known->second;
    }
    bool equals(const Object& other) const override {
        const auto& that = static_cast<const Dictionary&>(other);
        return entries.size() == that.entries.size() && std::ranges::all_of(entries, [&](const auto& entry) {
                   const void* value = that.get(entry.first);
                   return value && same(valueCallBacks_, entry.second, value);
               });
    }

    std::vector<std::pair<const void*, const void*>> entries;

  private:
    std::vector<std::pair<const void*, const void*>>::const_iterator find(const void* key) const {
        return std::ranges::find_if(entries,
                                    [&](const auto& entry) { return same(keyCallBacks_, entry.first, key); });
    }

    const CFDictionaryKeyCallBacks keyCallBacks_;
    const CFDictionaryValueCallBacks valueCallBacks_;
};

const void* retainObject(CFAllocatorRef, const void* value) {
    return CFRetain(value);
}

void releaseObject(CFAllocatorRef, const void* value) {
    CFRelease(value);
}

}  // namespace
}  // namespace quillo::fakes

using namespace quillo::fakes;  // the functions below are global C functions

const CFArrayCallBacks kCFTypeArrayCallBacks{0, retainObject, releaseObject, nullptr, CFEqual};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{0,       retainObject, releaseObject,
                                                             nullptr, CFEqual,      nullptr};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{0, retainObject, releaseObject, nullptr,
                                                                 CFEqual};

CFTypeID CFArrayGetTypeID() {
    return Array::typeID();
}

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
    return (new Array(values, count, callBacks ? *callBacks : CFArrayCallBacks{}))->as<CFArrayRef>();
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    return static_cast<CFIndex>(objectOf<Array>(array).values.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    const auto& values = objectOf<Array>(array).values;
    if (index < 0 || index >= static_cast<CFIndex>(values.size()))
        fail("an index beyond the end of an array");
    return values[static_cast<std::size_t>(index)];
}

CFTypeID CFDictionaryGetTypeID() {
    return Dictionary::typeID();
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
    auto* dictionary = new Dictionary(keyCallBacks ? *keyCallBacks : CFDictionaryKeyCallBacks{},
                                      valueCallBacks ? *valueCallBacks : CFDictionaryValueCallBacks{});
    for (CFIndex i = 0; i < count; ++i) dictionary->put(keys[i], values[i]);
    return dictionary->as<CFDictionaryRef>();
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
    return static_cast<CFIndex>(objectOf<Dictionary>(dictionary).entries.size());
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    return objectOf<Dictionary>(dictionary).get(key);
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
    for (const auto& [key, value] : objectOf<Dictionary>(dictionary).entries) {
        if (keys) *keys++ = key;
        if (values) *values++ = value;
    }
}
