// How a task ended.
#pragma once
#include <exception>
#include <type_traits>
#include <utility>
#include <variant>

#include "WindowEngine/support/StopSource.hpp"

namespace quillo {

/// A value, Cancelled, or the exception that ended the task.
template <class T>
class Outcome {
  public:
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    template <class... Arguments>
    explicit Outcome(std::in_place_t, Arguments&&... arguments)
        : state_(std::in_place_index<0>, std::forward<Arguments>(arguments)...) {}
    explicit Outcome(Cancelled cancelled) noexcept : state_(std::in_place_index<1>, cancelled) {}
    explicit Outcome(std::exception_ptr exception) noexcept
        : state_(std::in_place_index<2>, std::move(exception)) {}

    bool hasValue() const noexcept { return state_.index() == 0; }
    bool isCancelled() const noexcept { return state_.index() == 1; }
    /// Null unless an exception ended the task.
    std::exception_ptr exception() const noexcept {
        const auto* exception = std::get_if<2>(&state_);
        return exception ? *exception : nullptr;
    }
    const Value& value() const { return std::get<0>(state_); }

    /// Moves the value out, or throws what the task threw.
    T take() {
        if (isCancelled()) throw Cancelled{};
        if (auto* exception = std::get_if<2>(&state_)) std::rethrow_exception(*exception);
        if constexpr (!std::is_void_v<T>) return std::move(std::get<0>(state_));
    }

  private:
    std::variant<Value, Cancelled, std::exception_ptr> state_;
};

}  // namespace quillo
