#include "listing_text.h"

#include <array>
#include <charconv>
#include <cmath>

#include "listing.h"

namespace morvel::ruby::tools {

namespace {

// The fewest digits that read back as the same number; "inf" and "nan" need no more.
std::string floatText(double number) {
    if (!std::isfinite(number)) {
        return RubyValue(number).toString();
    }
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    std::string text(buffer.data(), result.ptr);
    // A float must be recognizable as one.
    return text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
}

// Whether the name can be written unquoted in source code.
bool isPlainName(std::string_view text) {
    constexpr std::string_view kNameBytes = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789?!";
    return !text.empty() && text.find_first_not_of(kNameBytes) == std::string_view::npos &&
           (text[0] < '0' || text[0] > '9') && text[0] != '?' && text[0] != '!';
}

}  // namespace

void appendPadded(std::string& text, std::string_view cell, std::size_t width, bool toTheRight) {
    const std::size_t gap = cell.size() < width ? width - cell.size() : 0;
    if (toTheRight) {
        text.append(gap, ' ');
    }
    text += cell;
    if (!toTheRight) {
        text.append(gap, ' ');
    }
}

std::string constantText(const RubyValue& constant) {
    if (constant.isString()) {
        return quoteText(constant.asString());
    }
    return constant.isFloat() ? floatText(constant.asFloat()) : constant.toString();
}

std::string nameText(const std::string& name) { return isPlainName(name) ? name : quoteText(name); }

std::string functionTitle(const internal::Program& program, std::size_t index) {
    const internal::CompiledFunction& function = program.functions[index];
    std::string text = "function " + std::to_string(index) + " " +
                       (index == 0 && function.name == "<main>" ? function.name : nameText(function.name)) + "(";
    const char* separator = "";
    for (const std::string& param : function.params) {
        text += separator + nameText(param);
        separator = ", ";
    }
    return text + ")";
}

std::string quoteText(const std::string& text) {
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (c == '\n') {
            quoted += "\\n";
        } else if (c == '\t') {
            quoted += "\\t";
        } else if (c == '\r') {
            quoted += "\\r";
        } else if (byte < 0x20 || byte > 0x7e) {
            quoted += "\\x";
            quoted += kHexDigits[byte >> 4];
            quoted += kHexDigits[byte & 0xf];
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

}  // namespace morvel::ruby::tools
