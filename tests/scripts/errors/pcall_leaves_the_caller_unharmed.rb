# Locals and half-evaluated expressions around a caught failure are intact.
def boom(x) error("boom " + x) end
def f()
  a = 1
  b = [a, pcall(boom, 1)[2], a + len(pcall(boom, 2)) * 10]
  c = 0
  while c < 1000 do
    pcall(boom, c)
    c = c + 1
  end
  return [a, b, c]
end
puts(f())
puts(1 + len(pcall(boom, "x")) + 2, pcall(boom, "y")[2])
