#include "tests/platform/macos/fakes/FakeObject.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <unordered_set>
#include <vector>

namespace quillo::fakes {
namespace {

/// Never destroyed: constants of other files are made before it and end after it.
struct Registry {
    std::mutex mutex;
    std::vector<std::string> types{"nothing"};
    std::unordered_set<const Object*> living;  // asked at every use of an object
    std::unordered_set<const Object*> immortal;
};

Registry& registry() {
    static Registry& instance = *new Registry;
    return instance;
}

std::string nameOf(CFTypeID type) {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    return type < all.types.size() ? all.types[type] : "no type";
}

}  // namespace

Object::Object(CFTypeID type, Lifetime lifetime) : type_(type), lifetime_(lifetime) {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    (lifetime == Lifetime::counted ? all.living : all.immortal).insert(this);
}

Object::~Object() {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    all.living.erase(this);
    all.immortal.erase(this);
}

void Object::retain() {
    if (lifetime_ == Lifetime::counted) ++references_;
}

void Object::release() {
    if (lifetime_ == Lifetime::counted && --references_ == 0) delete this;
}

CFTypeID typeNamed(std::string_view name) {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    const auto known = std::ranges::find(all.types, name);
    const auto id = static_cast<CFTypeID>(known - all.types.begin());
    if (known == all.types.end()) all.types.emplace_back(name);
    return id;
}

Object& objectAt(CFTypeRef reference) {
    if (!reference) fail("null where an object is needed");
    auto* object = static_cast<Object*>(const_cast<void*>(reference));
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    if (!all.living.contains(object) && !all.immortal.contains(object))
        fail("an object is used that does not live (released too often, or never one)");
    return *object;
}

void wrongType(CFTypeRef reference, CFTypeID expected) {
    fail("a " + nameOf(objectAt(reference).type()) + " where a " + nameOf(expected) + " is needed");
}

void fail(std::string_view why) {
    std::fprintf(stderr, "fake macOS: %.*s\n", static_cast<int>(why.size()), why.data());
    std::abort();
}

std::size_t liveObjects() {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    return all.living.size();
}

std::string liveObjectList() {
    std::map<std::string, int> counts;
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    for (const Object* object : all.living) ++counts[all.types[object->type()]];
    std::string list;
    for (const auto& [name, count] : counts)
        list += (list.empty() ? "" : ", ") + std::to_string(count) + " " + name;
    return list;
}

}  // namespace quillo::fakes
