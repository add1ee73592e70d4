// One owned reference to a Core Foundation object.
#pragma once
#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace quillo {

/// T is a reference type such as CFStringRef. Null is a value like any other.
template <class T>
class CFRef {
  public:
    CFRef() = default;
    /// Takes over what a function with Create or Copy in its name returned.
    static CFRef created(T object) { return CFRef(object); }
    /// Keeps what a function with Get in its name returned, or an argument.
    static CFRef retained(T object) {
        if (object) CFRetain(object);
        return CFRef(object);
    }

    CFRef(const CFRef& other) : CFRef(retained(other.object_)) {}
    CFRef(CFRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    CFRef& operator=(CFRef other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~CFRef() {
        if (object_) CFRelease(object_);
    }

    T get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    /// For a parameter through which a Copy function hands out an object.
    T* out() {
        *this = {};
        return &object_;
    }
    /// Gives the reference away, to something that releases it.
    [[nodiscard]] T release() { return std::exchange(object_, nullptr); }

  private:
    explicit CFRef(T object) : object_(object) {}
    T object_ = nullptr;
};

}  // namespace quillo
