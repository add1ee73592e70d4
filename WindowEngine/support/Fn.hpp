// A function to be run once or more, moved but never copied (the standard one is missing in libc++ 19).
#pragma once
#include <concepts>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace quillo {

/// Small closures (48 bytes) are kept in place; moving never throws and never allocates.
class Fn {
  public:
    Fn() = default;

    template <class F>
        requires(!std::same_as<std::decay_t<F>, Fn>)
    Fn(F&& function) {  // NOLINT(google-explicit-constructor): a lambda is passed as it is
        using Plain = std::decay_t<F>;
        if constexpr (fitsInPlace<Plain>) {
            place<Plain>(std::forward<F>(function));
        } else {
            auto boxed = [box = std::make_unique<Plain>(std::forward<F>(function))] { (*box)(); };
            place<decltype(boxed)>(std::move(boxed));
        }
    }

    Fn(Fn&& other) noexcept : operations_(std::exchange(other.operations_, nullptr)) {
        if (operations_) operations_->relocate(other.storage_, storage_);
    }
    Fn& operator=(Fn&& other) noexcept {
        if (this != &other) {
            reset();
            operations_ = std::exchange(other.operations_, nullptr);
            if (operations_) operations_->relocate(other.storage_, storage_);
        }
        return *this;
    }
    ~Fn() { reset(); }

    explicit operator bool() const noexcept { return operations_ != nullptr; }
    void operator()() { operations_->call(storage_); }

  private:
    struct Operations {
        void (*call)(void*);
        void (*relocate)(void* from, void* to) noexcept;
        void (*destroy)(void*) noexcept;
    };
    static constexpr std::size_t capacity = 48;

    template <class F>
    static constexpr bool fitsInPlace = sizeof(F) <= capacity && alignof(F) <= alignof(std::max_align_t) &&
                                        std::is_nothrow_move_constructible_v<F>;

    template <class F>
    static constexpr Operations operationsOf{
        [](void* function) { (*static_cast<F*>(function))(); },
        [](void* from, void* to) noexcept {
            ::new (to) F(std::move(*static_cast<F*>(from)));
            static_cast<F*>(from)->~F();
        },
        [](void* function) noexcept { static_cast<F*>(function)->~F(); }};

    template <class F, class Source>
    void place(Source&& source) {
        ::new (static_cast<void*>(storage_)) F(std::forward<Source>(source));
        operations_ = &operationsOf<F>;
    }
    void reset() noexcept {
        if (operations_) std::exchange(operations_, nullptr)->destroy(storage_);
    }

    alignas(std::max_align_t) std::byte storage_[capacity];
    const Operations* operations_ = nullptr;
};

}  // namespace quillo
