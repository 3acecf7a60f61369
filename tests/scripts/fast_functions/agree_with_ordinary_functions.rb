# The same expression as a one-expression function and as an ordinary one, over values of every kind.
kinds = [nil, true, false, 0, 1, -7, 9223372036854775807, 0.0, 2.5, "", "a", "10", [], [1, "a"], len]
expressions = ["a + b", "a - b", "a * b", "a / b", "a % b", "a == b", "a != b", "a < b", "a <= b", "a > b", "a >= b"]
compared = 0
different = 0
e = 0
while e < len(expressions) do
  load("def fast(a, b) return " + expressions[e] + " end", "same")()
  load("def slow(a, b) r = " + expressions[e] + " return r end", "same")()
  i = 0
  while i < len(kinds) do
    j = 0
    while j < len(kinds) do
      one = pcall(fast, kinds[i], kinds[j])
      two = pcall(slow, kinds[i], kinds[j])
      compared = compared + 1
      if one != two or to_s(one) != to_s(two) then
        different = different + 1
        puts(expressions[e], kinds[i], kinds[j], one, two)
      end
      j = j + 1
    end
    i = i + 1
  end
  e = e + 1
end
puts(compared, different)
