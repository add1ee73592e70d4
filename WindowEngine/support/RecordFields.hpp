// Which keys each record has in a document, listed once for the writer, the reader and the tests. A list that
// forgets a member of its record does not compile: what it holds would be lost at the next save, unnoticed.
#pragma once
#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace quillo {

template <class Record, class Value>
struct Field {
    std::string_view key;
    Value Record::* member;
    Value Record::* usual = nullptr;  // listed before: whose value it has where the key is missing
};

/// A std::tuple of Fields, specialised for each record; the writer keeps their order.
template <class Record>
inline constexpr auto fieldsOf = nullptr;

/// A std::tuple of pointers to the members that no document shall have.
template <class Record>
inline constexpr auto notCoded = std::tuple{};

template <class T>
concept Record = !std::same_as<decltype(fieldsOf<T>), const std::nullptr_t>;

template <Record R>
inline constexpr auto keysOf = std::apply(
    [](const auto&... field) { return std::array<std::string_view, sizeof...(field)>{field.key...}; },
    fieldsOf<R>);

namespace detail {

/// Initialises a member of whatever type. Const, so that std::optional's converting constructor is no second
/// way that is as good.
struct AnyValue {
    template <class T>
    operator T() const;  // NOLINT(google-explicit-constructor): this is what it is for
};

template <class R, std::size_t... I>
consteval bool takesValues(std::index_sequence<I...>) {
    return requires { R{(static_cast<void>(I), AnyValue{})...}; };
}

template <class A, class B>
consteval bool isSameMember(A a, B b) {
    if constexpr (std::same_as<A, B>) return a == b;
    return false;
}

}  // namespace detail

/// Whether each member of the record is listed, and once. The members of an aggregate are counted by how many
/// values of any type it can be initialised with, as Antony Polukhin's magic_get (Boost.PFR) does.
template <Record R>
consteval bool listsEachMember() {
    const auto eachOnce = [](const auto&... members) {
        const auto timesListed = [&](auto member) {
            return (0 + ... + static_cast<int>(detail::isSameMember(member, members)));
        };
        constexpr std::size_t count = sizeof...(members);
        return (... && (timesListed(members) == 1)) &&
               detail::takesValues<R>(std::make_index_sequence<count>{}) &&
               !detail::takesValues<R>(std::make_index_sequence<count + 1>{});
    };
    const auto coded =
        std::apply([](const auto&... field) { return std::tuple{field.member...}; }, fieldsOf<R>);
    return std::apply(eachOnce, std::tuple_cat(coded, notCoded<R>));
}

/// The names of an enumeration's values in a document, specialised as a std::array of pairs of both.
template <class Enumeration>
inline constexpr auto namesOf = nullptr;

template <class T>
concept Named = !std::same_as<decltype(namesOf<T>), const std::nullptr_t>;

template <Named T>
constexpr std::string_view nameOf(T value) {
    using Pair = std::pair<std::string_view, T>;
    return std::ranges::find(namesOf<T>, value, &Pair::second)->first;
}

template <Named T>
constexpr std::optional<T> valueNamed(std::string_view name) {
    using Pair = std::pair<std::string_view, T>;
    const auto found = std::ranges::find(namesOf<T>, name, &Pair::first);
    return found == namesOf<T>.end() ? std::nullopt : std::optional(found->second);
}

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

}  // namespace quillo
