// How enumerations, and objects of classes that convert to a number, a string or a container, become values.
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

/// Floating-point types, and other number types that are not std::integral, as __int128 may be.
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

/// Overloads of pick for all these types. For an object of a class, its conversion function decides which is called.
template <typename... T>
struct Conversions : Conversion<T>... {
    using Conversion<T>::pick...;
};

/// The types that a value can be made from; containers by reference.
template <template <typename...> typename Receiver>
using WithValueTypes =
    Receiver<bool, char, signed char, unsigned char, wchar_t, char8_t, char16_t, char32_t, short, unsigned short, int,
             unsigned, long, unsigned long, long long, unsigned long long, float, double, long double, const char*,
             std::string, std::string_view, const std::vector<RubyValue>&, const RubyMap&,
             const std::unordered_map<std::string, RubyValue>&>;

using ValueConversions = WithValueTypes<Conversions>;

/// The type that an object converts to, if there is only one.
template <typename T>
using Converted = decltype(ValueConversions::pick(std::declval<T>()));

template <typename T>
concept ConvertsToRubyValue = requires(T&& object) {
    std::forward<T>(object).operator RubyValue();
};

/// Objects of classes without a conversion to RubyValue of their own.
template <typename T, typename Class = std::remove_cvref_t<T>>
concept Object =
    !std::same_as<Class, RubyValue> && (std::is_class_v<Class> || std::is_union_v<Class>)&&!ConvertsToRubyValue<T>;

/// Types that convert to bool without narrowing; pointers and numbers do not.
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

/// Objects that convert to one kind of number or string.
template <typename T>
concept NumberOrTextObject = Object<T> && ConvertsToOne<T> && !std::is_reference_v<Converted<T>> &&
                             (!std::same_as<Converted<T>, bool> || Flag<T>);

/// Objects that convert to one kind of container but are not such a container themselves.
template <typename T>
concept ContainerObject = Object<T> && ConvertsToOne<T> && std::is_reference_v<Converted<T>> &&
    !std::is_base_of_v<std::remove_cvref_t<Converted<T>>, std::remove_cvref_t<T>>;

/// Objects that convert to several of these, which makes the choice ambiguous.
template <typename T>
concept AmbiguousObject = Object<T> && !ConvertsToOne<T> && WithValueTypes<ConvertsToAny<T>::template Of>::value;

}  // namespace internal

}  // namespace morvel::ruby
