def boom(x) error("boom " + x) end
def fine(x) y = x return y end
def f(a, b)
  return [a, pcall(boom, a)[2], fine(b), [pcall(fine, b)[1], [pcall(boom, [a, b])[2]]], a + b]
end
puts(f(1, 2))
puts(fine(pcall(boom, 1)[2]) + "," + fine(pcall(fine, 2)[1]) + "," + len(pcall(boom, pcall(boom, 3)[2])))
i = 0
total = 0
while i < 10 do
  r = pcall(boom, i)
  total = total + len(r) * len(pcall(fine, r))
  i = i + 1
end
puts(total)
