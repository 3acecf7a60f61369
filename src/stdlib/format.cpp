#include "stdlib/format.h"

#include <string>

#include "value/numbers.h"
#include "value/render.h"

namespace morvel::ruby::internal::builtins {

namespace {

void appendConversion(std::string& text, char token, const RubyValue& argument) {
    switch (token) {
        case 's':
            return appendText(text, argument);
        case 'd':
        case 'i':
            return appendInteger(text, argument.asInteger());
        case 'f':
            return appendFloat(text, argument.asFloat());
        default:
            throw RubyError(std::string("unsupported format token %") + token);
    }
}

}  // namespace

RubyValue stringFormat(const BuiltinCall& call) {
    const std::string& format = requireStringArgument(call, 0);
    std::string text;
    std::size_t nextArgument = 1;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') {
            text += format[i];
            continue;
        }
        if (++i == format.size()) {
            throw RubyError("unterminated format token");
        }
        if (format[i] == '%') {
            text += '%';
            continue;
        }
        // Before the token itself is looked at: "%x" without an argument misses the argument.
        if (nextArgument == call.count()) {
            throw RubyError("missing argument for format string");
        }
        appendConversion(text, format[i], call[nextArgument++]);
    }
    return text;
}

}  // namespace morvel::ruby::internal::builtins
