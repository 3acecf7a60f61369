# Two operations in one expression give what they give in two statements, whatever the operands.
compared = 0
different = 0
def made(header, body)
  load("def " + header + " " + body + " end", "same")()
end
def value(kind)
  plain = [0, 1, -1, 2147483648, 9007199254740992, 9007199254740993, 9223372036854775807, 2.5, true, nil, "b"]
  if kind < len(plain) then return plain[kind] end
  if kind == 11 then return [5, 6, 7] end
  if kind == 12 then return [1.5, "x", [3, "y"], nil] end
  if kind == 13 then return [[1, 2], ["a", "b"], "cd"] end
  m = map_new()
  m["1"] = [8, 9]
  m["b"] = 4
  return m
end
def kinds() return 15 end
def compare(what, a, b, c)
  one = [value(a), value(b), value(c)]
  two = [value(a), value(b), value(c)]
  together = [pcall(in_one, one[0], one[1], one[2]), one]
  apart = [pcall(in_two, two[0], two[1], two[2]), two]
  load("compared = compared + 1")()
  if to_s(together) != to_s(apart) or type_of(together[0][1]) != type_of(apart[0][1]) then
    load("different = different + 1")()
    puts(what, together, apart)
  end
end
def check(in_one, in_two)
  made("in_one(a, b, c)", in_one)
  made("in_two(a, b, c)", in_two)
  a = 0
  while a < kinds() do
    b = 0
    while b < kinds() do
      c = 0
      while c < kinds() do
        compare(in_one, a, b, c)
        c = c + 1
      end
      b = b + 1
    end
    a = a + 1
  end
end
check("return a[b + 1]", "k = b + 1 return a[k]")
check("return a[b + c]", "k = b + c return a[k]")
check("return a[b - 1]", "k = b - 1 return a[k]")
check("return a[b][c]", "k = a[b] return k[c]")
check("return a[b][1]", "k = a[b] return k[1]")
check("a[b] = a[c] return a", "k = a[c] a[b] = k return a")
check("return b + a[c]", "k = a[c] return b + k")
check("return a * b + c", "k = a * b return k + c")
check("return c + a * b", "k = a * b return c + k")
check("c = c + a * b return c", "k = a * b c = c + k return c")
check("if a % 3 == 0 then return 1 end return 2", "k = a % 3 if k == 0 then return 1 end return 2")
conditions = ["a < b", "a < 3", "a <= b", "a <= 3"]
steps = ["a = a + 1", "a = a + c"]
i = 0
while i < 8
  loop = "n = 0 while " + conditions[i % 4] + " do n = n + 1 if n > 3 then return [a, n] end "
  loop = loop + steps[math_floor(i / 4)]
  check(loop + " end return [a, n]", loop + " n = n + 0 end return [a, n]")
  i = i + 1
end
puts(compared == 19 * kinds() * kinds() * kinds()) #=> true
puts(different) #=> 0
