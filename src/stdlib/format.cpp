#include "stdlib/format.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "value/memory_limit.h"
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

bool hasLargeTexts(const BuiltinCall& call) {
    std::size_t size = 0;
    for (std::size_t i = 1; i < call.count(); ++i) {
        size += call[i].isString() ? call[i].asString().size() : 0;
    }
    return size > kSurelyThere;
}

/// The total size of the strings that the format refers to.
std::size_t textSize(const BuiltinCall& call, std::string_view format) {
    std::size_t size = 0;
    std::size_t nextArgument = 1;
    for (std::size_t i = 0; i + 1 < format.size() && nextArgument < call.count(); ++i) {
        if (format[i] != '%' || format[++i] == '%') {
            continue;
        }
        const RubyValue& argument = call[nextArgument++];
        size += format[i] == 's' && argument.isString() ? argument.asString().size() : 0;
    }
    return size;
}

}  // namespace

RubyValue stringFormat(const BuiltinCall& call) {
    const std::string& format = requireStringArgument(call, 0);
    if (hasLargeTexts(call)) {
        requireMemory(textSize(call, format), 1);
    }
    std::string text;
    std::size_t nextArgument = 1;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') {
            const std::size_t end = std::min(format.find('%', i), format.size());
            text.append(format, i, end - i);
            i = end - 1;
            continue;
        }
        if (++i == format.size()) {
            throw RubyError("unterminated format token");
        }
        if (format[i] == '%') {
            text += '%';
            continue;
        }
        // Checked before the token itself: "%x" without an argument reports the missing argument.
        if (nextArgument == call.count()) {
            throw RubyError("missing argument for format string");
        }
        appendConversion(text, format[i], call[nextArgument++]);
    }
    return text;
}

}  // namespace morvel::ruby::internal::builtins
