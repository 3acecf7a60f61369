// RubyValue: the dynamically typed value that scripts, the library and the host exchange.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "morvel/ruby/conversions.h"

namespace morvel::ruby {

class RubyMap;
class RubyValue;
struct RubyFunctionHandle;

/// The elements of an array value.
using RubyArray = std::vector<RubyValue>;

namespace internal {

/// Header of every heap object that a value refers to. The count is not atomic: a VM and its values belong to one
/// thread at a time. It is 64 bits wide, so that no number of copies can make it wrap.
struct Box {
    std::uint64_t references = 1;
};

/// A string, shared by the copies of a value and changed in place only while it has one holder.
struct StringBox : Box {
    StringBox() = default;
    explicit StringBox(std::string content) noexcept : text(std::move(content)) {}
    explicit StringBox(std::string_view content) : text(content) {}

    /// Kept for maps, 0 until computed: the hash of `text` as a key, and whether `text` spells an integer. Code that
    /// changes `text` resets it.
    mutable std::uint32_t keyHash = 0;
    /// The position at which a map last found this box as a key, or the first of all. Usually it is there next time
    /// too, even in another map: maps that are filled in the same way have their keys in the same positions.
    mutable std::uint32_t keyPosition = 4;
    std::string text;

    static void* operator new(std::size_t size);
    static void operator delete(void* block) noexcept;
};

/// Frees a box whose last reference is gone. Nested containers are freed one after another, never recursively.
/// `type` is the type of the value that referred to it.
void destroyBox(std::uint8_t type, Box* box) noexcept;

/// Throws RubyError.
[[noreturn]] void failType(const char* message);

}  // namespace internal

/// A dynamically typed value: 16 bytes, a kind tag and an 8-byte payload.
///
///      0      1         8                    16
///      +------+---------+--------------------+
///      | type | unused  |        data        |
///      +------+---------+--------------------+
///         0     nil      unused
///         1     integer  the integer
///         2     float    the double
///         3     boolean  a byte, 0 or 1
///         4     string   ------> StringBox           references | facts about the key | text
///         5     array    ------> ArrayBox            references | elements
///         6     map      ------> MapBox              references | entries
///         7     function ------> RubyFunctionHandle  references | name, program, index or host function
///
/// The bit that 4 to 7 have in common says that the payload refers to a box, whose references are counted.
///
/// Copying nil, an integer, a float or a boolean copies 16 bytes. Strings behave as values; arrays, maps and functions
/// are references: two copies denote the same array, and a change through one is seen through the other. The object
/// is freed when the last value that refers to it goes; a container that contains itself is never freed.
class RubyValue {
public:
    /// The kinds of value, with the numbers that bytecode images use for their tags.
    enum class Type : std::uint8_t {
        Nil = 0,
        Integer = 1,
        Float = 2,
        Boolean = 3,
        String = 4,
        Array = 5,
        Map = 6,
        Function = 7,
    };

    /// The payload; which member is alive follows from `type`.
    union Data {
        std::int64_t integer;
        double floating;
        bool boolean;
        internal::Box* box;
    };

    /// Nil.
    constexpr RubyValue() noexcept : type(Type::Nil), data{.integer = 0} {}
    /// Nil.
    RubyValue(std::nullptr_t) noexcept : RubyValue() {}
    /// A boolean. Takes only bool itself, so that no pointer becomes a boolean by accident.
    template <std::same_as<bool> T>
    RubyValue(T flag) noexcept : type(Type::Boolean), data{.integer = 0} {
        data.boolean = flag;
    }
    /// An integer; narrower and unsigned types are converted to signed 64 bits.
    template <std::integral T>
    requires(!std::same_as<T, bool>) RubyValue(T number)
    noexcept : type(Type::Integer), data{.integer = static_cast<std::int64_t>(number)} {}
    /// A float.
    template <internal::FloatingNumber T>
    RubyValue(T number) noexcept : type(Type::Float), data{.floating = static_cast<double>(number)} {}
    /// The number of an unscoped enumerator; a boolean when the enumeration's underlying type is bool.
    template <internal::UnscopedEnumeration T>
    RubyValue(T enumerator) noexcept : RubyValue(static_cast<std::underlying_type_t<T>>(enumerator)) {}
    /// A copy of a NUL-terminated string; a null pointer gives the empty string.
    RubyValue(const char* text);
    /// A string of any bytes.
    RubyValue(std::string text);
    /// A string of any bytes.
    RubyValue(std::string_view text);
    /// A new array holding copies of the elements.
    RubyValue(const RubyArray& elements);
    /// A new array holding the elements, moved.
    RubyValue(RubyArray&& elements);
    /// A new map holding the entries, copied or moved as the argument allows. A braced list in place of a map means a
    /// std::unordered_map instead.
    template <typename Map>
    requires(std::derived_from<std::remove_cvref_t<Map>, RubyMap>)
        // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): only maps are taken
        RubyValue(Map&& entries)
        : RubyValue(mapOf(std::forward<Map>(entries))) {}
    /// A new map holding copies of the entries, in the iteration order of the argument.
    RubyValue(const std::unordered_map<std::string, RubyValue>& entries);
    /// A new map holding the entries, moved, in the iteration order of the argument.
    RubyValue(std::unordered_map<std::string, RubyValue>&& entries);
    /// An object of a class that converts to a number, a bool or a string becomes that: an element of
    /// std::vector<bool> a boolean, a std::atomic<int> an integer, a std::filesystem::path a string.
    template <internal::NumberOrTextObject T>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): takes no values
    RubyValue(T&& object) : RubyValue(internal::ValueConversions::pick(std::forward<T>(object))) {}
    /// An object of a class that converts to a container becomes a new array or map with that content.
    template <internal::ContainerObject T>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): takes no values
    RubyValue(T&& object)
        : RubyValue(static_cast<std::remove_cvref_t<internal::Converted<T>>>(std::forward<T>(object))) {}
    /// An object that converts to several of these must be converted by the caller, who knows which is meant.
    template <internal::AmbiguousObject T>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): takes no values
    RubyValue(T&& object) = delete;
    /// A function value that takes over the handle; a null pointer gives one without a handle, which fails with
    /// "function handle is empty" when it is called.
    explicit RubyValue(std::unique_ptr<RubyFunctionHandle> handle);

    RubyValue(const RubyValue& other) noexcept : type(other.type), data(other.data) {
        if (isBoxed()) {
            ++data.box->references;
        }
    }
    RubyValue(RubyValue&& other) noexcept : type(other.type), data(other.data) { other.type = Type::Nil; }
    RubyValue& operator=(const RubyValue& other) noexcept {
        RubyValue copy(other);
        swap(copy);
        return *this;
    }
    RubyValue& operator=(RubyValue&& other) noexcept {
        RubyValue taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~RubyValue() {
        if (isBoxed() && --data.box->references == 0) {
            internal::destroyBox(static_cast<std::uint8_t>(type), data.box);
        }
    }

    /// Exchanges two values without touching what they refer to.
    void swap(RubyValue& other) noexcept {
        std::swap(type, other.type);
        std::swap(data, other.data);
    }

    /// A new empty array.
    [[nodiscard]] static RubyValue makeArray();
    /// A new empty map.
    [[nodiscard]] static RubyValue makeMap();

    /// The number as an integer: a float is truncated toward zero (saturating at the ends of the range, NaN gives 0),
    /// a boolean gives 1 or 0. Throws RubyError "value is not numeric" for any other kind.
    [[nodiscard]] std::int64_t asInteger() const;
    /// The number as a double; a boolean gives 1.0 or 0.0. Throws RubyError "value is not numeric" for other kinds.
    [[nodiscard]] double asFloat() const;
    /// The flag of a boolean. Throws RubyError "value is not boolean" for any other kind, numbers included.
    [[nodiscard]] bool asBoolean() const;
    /// The bytes of a string, valid while this value is unchanged. Throws RubyError "value is not a string".
    [[nodiscard]] const std::string& asString() const {
        requireType(Type::String, "value is not a string");
        return static_cast<const internal::StringBox*>(data.box)->text;
    }
    /// The shared elements of an array. Throws RubyError "value is not an array".
    [[nodiscard]] RubyArray& asArray();
    [[nodiscard]] const RubyArray& asArray() const;
    /// The shared entries of a map. Throws RubyError "value is not a map".
    [[nodiscard]] RubyMap& asMap();
    [[nodiscard]] const RubyMap& asMap() const;

    [[nodiscard]] bool isNil() const noexcept { return type == Type::Nil; }
    [[nodiscard]] bool isInteger() const noexcept { return type == Type::Integer; }
    [[nodiscard]] bool isFloat() const noexcept { return type == Type::Float; }
    [[nodiscard]] bool isBoolean() const noexcept { return type == Type::Boolean; }
    [[nodiscard]] bool isString() const noexcept { return type == Type::String; }
    [[nodiscard]] bool isArray() const noexcept { return type == Type::Array; }
    [[nodiscard]] bool isMap() const noexcept { return type == Type::Map; }
    [[nodiscard]] bool isFunction() const noexcept { return type == Type::Function; }
    /// True for integers, floats and booleans, which all count as numbers in arithmetic.
    [[nodiscard]] bool isNumeric() const noexcept { return type >= Type::Integer && type <= Type::Boolean; }
    /// True for the kinds whose payload is a reference to a heap object.
    [[nodiscard]] bool isBoxed() const noexcept { return (static_cast<std::uint8_t>(type) & kBoxedBit) != 0; }

    /// False for nil and for boolean false, true for everything else.
    [[nodiscard]] bool isTruthy() const noexcept {
        return type != Type::Nil && (type != Type::Boolean || data.boolean);
    }

    /// The text of the value: strings as they are, floats with 6 significant digits, arrays as "[1, a, 2.5]", maps as
    /// "{k: 1}" in insertion order, functions as "[function name]". Throws RubyError "stack overflow" when the value
    /// nests too deeply for the native stack, as an array that contains itself does.
    [[nodiscard]] std::string toString() const;

    /// The kind. Hosts may read it; to change it, assign a whole value.
    Type type;
    /// The payload that belongs to `type`.
    Data data;

private:
    static constexpr std::uint8_t kBoxedBit = 4;

    static RubyValue mapOf(const RubyMap& entries);
    static RubyValue mapOf(RubyMap&& entries);

    void requireType(Type wanted, const char* message) const {
        if (type != wanted) [[unlikely]] {
            internal::failType(message);
        }
    }
};

static_assert(sizeof(RubyValue) == 16, "a value is a tag and an 8-byte payload");
static_assert(offsetof(RubyValue, type) == 0 && offsetof(RubyValue, data) == 8, "the tag comes first");

namespace internal {

/// An array, shared by the values that refer to it.
struct ArrayBox : Box {
    RubyArray elements;

    static void* operator new(std::size_t size);
    static void operator delete(void* block) noexcept;
};

/// Makes an empty array with one reference. It may already have room for some elements.
[[nodiscard]] ArrayBox* makeEmptyArray();

}  // namespace internal

// NOLINTNEXTLINE(readability-make-member-function-const): a const value gives read-only contents.
inline RubyArray& RubyValue::asArray() {
    requireType(Type::Array, "value is not an array");
    return static_cast<internal::ArrayBox*>(data.box)->elements;
}

inline const RubyArray& RubyValue::asArray() const {
    requireType(Type::Array, "value is not an array");
    return static_cast<const internal::ArrayBox*>(data.box)->elements;
}

}  // namespace morvel::ruby
