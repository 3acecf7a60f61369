#include "stdlib/patterns.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "stdlib/text_classes.h"
#include "stdlib/text_search.h"
#include "value/memory_limit.h"

namespace morvel::ruby::internal::builtins {

namespace {

constexpr std::string_view kDigits = "%d+";
constexpr std::string_view kDigit = "%d";
constexpr std::string_view kLettersDashDigits = "(%a+)%-(%d+)";

/// The end of the run of bytes of one class that starts at `begin`.
std::size_t runEnd(std::string_view text, std::size_t begin, bool (*belongs)(char)) {
    while (begin < text.size() && belongs(text[begin])) {
        ++begin;
    }
    return begin;
}

struct Run {
    std::size_t begin;
    std::size_t end;
};

std::size_t findDigit(std::string_view text, std::size_t from) {
    const auto* first = std::find_if(text.begin() + from, text.end(), isDigitByte);
    return static_cast<std::size_t>(first - text.begin());
}

/// The first run of digits at or after `from`; an empty run at the end of `text` when there is none.
Run nextDigitRun(std::string_view text, std::size_t from) {
    const std::size_t begin = findDigit(text, from);
    return {begin, runEnd(text, begin, isDigitByte)};
}

std::vector<Run> digitRuns(std::string_view text) {
    std::vector<Run> runs;
    for (Run run = nextDigitRun(text, 0); run.begin < text.size(); run = nextDigitRun(text, run.end)) {
        runs.push_back(run);
    }
    return runs;
}

std::string_view textOf(std::string_view text, Run run) { return text.substr(run.begin, run.end - run.begin); }

RubyValue matchLettersDashDigits(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size()) {
        const Run letters{position, runEnd(text, position, isLetterByte)};
        if (letters.begin == letters.end) {
            ++position;
            continue;
        }
        position = letters.end;
        if (letters.end < text.size() && text[letters.end] == '-') {
            const Run digits{letters.end + 1, runEnd(text, letters.end + 1, isDigitByte)};
            if (digits.begin != digits.end) {
                return RubyArray{textOf(text, letters), textOf(text, digits)};
            }
        }
    }
    return {};
}

Run nextDigit(std::string_view text, std::size_t from) {
    const std::size_t begin = findDigit(text, from);
    return {begin, begin + 1};
}

/// Replaces each run that `next` finds. `next` takes the string and the end of the previous run; when no run is left,
/// it returns one at the end of the string.
template <typename Next>
std::string replaceAll(std::string_view text, std::string_view replacement, Next next) {
    if (!replacement.empty() && text.size() > kSurelyThere / replacement.size()) {
        std::size_t count = 0;
        Next counted = next;
        for (Run run = counted(text, 0); run.begin < text.size(); run = counted(text, run.end)) {
            ++count;
        }
        requireMemory(count, replacement.size());
    }
    std::string result;
    std::size_t copied = 0;
    for (Run run = next(text, 0); run.begin < text.size(); run = next(text, run.end)) {
        result += text.substr(copied, run.begin - copied);
        result += replacement;
        copied = run.end;
    }
    result += text.substr(copied);
    return result;
}

/// The 1-based inclusive positions of a run, as scripts see them.
RubyValue positions(std::size_t begin, std::size_t end) { return RubyArray{begin + 1, end}; }

}  // namespace

RubyValue stringFind(const BuiltinCall& call) {
    const std::string_view text = requireStringArgument(call, 0);
    const std::string_view pattern = requireStringArgument(call, 1);
    if (pattern == kDigits) {
        const Run run = nextDigitRun(text, 0);
        return run.begin < text.size() ? positions(run.begin, run.end) : RubyValue();
    }
    const std::size_t found = findText(text, pattern);
    return found == TextSearch::kNowhere ? RubyValue() : positions(found, found + pattern.size());
}

RubyValue stringMatch(const BuiltinCall& call) {
    const std::string_view text = requireStringArgument(call, 0);
    const std::string_view pattern = requireStringArgument(call, 1);
    if (pattern == kLettersDashDigits) {
        return matchLettersDashDigits(text);
    }
    if (pattern == kDigits) {
        const Run run = nextDigitRun(text, 0);
        return run.begin < text.size() ? RubyValue(textOf(text, run)) : RubyValue();
    }
    return findText(text, pattern) == TextSearch::kNowhere ? RubyValue() : call[1];
}

RubyValue stringGmatch(const BuiltinCall& call) {
    const std::string_view text = requireStringArgument(call, 0);
    const std::string_view pattern = requireStringArgument(call, 1);
    RubyArray matches;
    if (pattern == kDigits) {
        for (const Run& run : digitRuns(text)) {
            matches.emplace_back(textOf(text, run));
        }
    } else if (!pattern.empty()) {
        TextSearch search(text, pattern);
        while (search.next() != TextSearch::kNowhere) {
            matches.push_back(call[1]);
        }
    }
    return matches;
}

RubyValue stringGsub(const BuiltinCall& call) {
    const std::string_view text = requireStringArgument(call, 0);
    const std::string_view pattern = requireStringArgument(call, 1);
    const std::string_view replacement = requireStringArgument(call, 2);
    if (pattern.empty()) {
        return call[0];
    }
    if (pattern == kDigit) {
        return replaceAll(text, replacement, nextDigit);
    }
    if (pattern == kDigits) {
        return replaceAll(text, replacement, nextDigitRun);
    }
    const auto next = [search = TextSearch(text, pattern), pattern](std::string_view whole, std::size_t) mutable {
        const std::size_t found = std::min(search.next(), whole.size());
        return Run{found, found + pattern.size()};
    };
    return replaceAll(text, replacement, next);
}

}  // namespace morvel::ruby::internal::builtins
