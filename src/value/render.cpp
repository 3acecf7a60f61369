#include "value/render.h"

#include "morvel/ruby/function.h"
#include "morvel/ruby/map.h"
#include "value/native_stack.h"
#include "value/numbers.h"

namespace morvel::ruby::internal {

namespace {

void appendArray(std::string& text, const RubyArray& elements) {
    checkNativeStack();
    text += '[';
    const char* separator = "";
    for (const RubyValue& element : elements) {
        text += separator;
        appendText(text, element);
        separator = ", ";
    }
    text += ']';
}

void appendMap(std::string& text, const RubyMap& entries) {
    checkNativeStack();
    text += '{';
    const char* separator = "";
    for (const auto& [key, value] : entries) {
        text += separator;
        text += key;
        text += ": ";
        appendText(text, value);
        separator = ", ";
    }
    text += '}';
}

}  // namespace

void appendText(std::string& text, const RubyValue& value) {
    switch (value.type) {
        case RubyValue::Type::Nil:
            text += "nil";
            break;
        case RubyValue::Type::Integer:
            appendInteger(text, value.data.integer);
            break;
        case RubyValue::Type::Float:
            appendFloat(text, value.data.floating);
            break;
        case RubyValue::Type::Boolean:
            text += value.data.boolean ? "true" : "false";
            break;
        case RubyValue::Type::String:
            text += value.asString();
            break;
        case RubyValue::Type::Array:
            appendArray(text, value.asArray());
            break;
        case RubyValue::Type::Map:
            appendMap(text, value.asMap());
            break;
        case RubyValue::Type::Function:
            text += "[function ";
            text += static_cast<const RubyFunctionHandle*>(value.data.box)->name;
            text += ']';
            break;
    }
}

}  // namespace morvel::ruby::internal
