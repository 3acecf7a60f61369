// Building a string piece by piece takes work proportional to its length.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "counting_allocator.h"
#include "morvel/ruby/vm.h"

namespace morvel::ruby::tests {

namespace {

struct Shape {
    const char* name;
    /// Builds and returns a string of at least n bytes.
    const char* script;
};

const std::array kShapes{
    Shape{"the last loop of a function",
          "def work(n) s = '' i = 0 while i < n do i = i + 1 s = s + 'x' end  end work(n)"},
    Shape{"the last loop of a script", "s = '' i = 0 while i < n do i = i + 1 s = s + 'x' end "},
    Shape{"branches of the last loop",
          "def work(n) s = '' i = 0 while i < n do i = i + 1 if i % 2 == 0 then s = s + 'x' else s = s + 'yy' end end  "
          "end work(n)"},
    Shape{"loops in the last loop",
          "def work(n) s = '' i = 0 while i < n do i = i + 1 j = 0 while j < 3 do j = j + 1 s = s + 'x' end end  end "
          "work(n)"},
    Shape{"two texts in the last loop",
          "def work(n) s = '' t = '' i = 0 while i < n do i = i + 1 s = s + 'x' t = t + 'yz' end  end work(n)"},
    Shape{"several parts in the last loop",
          "def work(n) s = '' i = 0 while i < n do i = i + 1 s = s + 'x' + i + ',' end  end work(n)"},
    Shape{"several parts, global", "s = '' i = 0 while i < n do i = i + 1 s = s + 'x' + i + ',' end "},
    Shape{"parts that may be numbers, global", "c = 'ab' s = '' i = 0 while i < n do i = i + 1 s = s + c + i * 2 end "},
    Shape{"parts that read the text",
          "def work(n) c = 'ab' s = '' i = 0 while i < n do i = i + 1 s = s + c + len(s) + s[0] end  end work(n)"},
    Shape{"parts from calls, global",
          "def half(i) j = i / 2 return j end s = '' i = 0 while i < n do i = i + 1 s = s + 'x' + half(i) + ',' + "
          "half(i) end "},
    Shape{"a part from a call, global",
          "def half(i) j = i / 2 return j end s = '' i = 0 while i < n do i = i + 1 s = s + half(i) end "},
    Shape{"many parts",
          "def work(n) c = 'ab' s = '' i = 0 while i < n do i = i + 1 s = s + i * 2 + c + i * 2 + c + i * 2 + c + i * "
          "2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * "
          "2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * "
          "2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c end  "
          "end work(n)"},
    Shape{"many parts, global",
          "c = 'ab' s = '' i = 0 while i < n do i = i + 1 s = s + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * "
          "2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * "
          "2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * "
          "2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c + i * 2 + c end "},
    Shape{"a local that may be unassigned",
          "def work(n) if n > 0 then s = '' end i = 0 while i < n do i = i + 1 s = s + 'x' + i end end work(n)"},
    Shape{"a text that was shared",
          "def work(n) t = 'some text that is shared' s = t i = 0 while i < n do i = i + 1 s = s + 'x' end return t + "
          "s end work(n)"},
    Shape{"an entry of a map",
          "def work(n) m = map_new() m['s'] = '' i = 0 while i < n do i = i + 1 m['s'] = m['s'] + 'x' end return "
          "m['s'] end work(n)"},
    Shape{"an entry of a global map, as the last statement",
          "m = map_new() m[7] = '' i = 0 while i < n do i = i + 1 m[7] = m[7] + i * 2 end return m[7]"},
    Shape{"an entry and several parts",
          "def work(n) m = map_new() m['s'] = '' i = 0 while i < n do i = i + 1 m['s'] = m['s'] + 'x' + i end return "
          "m['s'] end work(n)"},
    Shape{"an entry and calls",
          "def half(i) j = i / 2 return j end m = map_new() m['s'] = '' i = 0 while i < n do i = i + 1 m['s'] = m['s'] "
          "+ half(i) + ',' + half(i) end return m['s']"},
    Shape{"elements of an array",
          "def work(n) a = ['', ''] i = 0 while i < n do i = i + 1 a[i % 2] = a[i % 2] + 'x' end return a[0] + a[1] "
          "end work(n)"},
    Shape{"an element of a global array",
          "a = [''] i = 0 while i < n do i = i + 1 a[0] = a[0] + 'x' + i end return a[0]"},
    Shape{
        "an element that is also the last value",
        "a = [''] def work(n) i = 0 while i < n do i = i + 1 b = a b[0] = b[0] + 'x' b[0] end end work(n) return a[0]"},
    Shape{"bytes of a text",
          "def work(n) s = string_rep('a', n) i = 0 while i < n do i = i + 1 s[i - 1] = 'b' end  end work(n)"},
    Shape{"bytes of a global text", "s = string_rep('a', n) i = 0 while i < n do i = i + 1 s[i - 1] = i end "},
    Shape{"bytes from calls, global",
          "def half(i) j = i / 2 return j end s = string_rep('a', n) i = 0 while i < n do i = i + 1 s[i - 1] = half(i) "
          "end return s"},
    Shape{"a parameter of a function",
          "def add(s, x) return s + x end def work(n) s = '' i = 0 while i < n do i = i + 1 s = add(s, 'x') end return "
          "s end work(n)"},
    Shape{"a parameter of a function, as the last statement",
          "def add(s, x) return s + x + ',' end def work(n) s = '' i = 0 while i < n do i = i + 1 s = add(s, 'x') end  "
          "end work(n)"},
    Shape{"a parameter of a recursive function",
          "def build(n, s) if n == 0 then return s end return build(n - 1, s + 'x') end build(n, '')"},
    Shape{"bytes of another text",
          "def work(n) s = string_rep('a', n) t = '' i = 0 while i < n do i = i + 1 t = t + s[i - 1] end  end work(n)"},
};

/// The bytes that a run requests. If every change copies the string, they grow with the square of n.
std::size_t bytesFor(const Shape& shape, std::int64_t n) {
    RubyVM vm;
    vm.setGlobal("n", n);
    const std::size_t before = allocationCounts().requestedBytes;
    const RubyResult result = vm.runScriptString(shape.script, "t");
    const std::size_t bytes = allocationCounts().requestedBytes - before;
    EXPECT_EQ(result.error, "");
    EXPECT_TRUE(result.value.isString() && result.value.asString().size() >= static_cast<std::size_t>(n));
    return bytes;
}

TEST(Growth, OfTextsIsInProportion) {
    constexpr std::int64_t kSteps = 4000;
    for (const Shape& shape : kShapes) {
        SCOPED_TRACE(shape.name);
        EXPECT_LT(bytesFor(shape, 2 * kSteps), 3 * bytesFor(shape, kSteps));
    }
}

}  // namespace

}  // namespace morvel::ruby::tests
