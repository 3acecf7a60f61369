def f(a, b)

  if a < 1

    error("small")
  end

  return a / b
end
def call_it(a, b) r = f(a, b) return r end
puts(pcall(call_it, "x", 1))
puts(pcall(call_it, 2, 0))
puts(pcall(call_it, 0, 0))
