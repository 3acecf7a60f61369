#include "support/describe.h"

#include <array>
#include <charconv>
#include <cmath>

#include "listing.h"
#include "morvel/ruby/function.h"
#include "morvel/ruby/map.h"

namespace morvel::ruby::tests {

namespace {

std::string describeFloat(double number) {
    if (std::isnan(number)) {
        return "nan";
    }
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    const std::string text(buffer.data(), result.ptr);
    return text.find_first_of(".en") == std::string::npos ? text + ".0" : text;
}

}  // namespace

std::string describe(const RubyValue& value) {
    std::string text;
    const char* separator = "";
    switch (value.type) {
        case RubyValue::Type::Nil:
            return "nil";
        case RubyValue::Type::Integer:
            return std::to_string(value.asInteger());
        case RubyValue::Type::Float:
            return describeFloat(value.asFloat());
        case RubyValue::Type::Boolean:
            return value.asBoolean() ? "true" : "false";
        case RubyValue::Type::String:
            return tools::quoteText(value.asString());
        case RubyValue::Type::Array:
            for (const RubyValue& element : value.asArray()) {
                text += separator + describe(element);
                separator = ", ";
            }
            return "[" + text + "]";
        case RubyValue::Type::Map:
            for (const auto& [key, element] : value.asMap()) {
                text += separator + tools::quoteText(key) + ": " + describe(element);
                separator = ", ";
            }
            return "{" + text + "}";
        case RubyValue::Type::Function:
            return "function " + static_cast<const RubyFunctionHandle*>(value.data.box)->name;
    }
    return "a value of unknown type " + std::to_string(static_cast<int>(value.type));
}

}  // namespace morvel::ruby::tests
