// Construction and checked access of values.
#include "morvel/ruby/value.h"

#include "morvel/ruby/error.h"
#include "morvel/ruby/function.h"
#include "morvel/ruby/map.h"
#include "value/function_internals.h"
#include "value/numbers.h"
#include "value/render.h"

namespace morvel::ruby {

namespace {

RubyValue::Data boxed(internal::Box* box) noexcept {
    RubyValue::Data data{};
    data.box = box;
    return data;
}

std::unique_ptr<RubyFunctionHandle> orEmptyHandle(std::unique_ptr<RubyFunctionHandle> handle) {
    if (handle == nullptr) {
        handle = std::make_unique<RubyFunctionHandle>();
        handle->kind = RubyFunctionHandle::Kind::Empty;
    }
    return handle;
}

}  // namespace

RubyFunctionHandle::~RubyFunctionHandle() { internal::FunctionInternals::set(*this, internal::kNoInternals); }

RubyValue::RubyValue(const char* text) : RubyValue(text == nullptr ? std::string() : std::string(text)) {}

RubyValue::RubyValue(std::string text) : type(Type::String), data(boxed(new internal::StringBox(std::move(text)))) {}

RubyValue::RubyValue(std::string_view text) : type(Type::String), data(boxed(new internal::StringBox(text))) {}

RubyValue::RubyValue(const RubyArray& elements) : RubyValue(RubyArray(elements)) {}

RubyValue::RubyValue(RubyArray&& elements) : RubyValue(makeArray()) { asArray() = std::move(elements); }

RubyValue RubyValue::mapOf(const RubyMap& entries) { return mapOf(RubyMap(entries)); }

RubyValue RubyValue::mapOf(RubyMap&& entries) {
    RubyValue map;
    map.data = boxed(new internal::MapBox(std::move(entries)));
    map.type = Type::Map;
    return map;
}

RubyValue::RubyValue(const std::unordered_map<std::string, RubyValue>& entries) : RubyValue(RubyMap(entries)) {}

RubyValue::RubyValue(std::unordered_map<std::string, RubyValue>&& entries) : RubyValue(RubyMap()) {
    for (auto& [key, value] : entries) {
        asMap()[key] = std::move(value);
    }
}

RubyValue::RubyValue(std::unique_ptr<RubyFunctionHandle> handle)
    : type(Type::Function), data(boxed(orEmptyHandle(std::move(handle)).release())) {}

RubyValue RubyValue::makeArray() {
    RubyValue array;
    array.data.box = internal::makeEmptyArray();
    array.type = Type::Array;
    return array;
}

RubyValue RubyValue::makeMap() {
    RubyValue map;
    map.data = boxed(new internal::MapBox);
    map.type = Type::Map;
    return map;
}

std::int64_t RubyValue::asInteger() const {
    switch (type) {
        case Type::Integer:
            return data.integer;
        case Type::Float:
            return internal::truncateToInteger(data.floating);
        case Type::Boolean:
            return data.boolean ? 1 : 0;
        case Type::Nil:
        case Type::String:
        case Type::Array:
        case Type::Map:
        case Type::Function:
            break;
    }
    throw RubyError("value is not numeric");
}

double RubyValue::asFloat() const {
    switch (type) {
        case Type::Integer:
            return static_cast<double>(data.integer);
        case Type::Float:
            return data.floating;
        case Type::Boolean:
            return data.boolean ? 1.0 : 0.0;
        case Type::Nil:
        case Type::String:
        case Type::Array:
        case Type::Map:
        case Type::Function:
            break;
    }
    throw RubyError("value is not numeric");
}

void internal::failType(const char* message) { throw RubyError(message); }

constinit const RubyValue internal::kMissingArgument;

void internal::failMissingArgument(std::size_t index) {
    throw RubyError("missing argument " + std::to_string(index + 1));
}

bool RubyValue::asBoolean() const {
    requireType(Type::Boolean, "value is not boolean");
    return data.boolean;
}

// NOLINTNEXTLINE(readability-make-member-function-const): a const value gives read-only contents.
RubyMap& RubyValue::asMap() {
    requireType(Type::Map, "value is not a map");
    return static_cast<internal::MapBox*>(data.box)->entries;
}

const RubyMap& RubyValue::asMap() const {
    requireType(Type::Map, "value is not a map");
    return static_cast<const internal::MapBox*>(data.box)->entries;
}

std::string RubyValue::toString() const {
    std::string text;
    internal::appendText(text, *this);
    return text;
}

}  // namespace morvel::ruby
