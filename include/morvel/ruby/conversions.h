// What the types become that are no plain number, text or container themselves: enumerations, and classes that convert
// to one.
#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace morvel::ruby {

class RubyMap;
class RubyValue;

namespace internal {

/// Floating-point types and what else the compiler counts among the numbers, such as __int128 where that is not
/// std::integral.
template <typename T>
concept FloatingNumber = std::is_convertible_v<T, double> && !std::integral<T> && !std::is_enum_v<T> &&
                         !std::is_class_v<T> && !std::is_union_v<T>;

template <typename T>
concept UnscopedEnumeration = std::is_enum_v<T> && std::is_convertible_v<T, std::underlying_type_t<T>>;

/// A function that converts its argument to T.
template <typename T>
struct Conversion {
    static T pick(T value) { return value; }
};

/// Overloads of pick for all these types. An object of a class chooses the one that its conversion function gives.
template <typename... T>
struct Conversions : Conversion<T>... {
    using Conversion<T>::pick...;
};

/// Everything that a value is made of; containers are taken by reference.
template <template <typename...> typename Receiver>
using WithValueTypes =
    Receiver<bool, char, signed char, unsigned char, wchar_t, char8_t, char16_t, char32_t, short, unsigned short, int,
             unsigned, long, unsigned long, long long, unsigned long long, float, double, long double, const char*,
             std::string, std::string_view, const std::vector<RubyValue>&, const RubyMap&,
             const std::unordered_map<std::string, RubyValue>&>;

using ValueConversions = WithValueTypes<Conversions>;

/// What an object converts to, if that is one thing.
template <typename T>
using Converted = decltype(ValueConversions::pick(std::declval<T>()));

template <typename T>
concept ConvertsToRubyValue = requires(T&& object) {
    std::forward<T>(object).operator RubyValue();
};

/// Objects of classes that do not say by themselves how they become a RubyValue.
template <typename T, typename Class = std::remove_cvref_t<T>>
concept Object =
    !std::same_as<Class, RubyValue> && (std::is_class_v<Class> || std::is_union_v<Class>)&&!ConvertsToRubyValue<T>;

/// Pointers convert to bool too, but not between braces; neither do numbers.
template <typename T>
concept Flag = requires(T&& object) {
    bool{std::forward<T>(object)};
};

template <typename T>
concept ConvertsToOne = requires {
    typename Converted<T>;
};

template <typename T>
struct ConvertsToAny {
    template <typename... Type>
    struct Of : std::bool_constant<(std::is_convertible_v<T, Type> || ...)> {};
};

/// Objects that convert to one kind of number or text.
template <typename T>
concept NumberOrTextObject = Object<T> && ConvertsToOne<T> && !std::is_reference_v<Converted<T>> &&
                             (!std::same_as<Converted<T>, bool> || Flag<T>);

/// Objects that convert to one kind of container, other than those that are one themselves.
template <typename T>
concept ContainerObject = Object<T> && ConvertsToOne<T> && std::is_reference_v<Converted<T>> &&
    !std::is_base_of_v<std::remove_cvref_t<Converted<T>>, std::remove_cvref_t<T>>;

/// Objects that convert to several of these, so that it is open which of them is meant.
template <typename T>
concept AmbiguousObject = Object<T> && !ConvertsToOne<T> && WithValueTypes<ConvertsToAny<T>::template Of>::value;

}  // namespace internal

}  // namespace morvel::ruby
