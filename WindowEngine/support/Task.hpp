// Task<T>, tried and measured. Single-threaded tree; other threads enter only through Executor::post.
#pragma once
#include "WindowEngine/support/Executor.hpp"
#include <cassert>
#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
namespace quillo {
struct Cancelled {};   // deliberately NOT a std::exception: catch(std::exception&) in a step cannot swallow it

// ---- cancellation: intrusive, allocation-free, executor-thread only (libc++ 16 has no std::stop_token) ----
class StopNode {
    friend class StopSource;
    StopNode *prev_ = this, *next_ = this;
protected:
    StopNode() = default;
    ~StopNode() { unlink(); }
    StopNode(const StopNode&) = delete;
    void unlink() noexcept { prev_->next_ = next_; next_->prev_ = prev_; prev_ = next_ = this; }
    virtual void onStop() noexcept {}
};
class StopSource final : StopNode {
    struct Head final : StopNode { friend class StopSource; } list_;
    bool stopped_ = false;
    void onStop() noexcept override { requestStop(); }
public:
    explicit StopSource(StopSource* parent = nullptr) { if (parent) { if (parent->stopped_) stopped_ = true; else parent->link(*this); } }
    bool stopRequested() const noexcept { return stopped_; }
    void link(StopNode& n) noexcept { n.prev_ = list_.prev_; n.next_ = &list_; list_.prev_->next_ = &n; list_.prev_ = &n; }
    void requestStop() noexcept {
        if (std::exchange(stopped_, true)) return;
        while (list_.next_ != &list_) { StopNode* n = list_.next_; n->unlink(); n->onStop(); }
    }
};

struct Context {
    Executor* ex = nullptr; StopSource* stop = nullptr;
    bool stopRequested() const noexcept { return stop && stop->stopRequested(); }
    void throwIfStopped() const { if (stopRequested()) throw Cancelled{}; }
    TimePoint now() const noexcept { return ex->now(); }
};

// ---- Task<T> ----
template <class T> class Task;
namespace detail {
struct PromiseBase {
    Context ctx;
    std::coroutine_handle<> continuation;                    // awaiting parent, or
    std::coroutine_handle<> (*onDone)(void*) = nullptr;      // owner of a root/child job
    void* owner = nullptr;
    bool inlineStart = false;                                // completing inside the parent's await_suspend

    std::suspend_always initial_suspend() noexcept { return {}; }
    struct Final {
        bool await_ready() noexcept { return false; }
        template <class P> std::coroutine_handle<> await_suspend(std::coroutine_handle<P> h) noexcept {
            PromiseBase& p = h.promise();
            if (p.onDone) return p.onDone(p.owner);
            if (std::exchange(p.inlineStart, false)) return std::noop_coroutine();
            return p.continuation ? p.continuation : std::coroutine_handle<>(std::noop_coroutine());
        }
        void await_resume() noexcept {}
    };
    Final final_suspend() noexcept { return {}; }
    // Only awaitables that know about Context may be awaited.
    template <class A> decltype(auto) await_transform(A&& a) { return std::forward<A>(a).awaiterIn(ctx); }
};
template <class T> struct Promise : PromiseBase {
    std::variant<std::monostate, T, std::exception_ptr> r;
    Task<T> get_return_object() noexcept;
    template <class U> void return_value(U&& u) { r.template emplace<1>(std::forward<U>(u)); }
    void unhandled_exception() noexcept { r.template emplace<2>(std::current_exception()); }
    T take() { if (auto* e = std::get_if<2>(&r)) std::rethrow_exception(std::move(*e)); return std::move(std::get<1>(r)); }
};
template <> struct Promise<void> : PromiseBase {
    std::exception_ptr e;
    Task<void> get_return_object() noexcept;
    void return_void() noexcept {}
    void unhandled_exception() noexcept { e = std::current_exception(); }
    void take() { if (e) std::rethrow_exception(std::move(e)); }
};
}
template <class T = void> class [[nodiscard]] Task {
public:
    using promise_type = detail::Promise<T>;
    using Handle = std::coroutine_handle<promise_type>;
    explicit Task(Handle h) noexcept : h_(h) {}
    Task(Task&& o) noexcept : h_(std::exchange(o.h_, {})) {}
    Task& operator=(Task&& o) noexcept { if (this != &o) { if (h_) h_.destroy(); h_ = std::exchange(o.h_, {}); } return *this; }
    ~Task() { if (h_) h_.destroy(); }
    Handle handle() const noexcept { return h_; }

    struct Awaiter {
        Task task; Context ctx;
        bool await_ready() const { ctx.throwIfStopped(); return false; }   // cancellation check between steps
#ifdef RT_SYMMETRIC
        Handle await_suspend(std::coroutine_handle<> parent) noexcept {
            auto& p = task.h_.promise(); p.ctx = ctx; p.continuation = parent; return task.h_;
        }
#else   // start inline: no stack growth for synchronously completing children, even at -O0 / with ASan
        bool await_suspend(std::coroutine_handle<> parent) noexcept {
            auto& p = task.h_.promise(); p.ctx = ctx; p.continuation = parent; p.inlineStart = true;
            task.h_.resume();
            // `p`/`task` stay valid: the parent cannot be resumed by the child while inlineStart is set
            if (task.h_.done()) return false;
            p.inlineStart = false; return true;
        }
#endif
        T await_resume() { return task.h_.promise().take(); }
    };
    Awaiter awaiterIn(Context c) && noexcept { return {std::move(*this), c}; }
private:
    Handle h_;
};
template <class T> Task<T> detail::Promise<T>::get_return_object() noexcept { return Task<T>(Task<T>::Handle::from_promise(*this)); }
inline Task<void> detail::Promise<void>::get_return_object() noexcept { return Task<void>(Task<void>::Handle::from_promise(*this)); }

// co_await context() -> Context, never suspends
struct ContextOp { struct Aw { Context c; bool await_ready() noexcept { return true; } void await_suspend(std::coroutine_handle<>) noexcept {} Context await_resume() noexcept { return c; } };
    Aw awaiterIn(Context c) const noexcept { return {c}; } };
inline ContextOp context() noexcept { return {}; }

// co_await checkpoint() -> throws Cancelled if stopped, never suspends
struct CheckOp { struct Aw { Context c; bool await_ready() { c.throwIfStopped(); return true; } void await_suspend(std::coroutine_handle<>) noexcept {} void await_resume() noexcept {} };
    Aw awaiterIn(Context c) const noexcept { return {c}; } };
inline CheckOp checkpoint() noexcept { return {}; }

// co_await shielded(task): runs it without cancellation (cleanup / rollback steps)
template <class T> struct Shielded { Task<T> t; auto awaiterIn(Context c) && noexcept { c.stop = nullptr; return std::move(t).awaiterIn(c); } };
template <class T> Shielded<T> shielded(Task<T> t) { return {std::move(t)}; }

// ---- one suspended wait: resumes by timer, by wake(), or by stop; safe to destroy while suspended ----
class Wait : public StopNode {
protected:
    Context ctx_; std::coroutine_handle<> h_; std::optional<TimerId> timer_; bool stopped_ = false;
    explicit Wait(Context c) noexcept : ctx_(c) {}
    ~Wait() { disarm(); }
    void disarm() noexcept { if (timer_) ctx_.ex->cancel(*std::exchange(timer_, std::nullopt)); unlink(); }
    void arm(std::coroutine_handle<> h) noexcept { h_ = h; if (ctx_.stop) ctx_.stop->link(*this); }
    void resumeAfter(Duration d) { timer_ = ctx_.ex->postAfter(d, [this] { timer_.reset(); unlink(); h_.resume(); }); }
    void onStop() noexcept override { stopped_ = true; disarm(); detach(); resumeAfter({}); }   // never resumes inside requestStop()
    virtual void detach() noexcept {}
    void resumeNow() { disarm(); h_.resume(); }
};
struct SleepOp {
    Duration d;
    struct Aw final : Wait {
        Duration d;
        Aw(Context c, Duration dd) noexcept : Wait(c), d(dd) {}
        bool await_ready() const { ctx_.throwIfStopped(); return false; }
        void await_suspend(std::coroutine_handle<> h) { arm(h); resumeAfter(d); }
        void await_resume() const { if (stopped_) throw Cancelled{}; }
    };
    Aw awaiterIn(Context c) const noexcept { return Aw(c, d); }
};
inline SleepOp sleepFor(Duration d) noexcept { return {d}; }

// ---- Job<T>: a started task. Await it for its result; cancel(); destroying it destroys the coroutine tree ----
template <class T = void> class [[nodiscard]] Job {
    struct State {
        StopSource stop; Executor& ex; Task<T> task; std::optional<TimerId> start; bool done = false;
        std::coroutine_handle<> waiter; Fn onDone;
        State(Executor& e, StopSource* parent, Task<T> t) : stop(parent), ex(e), task(std::move(t)) {
            auto& p = task.handle().promise();
            p.ctx = {&ex, &stop}; p.owner = this;
            p.onDone = [](void* s) { return static_cast<State*>(s)->finished(); };
            start = ex.postAfter({}, [this] { start.reset(); task.handle().resume(); });
        }
        ~State() { if (start) ex.cancel(*start); }
        std::coroutine_handle<> finished() noexcept {
            done = true;
            if (onDone) ex.post(std::move(onDone));
            return waiter ? std::exchange(waiter, {}) : std::coroutine_handle<>(std::noop_coroutine());
        }
    };
    std::unique_ptr<State> s_;
public:
    Job(Executor& ex, Task<T> t, StopSource* parent = nullptr) : s_(std::make_unique<State>(ex, parent, std::move(t))) {}
    void cancel() noexcept { s_->stop.requestStop(); }
    bool done() const noexcept { return s_->done; }
    T result() { assert(s_->done); return s_->task.handle().promise().take(); }
    void onDone(Fn f) { if (s_->done) s_->ex.post(std::move(f)); else s_->onDone = std::move(f); }
    struct Aw {   // join: not interrupted itself; the child ends by the inherited stop
        State& s; std::coroutine_handle<> me{};
        explicit Aw(State& st) noexcept : s(st) {}
        Aw(const Aw&) = delete;
        ~Aw() { if (me && s.waiter == me) s.waiter = {}; }   // waiter destroyed while the job lives on
        bool await_ready() const noexcept { return s.done; }
        void await_suspend(std::coroutine_handle<> h) noexcept { assert(!s.waiter); s.waiter = me = h; }
        T await_resume() { me = {}; return s.task.handle().promise().take(); }
    };
    Aw awaiterIn(Context) const noexcept { return Aw{*s_}; }
};
template <class T> Job<T> spawn(Context c, Task<T> t) { return Job<T>(*c.ex, std::move(t), c.stop); }

// ---- one-shot completion settable from any thread ----
template <class T> class Completion {
    struct Aw;
    struct State { Executor& ex; std::optional<T> value; Aw* waiter = nullptr; };
    std::shared_ptr<State> s_;
    struct Aw final : Wait {
        std::shared_ptr<State> s;
        Aw(Context c, std::shared_ptr<State> st) noexcept : Wait(c), s(std::move(st)) {}
        ~Aw() { detach(); }
        void detach() noexcept override { if (s->waiter == this) s->waiter = nullptr; }
        bool await_ready() const { ctx_.throwIfStopped(); return s->value.has_value(); }
        void await_suspend(std::coroutine_handle<> h) noexcept { arm(h); s->waiter = this; }
        T await_resume() { if (stopped_) throw Cancelled{}; return std::move(*s->value); }
        void wake() { s->waiter = nullptr; resumeNow(); }
    };
public:
    explicit Completion(Executor& ex) : s_(std::make_shared<State>(State{ex, {}, nullptr})) {}
    class Setter {   // copyable, any thread
        std::shared_ptr<State> s_;
        friend class Completion;
        explicit Setter(std::shared_ptr<State> s) : s_(std::move(s)) {}
    public:
        void set(T v) const {
            s_->ex.post([s = s_, v = std::move(v)]() mutable { if (s->value) return; s->value = std::move(v); if (s->waiter) s->waiter->wake(); });
        }
    };
    Setter setter() const { return Setter(s_); }
    Aw awaiterIn(Context c) const noexcept { return Aw(c, s_); }
};
}
