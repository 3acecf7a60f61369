#include "stdlib/strings.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "stdlib/text_classes.h"
#include "stdlib/text_search.h"
#include "value/memory_limit.h"
#include "value/room.h"
#include "value/short_strings.h"
#include "vm/impl.h"

namespace morvel::ruby::internal::builtins {

namespace {

RubyValue mapBytes(const BuiltinCall& call, char (*convert)(char)) {
    std::string text = requireStringArgument(call, 0);
    std::transform(text.begin(), text.end(), text.begin(), convert);
    return text;
}

/// A range of bytes, starting at a 0-based position.
struct ByteRange {
    std::size_t begin = 0;
    std::size_t length = 0;
};

// Converts 1-based inclusive positions, negative ones counted from the end, to the range of existing bytes.
ByteRange byteRange(std::int64_t first, std::int64_t last, std::size_t size) {
    const auto length = static_cast<std::int64_t>(size);
    first = std::max<std::int64_t>(first < 0 ? first + length + 1 : first, 1);
    last = std::min(last < 0 ? last + length + 1 : last, length);
    if (last < first) {
        return {};
    }
    return {static_cast<std::size_t>(first - 1), static_cast<std::size_t>(last - first + 1)};
}

std::string_view stripped(const BuiltinCall& call, bool atStart, bool atEnd) {
    std::string_view text = requireStringArgument(call, 0);
    while (atStart && !text.empty() && isSpaceByte(text.front())) {
        text.remove_prefix(1);
    }
    while (atEnd && !text.empty() && isSpaceByte(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::size_t countOf(std::string_view text, std::string_view separator) {
    std::size_t count = 0;
    TextSearch search(text, separator);
    while (search.next() != TextSearch::kNowhere) {
        ++count;
    }
    return count;
}

RubyValue splitPieces(RecentStrings& strings, std::string_view text, std::string_view separator,
                      std::size_t mostPieces) {
    const std::size_t count = std::min(mostPieces, countOf(text, separator) + 1);
    requireMemory(count, sizeof(RubyValue));
    RubyArray pieces = arrayWithRoom(count);
    TextSearch search(text, separator);
    std::size_t begin = 0;
    while (pieces.size() + 1 < count) {
        const std::size_t end = search.next();
        pieces.push_back(strings.valueOf(text.substr(begin, end - begin)));
        begin = end + separator.size();
    }
    pieces.push_back(strings.valueOf(text.substr(begin)));
    return pieces;
}

RubyValue splitBytes(RecentStrings& strings, std::string_view text, std::size_t mostPieces) {
    const std::size_t count = std::min(mostPieces, text.size());
    requireMemory(count, sizeof(RubyValue));
    RubyArray pieces = arrayWithRoom(count);
    while (!text.empty() && pieces.size() + 1 < mostPieces) {
        pieces.push_back(strings.valueOf(text.substr(0, 1)));
        text.remove_prefix(1);
    }
    if (!text.empty()) {
        pieces.push_back(strings.valueOf(text));
    }
    return pieces;
}

RecentStrings& shortStringsOf(const BuiltinCall& call) { return RubyVM::Impl::of(call.vm).shortStrings; }

}  // namespace

RubyValue stringUpper(const BuiltinCall& call) { return mapBytes(call, toUpperByte); }

RubyValue stringLower(const BuiltinCall& call) { return mapBytes(call, toLowerByte); }

RubyValue stringSub(const BuiltinCall& call) {
    const std::string& text = requireStringArgument(call, 0);
    const std::int64_t first = requireIntegerArgument(call, 1);
    const std::int64_t last =
        call.count() > 2 ? requireIntegerArgument(call, 2) : static_cast<std::int64_t>(text.size());
    const ByteRange range = byteRange(first, last, text.size());
    return shortStringsOf(call).valueOf(std::string_view(text).substr(range.begin, range.length));
}

RubyValue stringByte(const BuiltinCall& call) {
    const std::string& text = requireStringArgument(call, 0);
    const std::int64_t first = call.count() > 1 ? requireIntegerArgument(call, 1) : 1;
    const std::int64_t last = call.count() > 2 ? requireIntegerArgument(call, 2) : first;
    const ByteRange range = byteRange(first, last, text.size());
    requireMemory(range.length, sizeof(RubyValue));
    RubyArray codes = arrayWithRoom(range.length);
    for (std::size_t i = 0; i < range.length; ++i) {
        codes.emplace_back(static_cast<unsigned char>(text[range.begin + i]));
    }
    return codes;
}

RubyValue stringChar(const BuiltinCall& call) {
    constexpr std::uint64_t kCodes = 256;
    std::string text;
    for (std::size_t i = 0; i < call.count(); ++i) {
        const auto code = static_cast<std::uint64_t>(requireIntegerArgument(call, i));
        if (code >= kCodes) {
            failCall(call, "code must be between 0 and 255");
        }
        text += static_cast<char>(code);
    }
    return text;
}

RubyValue stringRep(const BuiltinCall& call) {
    const std::string& text = requireStringArgument(call, 0);
    const std::int64_t times = requireIntegerArgument(call, 1);
    if (times < 1 || text.empty()) {
        return "";
    }
    const auto count = static_cast<std::uint64_t>(times);
    if (text.size() > std::numeric_limits<std::uint64_t>::max() / count) {
        failCall(call, "result is too large");
    }
    requireMemory(text.size() * count, 1);
    std::string repeated = textWithRoom(text.size() * count);
    for (std::uint64_t i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

RubyValue stringSplit(const BuiltinCall& call) {
    const std::string& text = requireStringArgument(call, 0);
    const std::string& separator = requireStringArgument(call, 1);
    const std::int64_t limit = call.count() > 2 ? requireIntegerArgument(call, 2) : 0;
    if (limit == 1) {
        return RubyArray{call[0]};
    }
    const std::size_t mostPieces =
        limit < 1 ? std::numeric_limits<std::size_t>::max() : static_cast<std::size_t>(limit);
    RecentStrings& strings = shortStringsOf(call);
    return separator.empty() ? splitBytes(strings, text, mostPieces)
                             : splitPieces(strings, text, separator, mostPieces);
}

RubyValue stringStrip(const BuiltinCall& call) { return stripped(call, true, true); }

RubyValue stringLstrip(const BuiltinCall& call) { return stripped(call, true, false); }

RubyValue stringRstrip(const BuiltinCall& call) { return stripped(call, false, true); }

RubyValue stringReverse(const BuiltinCall& call) {
    const std::string& text = requireStringArgument(call, 0);
    std::string reversed(text.size(), '\0');
    // Eight bytes at a time, then one by one.
    std::uint64_t word = 0;
    std::size_t done = 0;
    for (; done + sizeof word <= text.size(); done += sizeof word) {
        std::memcpy(&word, text.data() + done, sizeof word);
        word = __builtin_bswap64(word);
        std::memcpy(reversed.data() + (text.size() - done - sizeof word), &word, sizeof word);
    }
    std::reverse_copy(text.begin() + static_cast<std::ptrdiff_t>(done), text.end(), reversed.begin());
    return reversed;
}

RubyValue stringInclude(const BuiltinCall& call) {
    const std::string& text = requireStringArgument(call, 0);
    return findText(text, requireStringArgument(call, 1)) != TextSearch::kNowhere;
}

RubyValue stringStartWith(const BuiltinCall& call) {
    const std::string& text = requireStringArgument(call, 0);
    return text.starts_with(requireStringArgument(call, 1));
}

RubyValue stringEndWith(const BuiltinCall& call) {
    const std::string& text = requireStringArgument(call, 0);
    return text.ends_with(requireStringArgument(call, 1));
}

RubyValue utf8Len(const BuiltinCall& call) {
    const std::string& text = requireStringArgument(call, 0);
    constexpr unsigned kTopBits = 0xC0;
    constexpr unsigned kContinuation = 0x80;
    return std::count_if(text.begin(), text.end(),
                         [](char c) { return (static_cast<unsigned char>(c) & kTopBits) != kContinuation; });
}

}  // namespace morvel::ruby::internal::builtins
