// The executor: one thread, posts in order, timers that never fire early.
#pragma once
#include "WindowEngine/support/Instant.hpp"
#include <chrono>
#include <compare>
#include <cstddef>
#include <new>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
namespace quillo {
using Duration = std::chrono::nanoseconds;
using TimePoint = std::chrono::steady_clock::time_point;

// Move-only void() callable with a small buffer (std::move_only_function is missing in libc++ 16).
class Fn {
    struct VTable { void (*call)(void*); void (*move)(void* from, void* to) noexcept; void (*destroy)(void*) noexcept; };
    template <class F> static constexpr VTable vtFor{
        [](void* p) { (*static_cast<F*>(p))(); },
        [](void* from, void* to) noexcept { ::new (to) F(std::move(*static_cast<F*>(from))); static_cast<F*>(from)->~F(); },
        [](void* p) noexcept { static_cast<F*>(p)->~F(); }};
    alignas(std::max_align_t) std::byte buf_[48];
    const VTable* vt_ = nullptr;
public:
    Fn() = default;
    template <class F> requires(!std::is_same_v<std::decay_t<F>, Fn>)
    Fn(F&& f) {
        using D = std::decay_t<F>;
        if constexpr (sizeof(D) <= sizeof buf_ && std::is_nothrow_move_constructible_v<D>) {
            ::new (buf_) D(std::forward<F>(f)); vt_ = &vtFor<D>;
        } else {
            auto boxed = [p = std::make_unique<D>(std::forward<F>(f))] { (*p)(); };
            ::new (buf_) decltype(boxed)(std::move(boxed)); vt_ = &vtFor<decltype(boxed)>;
        }
    }
    Fn(Fn&& o) noexcept : vt_(std::exchange(o.vt_, nullptr)) { if (vt_) vt_->move(o.buf_, buf_); }
    Fn& operator=(Fn&& o) noexcept { if (this != &o) { this->~Fn(); ::new (this) Fn(std::move(o)); } return *this; }
    ~Fn() { if (vt_) std::exchange(vt_, nullptr)->destroy(buf_); }
    explicit operator bool() const noexcept { return vt_; }
    void operator()() { vt_->call(buf_); }
};

struct TimerId { TimePoint when{}; std::uint64_t seq = 0; bool operator==(const TimerId&) const = default;   // libc++ 16: chrono has no <=>
    friend bool operator<(const TimerId& a, const TimerId& b) noexcept { return a.when != b.when ? a.when < b.when : a.seq < b.seq; } };

class Executor {
public:
    virtual ~Executor() = default;
    virtual TimePoint now() const noexcept = 0;      // monotonic
    virtual Instant wallNow() const noexcept = 0;    // wall clock
    virtual void post(Fn) = 0;                     // any thread; FIFO
    virtual TimerId postAfter(Duration, Fn) = 0;   // executor thread only; never runs early
    virtual void cancel(TimerId) noexcept = 0;     // executor thread only; unknown/fired id = no-op
};
}
