// Counted objects behind the fake Core Foundation. A wrong use ends the program with a message, as it would
// on a Mac, only sooner: an object released once too often, one of another type, null where null is not
// taken.
#pragma once
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>

namespace quillo::fakes {

enum class Lifetime { counted, immortal };  // immortal: constants, which are not among the live objects

/// Base of every fake object, made by `new` with one reference. What is behind an XRef is an Object*.
class Object {
  public:
    explicit Object(CFTypeID type, Lifetime lifetime = Lifetime::counted);
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object();

    CFTypeID type() const { return type_; }
    void retain();
    void release();
    /// `other` is of the same type.
    virtual bool equals(const Object& other) const { return this == &other; }

    /// The reference to hand out: `object->as<CFStringRef>()`.
    template <class Ref>
    Ref as() const {
        return static_cast<Ref>(static_cast<const void*>(this));
    }
    /// The same for the families whose references are not to something constant.
    template <class Ref>
    Ref asMutable() {
        return static_cast<Ref>(static_cast<void*>(this));
    }

  private:
    const CFTypeID type_;
    const Lifetime lifetime_;
    std::atomic<long> references_ = 1;
};

/// One number for each name; a family of objects asks once.
CFTypeID typeNamed(std::string_view name);

/// Text for a template's argument.
template <std::size_t size>
struct TypeName {
    // NOLINTNEXTLINE(google-explicit-constructor): for the text itself to be the argument
    consteval TypeName(const char (&name)[size]) { std::copy_n(name, size, text); }
    char text[size]{};
};

/// Base of the objects of one type.
template <TypeName name>
class Typed : public Object {
  public:
    static CFTypeID typeID() {
        static const CFTypeID id = typeNamed(name.text);
        return id;
    }

  protected:
    explicit Typed(Lifetime lifetime = Lifetime::counted) : Object(typeID(), lifetime) {}
};

/// What stands behind a reference, of any type.
Object& objectAt(CFTypeRef reference);

/// The same, of the type T, which is a Typed one.
[[noreturn]] void wrongType(CFTypeRef reference, CFTypeID expected);
template <class T>
T& objectOf(CFTypeRef reference) {
    Object& object = objectAt(reference);
    if (object.type() != T::typeID()) wrongType(reference, T::typeID());
    return static_cast<T&>(object);
}

[[noreturn]] void fail(std::string_view why);

/// 0 when every Create, Copy and Retain has had its Release.
std::size_t liveObjects();
/// "2 CFArray, 1 CFString", for the message of a test.
std::string liveObjectList();

}  // namespace quillo::fakes
